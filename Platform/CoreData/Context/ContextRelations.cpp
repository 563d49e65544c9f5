// The relations of NSManagedObjectContext: what is at their ends, and what is remembered of it.

#include "CoreData/Context/FetchGroup.h"
#include "CoreData/Context/NSManagedObjectContext.h"
#include "CoreData/Fetch/FetchPlan.h"
#include "CoreData/Store/SqliteStore.h"
#include "Foundation/Values/Try.h"

#include <algorithm>
#include <cassert>

namespace platform {

using Storage = NSRelationshipDescription::Storage;

NSManagedObjectContext::Objects NSManagedObjectContext::members(
    const NSManagedObject& object, const NSRelationshipDescription& relationship) {
  assert(isOnQueue() && "a context is used off its queue");
  if (relationship.storage == Storage::links) {
    Objects result;
    for (const NSManagedObjectID id : linked(object, relationship)) {
      auto member = objectWithID(id);
      if (!member->isDeleted()) result.push_back(std::move(member));
    }
    return result;
  }
  if (relationship.isToMany) return membersByFetch(object, relationship);
  if (auto known = remembered(object, relationship)) return *std::move(known);
  // Unsaved changes are not in the file, but a fetch sees them.
  if (object.isInserted() || hasPending(*relationship.destination)) {
    return membersByFetch(object, relationship);
  }
  if (const auto read = readForGroup(object, relationship); !read) {
    reportFailedRead("a relation", read.error());
  }
  return remembered(object, relationship).value_or(Objects());
}

/// Those whose row leads to the object: saved ones by age, then new ones by age.
NSManagedObjectContext::Objects NSManagedObjectContext::membersByFetch(
    const NSManagedObject& object, const NSRelationshipDescription& relationship) {
  Objects result;
  NSFetchRequest request(relationship.destinationName);
  request.setPredicate(NSPredicate(
      NSPredicate::Comparison{.keyPath = relationship.inverseName, .values = {object.id_}}));
  auto fetched = fetch(request);
  if (!fetched) return result;
  result = std::move(*fetched);
  std::ranges::sort(result, [](const auto& one, const auto& other) {
    const bool areOfOneKind = one->id_.isTemporaryID() == other->id_.isTemporaryID();
    return areOfOneKind ? one->id_ < other->id_ : other->id_.isTemporaryID();
  });
  return result;
}

std::set<NSManagedObjectID> NSManagedObjectContext::linked(
    const NSManagedObject& object, const NSRelationshipDescription& relationship) {
  std::set<NSManagedObjectID> result;
  const bool isFirst = relationship.isFirstInLinks;
  const auto read = [&]() -> Result<void> {
    const auto open = store();
    if (open == nullptr || object.id_.isTemporaryID()) return {};
    const auto connection = TRY(open->lease(transaction_.get()));
    auto query = TRY(connection->prepare(std::string("SELECT ") + (isFirst ? "second" : "first") +
                                         " FROM " + sqlName(relationship.linkTable) + " WHERE " +
                                         (isFirst ? "first" : "second") + " = ?"));
    query.bind(1, object.id_.key);
    for (;;) {
      const auto row = TRY(query.step());
      if (!row) return {};
      result.insert(NSManagedObjectID{relationship.destination, query.integer(0)});
    }
  };
  if (const auto done = read(); !done) {
    reportFailedRead("a relation", done.error());
  }
  const auto* canonical = isFirst ? &relationship : relationship.inverse;
  for (const auto& [link, isThere] : links_) {
    const NSManagedObjectID own = isFirst ? link.first : link.second;
    const NSManagedObjectID other = isFirst ? link.second : link.first;
    if (link.relationship != canonical || own != object.id_) continue;
    if (isThere) {
      result.insert(other);
    } else {
      result.erase(other);
    }
  }
  return result;
}

void NSManagedObjectContext::setLink(const NSRelationshipDescription& relationship,
                                     const NSManagedObject& object, const NSManagedObject& member,
                                     bool isThere) {
  if (linked(object, relationship).contains(member.id_) == isThere) return;
  const Link link =
      relationship.isFirstInLinks
          ? Link{.relationship = &relationship, .first = object.id_, .second = member.id_}
          : Link{.relationship = relationship.inverse, .first = member.id_, .second = object.id_};
  // A change that was not saved yet is taken back; any other is noted.
  if (links_.erase(link) == 0) links_.emplace(link, isThere);
}

/// The objects of a fetch are asked together for relations of this kind.
void NSManagedObjectContext::group(const NSEntityDescription& entity, const Objects& objects) {
  const auto isKeptElsewhere = [](const NSRelationshipDescription& relationship) {
    return !relationship.isToMany && relationship.storage == Storage::inverse;
  };
  if (std::ranges::none_of(entity.relationships(), isKeptElsewhere)) return;
  const auto group = std::make_shared<FetchGroup>();
  for (const auto& object : objects) {
    if (object->isInserted()) continue;
    group->ids.push_back(object->id_);
    object->group_ = group;
  }
}

/// Absent where it has to be read: it was not asked for, or a member has changed since.
std::optional<NSManagedObjectContext::Objects> NSManagedObjectContext::remembered(
    const NSManagedObject& object, const NSRelationshipDescription& toOne) const {
  if (object.group_ == nullptr) return std::nullopt;
  const auto asked = object.group_->members.find(&toOne);
  if (asked == object.group_->members.end()) return std::nullopt;
  const auto found = asked->second.find(object.id_.key);
  if (found == asked->second.end()) return Objects();
  const auto isStill = [&](const auto& member) {
    return member->context_ == this && !member->isFault_ && !member->isDeleted() &&
           member->values_[toOne.inverse->slot] == PropertyValue(object.id_);
  };
  if (!std::ranges::all_of(found->second, isStill)) return std::nullopt;
  return found->second;
}

/// One statement for all that are still in the object's group; for the object alone when the group
/// was asked before.
Result<void> NSManagedObjectContext::readForGroup(const NSManagedObject& object,
                                                  const NSRelationshipDescription& toOne) {
  const auto open = store();
  if (open == nullptr) return {};
  if (object.group_ == nullptr || object.group_->members.contains(&toOne)) {
    object.group_ = std::make_shared<FetchGroup>();
    object.group_->ids.push_back(object.id_);
  }
  const auto group = object.group_;
  Objects owners;
  std::string keys;
  for (const NSManagedObjectID id : group->ids) {
    auto owner = registered(id);
    if (owner == nullptr || owner->group_ != group) continue;
    keys += (keys.empty() ? '[' : ',') + std::to_string(id.key);
    owners.push_back(std::move(owner));
  }
  const NSEntityDescription& entity = *toOne.destination;
  const EntityTable& table = open->table(entity);
  const std::string sql = "SELECT " + table.columns + " FROM " + table.name + " WHERE " +
                          sqlName(toOne.inverseName) +
                          " IN (SELECT value FROM json_each(?)) ORDER BY pk";
  const auto read = readObjects(entity, {.text = sql, .values = {keys + ']'}}, false);
  if (!read) return std::unexpected(read.error());
  auto& members = group->members[&toOne];
  for (const auto& member : *read) {
    members[std::get<NSManagedObjectID>(member->values_[toOne.inverse->slot]).key].push_back(
        member);
  }
  // Whatever was read anew has taken the objects that it leads to out of their group.
  for (const auto& owner : owners) owner->group_ = group;
  return {};
}

void NSManagedObjectContext::forgetOtherEnds(const NSManagedObject& object) const {
  for (const std::size_t slot : object.entity().oneToOneSlots()) {
    const auto* id = std::get_if<NSManagedObjectID>(&object.values_[slot]);
    if (const auto other = id != nullptr ? registered(*id) : nullptr) other->group_.reset();
  }
}

void NSManagedObjectContext::forgetAll() const {
  objects_.forEach([](NSManagedObject& object) { object.group_.reset(); });
}

}  // namespace platform
