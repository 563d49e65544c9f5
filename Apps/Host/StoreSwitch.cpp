#include "Host/StoreSwitch.h"

#include "DataManager/StoreUse.h"
#include "Foundation/NSUserDefaults.h"
#include "Host/HostStore.h"
#include "Settings/RunTarget.h"
#include "Settings/SettingEntity.h"
#include "Settings/SettingsStorage.h"
#include "Tasks/TaskEntity.h"

#include <map>
#include <memory>
#include <optional>

namespace velloro {
namespace {

using Copies = std::map<NSManagedObjectID, std::shared_ptr<NSManagedObject>>;
using Storage = NSRelationshipDescription::Storage;

template <typename Value>
Value orThrow(Result<Value> result) {
  if (!result) throw HostError("the tasks stay: " + result.error()->localizedDescription());
  return *std::move(result);
}

void copyAttributes(const NSManagedObject& object, NSManagedObject& copy) {
  const auto& slots = object.entity().slots();
  for (std::size_t slot = 0; slot < slots.size(); ++slot) {
    if (slots[slot].relationship == nullptr) copy.setSlotValue(slot, object.slotValue(slot));
  }
}

/// Each relation once, from the side that keeps it.
void copyRelations(const NSManagedObject& object, NSManagedObject& copy, const Copies& copies) {
  for (const NSRelationshipDescription& relation : object.entity().relationships()) {
    if (relation.storage == Storage::inverse) continue;
    if (relation.storage == Storage::links && !relation.isFirstInLinks) continue;
    for (const auto& member : object.members(relation)) {
      const auto copied = copies.find(member->objectID());
      if (copied == copies.end()) continue;  // someone has only just made it
      if (relation.isToMany) {
        copy.addMember(relation, *copied->second);
      } else {
        copy.setMember(relation, copied->second.get());
      }
    }
  }
}

/// All rows but those of the settings, which live in the mirrored store whatever is chosen.
void copyRows(NSManagedObjectContext& from, NSManagedObjectContext& to) {
  Copies copies;
  NSManagedObject::Objects originals;
  for (const auto* entity : from.persistentStoreCoordinator()->managedObjectModel().entities()) {
    if (entity->name() == SettingEntity::entityName()) continue;
    for (const auto& object :
         orThrow<NSManagedObject::Objects>(from.fetch(NSFetchRequest(entity->name())))) {
      originals.push_back(object);
      const auto copy = to.insert(entity->name());
      copyAttributes(*object, *copy);
      copies.emplace(object->objectID(), copy);
    }
  }
  for (const auto& object : originals)
    copyRelations(*object, *copies.at(object->objectID()), copies);
}

std::shared_ptr<DataManager::Container> containerFor(const DataManager& manager, bool isCloud) {
  return isCloud ? manager.cloudPersistentContainer() : manager.localPersistentContainer();
}

StoreSwitch fillIfEmpty(DataManager::Container& chosen, DataManager::Container& former) {
  NSManagedObjectContext& to = *chosen.viewContext();
  const auto from = former.newBackgroundContext();  // it has read nothing yet
  return orThrow(to.performTransaction([&] {
    // A relation that can't be read would be copied as empty.
    return from->performTransaction([&]() -> Result<StoreSwitch> {
      const NSFetchRequest tasks{std::string(TaskEntity::entityName())};
      StoreSwitch counts{.found = orThrow(to.count(tasks))};
      if (counts.found == 0) counts.copied = orThrow(from->count(tasks));
      if (counts.copied > 0) copyRows(*from, to);
      return counts;
    });
  }));
}

/// While it lives, no background work begins.
class Maintenance {
 public:
  explicit Maintenance(DataManager& manager) : manager_(manager) {
    manager_.setInMaintenanceMode(true);
  }
  ~Maintenance() { manager_.setInMaintenanceMode(false); }
  Maintenance(const Maintenance&) = delete;
  Maintenance& operator=(const Maintenance&) = delete;

 private:
  DataManager& manager_;
};

/// Which store is being chosen, known to all processes until that is done, also when the process
/// that does it is killed between the copy and the switch.
class Choice {
 public:
  explicit Choice(bool isCloud) { keep(isCloud); }
  ~Choice() { keep(nullptr); }
  Choice(const Choice&) = delete;
  Choice& operator=(const Choice&) = delete;

  static std::optional<bool> unfinished() {
    const auto suite = NSUserDefaults::initWithSuiteName(DataManager::groupIdentifier);
    const auto kept = suite ? suite->objectForKey(key) : std::nullopt;
    return kept ? kept->boolean() : std::nullopt;
  }

 private:
  static constexpr const char* key = "storeSwitch.choosesCloud";

  static void keep(const PropertyList& value) {
    auto suite = NSUserDefaults::initWithSuiteName(DataManager::groupIdentifier);
    if (suite) suite->setObject(value, key);
  }
};

void choose(bool isCloud) {
  SettingsStorage::shared().changeTiers(isCloud, Setting::cloudSyncTasksEnabled);
}

/// By who has access to maintain the stores, so that nobody is amid a choice.
void finishChoice(DataManager& manager) {
  const auto isCloud = Choice::unfinished();
  if (!isCloud) return;
  const Choice choice(*isCloud);
  const NSFetchRequest tasks{std::string(TaskEntity::entityName())};
  const auto chosen = containerFor(manager, *isCloud);
  if (orThrow(chosen->viewContext()->count(tasks)) > 0) choose(*isCloud);
}

}  // namespace

StoreSwitch chooseStore(DataManager& manager, bool isCloud) {
  const auto access = orThrow(StoreUse::toMaintain());
  const Maintenance maintenance(manager);
  finishChoice(manager);
  const auto former = manager.activePersistentContainer();
  const auto chosen = containerFor(manager, isCloud);
  if (chosen == former) return {};  // perhaps another process was first
  const Choice choice(isCloud);
  const auto result = fillIfEmpty(*chosen, *former);
  choose(isCloud);
  return result;
}

void finishChoosingStore(DataManager& manager) {
  if (isExtension() || !Choice::unfinished()) return;
  const auto access = orThrow(StoreUse::toMaintain());
  finishChoice(manager);
}

}  // namespace velloro
