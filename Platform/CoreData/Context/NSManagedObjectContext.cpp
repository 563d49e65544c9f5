#include "CoreData/Context/NSManagedObjectContext.h"

#include "CoreData/Context/NSPersistentStoreCoordinator.h"
#include "CoreData/Store/SqliteStore.h"
#include "CoreData/Store/SqliteValues.h"
#include "CoreData/Store/StoreTransaction.h"
#include "Foundation/Values/Try.h"

#include <algorithm>
#include <cassert>
#include <limits>

namespace platform {

using Storage = NSRelationshipDescription::Storage;

namespace {

/// Counted upwards from far below 0, so that the order of temporary IDs is their age.
std::int64_t newTemporaryKey() {
  static std::atomic<std::int64_t> last = std::numeric_limits<std::int64_t>::min();
  return ++last;
}

const std::vector<NSManagedObjectID>& idsUnder(const char* key,
                                               const NSManagedObjectContext::UserInfo& changes) {
  static const auto* none = new std::vector<NSManagedObjectID>;
  const auto found = changes.find(key);
  if (found == changes.end()) return *none;
  const auto* ids = std::any_cast<std::vector<NSManagedObjectID>>(&found->second);
  return ids != nullptr ? *ids : *none;
}

}  // namespace

std::shared_ptr<NSManagedObjectContext> NSManagedObjectContext::make(
    std::shared_ptr<NSPersistentStoreCoordinator> coordinator, ConcurrencyType concurrencyType) {
  const DispatchQueue queue = concurrencyType == ConcurrencyType::mainQueue
                                  ? DispatchQueue::main()
                                  : DispatchQueue("coredata.context");
  std::shared_ptr<NSManagedObjectContext> context(
      new NSManagedObjectContext(std::move(coordinator), queue));
  context->coordinator_->add(context);
  return context;
}

NSManagedObjectContext::NSManagedObjectContext(
    std::shared_ptr<NSPersistentStoreCoordinator> coordinator, DispatchQueue queue)
    : coordinator_(std::move(coordinator)), queue_(std::move(queue)) {}

NSManagedObjectContext::~NSManagedObjectContext() {
  objects_.forEach([](NSManagedObject& object) { object.detach(); });
}

void NSManagedObjectContext::perform(Block block) {
  queue_.async([self = shared_from_this(), block = std::move(block)]() mutable { block(); });
}

std::shared_ptr<SqliteStore> NSManagedObjectContext::store() const {
  return coordinator_->store();
}

std::shared_ptr<NSManagedObject> NSManagedObjectContext::insert(std::string_view entityName) {
  assert(isOnQueue() && "a context is used off its queue");
  const NSEntityDescription* entity = coordinator_->managedObjectModel().entity(entityName);
  if (entity == nullptr) {
    throw StoreError(StoreError::Kind::invalidRequest,
                     "the model has no entity \"" + std::string(entityName) + "\"");
  }
  auto object = objectWithID({entity, newTemporaryKey()});
  object->takeValues(0, entity->defaultValues());
  object->state_ = State::inserted;
  inserted_.emplace_hint(inserted_.end(), object->id_, object);
  return object;
}

void NSManagedObjectContext::deleteObject(NSManagedObject& object) {
  assert(isOnQueue() && "a context is used off its queue");
  if (object.context_ != this || object.isDeleted()) return;
  const auto kept = object.shared_from_this();
  letGo(object);
  if (object.context_ != this) return;  // it turned out to have gone already
  if (object.isInserted()) {
    inserted_.erase(object.id_);
    return detach(object);
  }
  updated_.erase(object.id_);
  object.state_ = State::deleted;
  deleted_.emplace(object.id_, kept);
}

/// What a deletion does at the other ends of the object's relations.
void NSManagedObjectContext::letGo(NSManagedObject& object) {
  const State state = std::exchange(object.state_, State::deleted);  // ends circles
  std::vector<std::shared_ptr<NSManagedObject>> owned;
  for (const NSRelationshipDescription& relationship : object.entity().relationships()) {
    const bool owns = relationship.deleteRule == NSDeleteRule::cascade;
    if (!owns && relationship.storage == Storage::own) continue;
    for (const auto& member : object.members(relationship)) {
      if (owns) {
        owned.push_back(member);
      } else if (relationship.storage == Storage::inverse) {
        member->setSlotValue(relationship.inverse->slot, {});
      }
    }
  }
  for (const auto& member : owned) deleteObject(*member);
  if (object.context_ == this) object.state_ = state;
}

std::shared_ptr<NSManagedObject> NSManagedObjectContext::registered(NSManagedObjectID id) const {
  return objects_.find(id);
}

std::shared_ptr<NSManagedObject> NSManagedObjectContext::objectWithID(NSManagedObjectID id) {
  assert(isOnQueue() && "a context is used off its queue");
  std::weak_ptr<NSManagedObject>& place = objects_[id];
  if (auto known = place.lock()) return known;
  auto object = id.entity->makeObject();
  object->id_ = id;
  object->context_ = this;
  object->state_ = State::saved;
  place = object;
  return object;
}

/// Reads a fault's row. False when there is none (then the object is detached), or when the file
/// can't be read (then it stays a fault, and is tried again).
bool NSManagedObjectContext::load(NSManagedObject& object) {
  const auto open = store();
  if (open == nullptr) return false;
  const auto read = [&]() -> Result<bool> {
    const auto connection = TRY(open->lease(transaction_.get()));
    auto query = TRY(connection->prepare(open->table(object.entity()).selectRow));
    query.bind(1, object.id_.key);
    const auto row = query.step();
    if (!row || !*row) return row;
    const auto values = std::make_shared<PropertyValue[]>(object.entity().slots().size());
    readValues(query, object.entity(), 2, values.get());
    object.mergeValues(query.integer(1), values);
    return true;
  };
  const auto found = read();
  if (!found) {
    reportFailedRead("an object", found.error());
    return false;
  }
  if (!*found) detach(object);
  return *found;
}

void NSManagedObjectContext::noteChange(NSManagedObject& object) {
  if (object.changes_.empty()) {
    object.state_ = State::saved;
    updated_.erase(object.id_);
  } else if (object.state_ == State::saved) {
    object.state_ = State::updated;
    updated_.emplace(object.id_, object.shared_from_this());
  }
}

NSManagedObjectContext::Objects NSManagedObjectContext::objectsOf(const Pending& pending) {
  Objects objects;
  for (const auto& [id, object] : pending) objects.push_back(object);
  return objects;
}

bool NSManagedObjectContext::hasChanges() const {
  return !inserted_.empty() || !updated_.empty() || !deleted_.empty() || !links_.empty();
}

void NSManagedObjectContext::rollback() {
  assert(isOnQueue() && "a context is used off its queue");
  forgetAll();
  links_.clear();
  for (const auto& [id, object] : std::exchange(inserted_, {})) detach(*object);
  for (const Pending& pending : {std::exchange(updated_, {}), std::exchange(deleted_, {})}) {
    for (const auto& [id, object] : pending) {
      object->becomeFault();
      object->state_ = State::saved;
    }
  }
}

void NSManagedObjectContext::detach(NSManagedObject& object) {
  objects_.remove(object.id_);
  updated_.erase(object.id_);
  deleted_.erase(object.id_);
  object.detach();
}

void NSManagedObjectContext::mergeChangesFromRemoteContextSave(
    const UserInfo& changes, const std::vector<std::shared_ptr<NSManagedObjectContext>>& contexts) {
  for (const auto& context : contexts) {
    context->performAndWait([&] { context->merge(changes); });
  }
}

void NSManagedObjectContext::merge(const UserInfo& changes) {
  const auto leadsToOne = [](NSManagedObjectID id) { return !id.entity->oneToOneSlots().empty(); };
  for (const char* key : {NSInsertedObjectIDsKey, NSUpdatedObjectIDsKey}) {
    if (std::ranges::any_of(idsUnder(key, changes), leadsToOne)) forgetAll();
  }
  std::vector<NSManagedObjectID> refreshed;
  for (const NSManagedObjectID id : idsUnder(NSDeletedObjectIDsKey, changes)) {
    if (const auto object = registered(id)) detach(*object);
  }
  for (const NSManagedObjectID id : idsUnder(NSUpdatedObjectIDsKey, changes)) {
    if (const auto object = registered(id)) {
      mergeUpdated(*object);
      refreshed.push_back(id);
    }
  }
  UserInfo told = changes;
  told.insert_or_assign(NSRefreshedObjectIDsKey, std::move(refreshed));
  NSNotificationCenter::defaultCenter().post(
      {.name = didMergeChangesObjectIDsNotification, .object = this, .userInfo = std::move(told)});
}

void NSManagedObjectContext::refreshAllObjects() {
  assert(isOnQueue() && "a context is used off its queue");
  refreshAll();
  std::vector<NSManagedObjectID> inUse;
  objects_.forEach([&](const NSManagedObject& object) { inUse.push_back(object.id_); });
  NSNotificationCenter::defaultCenter().post(
      {.name = didMergeChangesObjectIDsNotification,
       .object = this,
       .userInfo = {{NSInvalidatedAllObjectsKey, std::move(inUse)}}});
}

void NSManagedObjectContext::mergeUpdated(NSManagedObject& object) {
  if (object.state_ == State::saved) object.becomeFault();
  if (object.state_ != State::updated) return;
  const auto kept = object.shared_from_this();
  if (!load(object)) return;
  std::erase_if(object.changes_, [&](const auto& change) {
    return change.saved == object.values_[change.slot];  // the other has saved the same
  });
  noteChange(object);
}

}  // namespace platform
