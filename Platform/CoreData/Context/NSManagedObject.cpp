#include "CoreData/Context/NSManagedObject.h"

#include "CoreData/Context/FetchGroup.h"
#include "CoreData/Context/NSManagedObjectContext.h"
#include "Foundation/Process/Environment.h"

#include <algorithm>
#include <cassert>

namespace platform {

using Storage = NSRelationshipDescription::Storage;

std::map<std::string, PropertyValue> NSManagedObject::changedValues() const {
  std::map<std::string, PropertyValue> result;
  const auto add = [&](std::size_t slot) { result[entity().slots()[slot].name] = values_[slot]; };
  for (const Change& change : changes_) add(change.slot);
  for (std::size_t slot = 0; isInserted() && slot < entity().slots().size(); ++slot) {
    if (values_[slot] != entity().slots()[slot].defaultValue) add(slot);
  }
  return result;
}

const PropertyValue& NSManagedObject::slotValue(std::size_t slot) const {
  assert((context_ == nullptr || context_->isOnQueue()) && "an object is used off its queue");
  if (isFault_) [[unlikely]]
    load();
  return values_[slot];
}

/// Reading makes an object whole, and may find that it has gone: neither is a change. Where the row
/// can't be read, defaults stand for all but what was changed, until it can.
void NSManagedObject::load() const {
  auto& self = const_cast<NSManagedObject&>(*this);
  if (context_ != nullptr && context_->load(self)) return;
  RowValues values = entity().defaultValues();
  for (const Change& change : changes_) values[change.slot] = std::move(self.values_[change.slot]);
  self.values_ = std::move(values);
}

void NSManagedObject::setSlotValue(std::size_t slot, PropertyValue value) {
  const bool isThere = slotValue(slot) == value;
  // A row that can't be read may hold anything: every value is a change then.
  const bool isKnown = !isFault_ || context_ == nullptr;
  if (isThere && isKnown) return;
  std::swap(values_[slot], value);
  const auto& oneToOne = entity().oneToOneSlots();
  if (context_ != nullptr && std::ranges::find(oneToOne, slot) != oneToOne.end()) {
    context_->forgetOtherEnds(*this);
  }
  if (state_ != State::saved && state_ != State::updated) return;
  const auto known = std::ranges::find(changes_, slot, &Change::slot);
  if (known == changes_.end()) {
    changes_.push_back({slot, std::move(value)});
  } else if (isKnown && known->saved == values_[slot]) {
    changes_.erase(known);
  }
  context_->noteChange(*this);
}

bool NSManagedObject::canRead(std::size_t slot) const {
  const NSAttributeDescription& attribute = entity().attributes()[slot];
  if (attribute.type != NSAttributeType::transformable) {
    return attribute.canRead == nullptr || attribute.canRead(slotValue(slot));
  }
  const auto* data = std::get_if<Data>(&slotValue(slot));
  const auto transformer =
      NSValueTransformer::valueTransformerForName(attribute.valueTransformerName);
  return data == nullptr || (transformer && transformer->isWhole(*data));
}

NSManagedObject::Objects NSManagedObject::members(
    const NSRelationshipDescription& relationship) const {
  if (relationship.storage != Storage::own) {
    return context_ != nullptr ? context_->members(*this, relationship) : Objects();
  }
  const auto* id = std::get_if<NSManagedObjectID>(&slotValue(relationship.slot));
  if (id == nullptr || context_ == nullptr) return {};
  auto member = context_->objectWithID(*id);
  return member->isDeleted() ? Objects() : Objects{std::move(member)};
}

void NSManagedObject::setMember(const NSRelationshipDescription& toOne, NSManagedObject* member) {
  assert((member == nullptr || mayRelateTo(*member)) && "a relation leads to another context");
  const NSRelationshipDescription* inverse = toOne.inverse;
  if (toOne.storage == Storage::inverse) {
    for (const auto& former : members(toOne)) {
      if (former.get() != member) former->setMember(*inverse, nullptr);
    }
    if (member != nullptr) member->setMember(*inverse, this);
    return;
  }
  if (member != nullptr && inverse != nullptr && !inverse->isToMany) {
    for (const auto& rival : member->members(*inverse)) {
      if (rival.get() != this) rival->setSlotValue(toOne.slot, {});
    }
  }
  setSlotValue(toOne.slot, member != nullptr ? PropertyValue(member->id_) : PropertyValue());
}

void NSManagedObject::addMember(const NSRelationshipDescription& toMany, NSManagedObject& member) {
  assert(mayRelateTo(member) && "a relation leads to another context");
  if (toMany.storage == Storage::inverse) return member.setMember(*toMany.inverse, this);
  if (context_ != nullptr) context_->setLink(toMany, *this, member, true);
}

void NSManagedObject::removeMember(const NSRelationshipDescription& toMany,
                                   NSManagedObject& member) {
  if (toMany.storage != Storage::inverse) {
    if (context_ != nullptr) context_->setLink(toMany, *this, member, false);
  } else if (member.slotValue(toMany.inverse->slot) == PropertyValue(id_)) {
    member.setSlotValue(toMany.inverse->slot, {});
  }
}

void NSManagedObject::takeValues(std::int64_t version, RowValues values) {
  version_ = version;
  values_ = std::move(values);
  isFault_ = false;
  context_->forgetOtherEnds(*this);
}

/// A newer row under unsaved changes: what was changed here stays, the rest becomes the row's.
void NSManagedObject::mergeValues(std::int64_t version, RowValues values) {
  for (Change& change : changes_) {
    change.saved = std::exchange(values[change.slot], std::move(values_[change.slot]));
  }
  takeValues(version, std::move(values));
}

void NSManagedObject::becomeFault() {
  values_.reset();
  changes_.clear();
  isFault_ = true;
}

void NSManagedObject::detach() {
  context_ = nullptr;
  state_ = State::detached;
  changes_.clear();
  group_.reset();
}

std::any NSManagedObject::transformed(std::size_t slot, const std::string& transformerName) const {
  const auto* data = std::get_if<Data>(&slotValue(slot));
  const auto transformer = NSValueTransformer::valueTransformerForName(transformerName);
  return data != nullptr && transformer ? transformer->reverseTransformedValue(*data) : std::any();
}

void NSManagedObject::setTransformed(std::size_t slot, const std::string& transformerName,
                                     const std::any& value) {
  const auto transformer = NSValueTransformer::valueTransformerForName(transformerName);
  if (transformer == nullptr) {
    return Environment::current().report("there is no transformer \"" + transformerName + "\"");
  }
  const auto data = value.has_value() ? transformer->transformedValue(value) : std::nullopt;
  setSlotValue(slot, data ? PropertyValue(*data) : PropertyValue());
}

}  // namespace platform
