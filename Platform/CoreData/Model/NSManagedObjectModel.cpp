#include "CoreData/Model/NSManagedObjectModel.h"

#include "SQLite/StoreError.h"

#include <algorithm>
#include <set>

namespace platform {
namespace {

using Storage = NSRelationshipDescription::Storage;

[[noreturn]] void refuse(const NSEntityDescription& entity, const std::string& name,
                         const char* reason) {
  throw StoreError(StoreError::Kind::invalidRequest,
                   "\"" + entity.name() + "." + name + "\" " + reason);
}

void checkNames(const NSEntityDescription& entity) {
  // These are columns of every table.
  std::set<std::string, std::less<>> names{"pk", "version"};
  const auto check = [&](const auto& property) {
    if (!names.insert(property.name).second) refuse(entity, property.name, "is declared twice");
  };
  std::ranges::for_each(entity.attributes(), check);
  std::ranges::for_each(entity.relationships(), check);
}

void checkIndexes(const NSEntityDescription& entity) {
  for (const auto& index : entity.indexes()) {
    for (std::string_view name : index) {
      if (name.starts_with('-')) name.remove_prefix(1);
      if (std::ranges::find(entity.slots(), name, &NSEntityDescription::Slot::name) ==
          entity.slots().end()) {
        refuse(entity, std::string(name), "can't be indexed, for no column is called so");
      }
    }
  }
}

Storage storageOf(const NSEntityDescription& entity, const NSRelationshipDescription& one) {
  if (one.inverse == nullptr) return Storage::own;
  const NSRelationshipDescription& other = *one.inverse;
  if (one.isToMany) return other.isToMany ? Storage::links : Storage::inverse;
  if (other.isToMany) return Storage::own;
  if (one.deleteRule != other.deleteRule) {
    return other.deleteRule == NSDeleteRule::cascade ? Storage::own : Storage::inverse;
  }
  const bool isFirst = entity.index() < one.destination->index() ||
                       (&entity == one.destination && one.name < other.name);
  return isFirst || &one == &other ? Storage::own : Storage::inverse;
}

}  // namespace

NSManagedObjectModel::NSManagedObjectModel(std::vector<NSEntityDescription*> entities)
    : entities_(std::move(entities)) {
  for (NSEntityDescription* entity : entities_) {
    entity->index_ = byName_.size();
    if (!byName_.emplace(entity->name(), entity).second) {
      refuse(*entity, "", "is declared twice");
    }
  }
  for (NSEntityDescription* entity : entities_) settle(*entity);
  for (NSEntityDescription* entity : entities_) addSlots(*entity);
}

const NSEntityDescription* NSManagedObjectModel::entity(std::string_view name) const {
  const auto found = byName_.find(name);
  return found != byName_.end() ? found->second : nullptr;
}

void NSManagedObjectModel::settle(NSEntityDescription& entity) {
  checkNames(entity);
  for (auto& relationship : entity.relationships_) settle(entity, relationship);
}

void NSManagedObjectModel::settle(NSEntityDescription& entity, NSRelationshipDescription& one) {
  one.destination = this->entity(one.destinationName);
  if (one.destination == nullptr) refuse(entity, one.name, "leads to no entity of the model");
  if (!one.inverseName.empty()) {
    one.inverse = one.destination->relationship(one.inverseName);
    if (one.inverse == nullptr || one.inverse->inverseName != one.name ||
        one.inverse->destinationName != entity.name()) {
      refuse(entity, one.name, "has no inverse that leads back");
    }
  } else if (one.isToMany) {
    refuse(entity, one.name, "is to many and needs an inverse");
  }
  one.storage = storageOf(entity, one);
  if (one.storage == Storage::links) {
    const std::string ownName = entity.name() + "." + one.name;
    const std::string otherName = one.destinationName + "." + one.inverseName;
    one.isFirstInLinks = ownName <= otherName;
    one.linkTable = std::min(ownName, otherName);
  }
}

void NSManagedObjectModel::addSlots(NSEntityDescription& entity) {
  entity.slots_.clear();
  entity.oneToOneSlots_.clear();
  for (const auto& attribute : entity.attributes()) {
    entity.slots_.push_back({.name = attribute.name,
                             .type = attribute.type,
                             .defaultValue = attribute.defaultValue,
                             .comparison = attribute.comparison});
  }
  for (auto& relationship : entity.relationships_) {
    if (relationship.storage != Storage::own) continue;
    relationship.slot = entity.slots_.size();
    if (relationship.inverse != nullptr && !relationship.inverse->isToMany) {
      entity.oneToOneSlots_.push_back(relationship.slot);
    }
    entity.slots_.push_back({.name = relationship.name, .relationship = &relationship});
  }
  checkIndexes(entity);
}

}  // namespace platform
