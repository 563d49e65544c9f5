#include "Host/StoreSwitch.h"

#include "DataManager/StoreChoice.h"
#include "DataManager/StoreUse.h"
#include "Host/HostStore.h"
#include "OxLog/Log.h"
#include "Settings/RunTarget.h"
#include "Settings/SettingEntity.h"
#include "Settings/SettingsStorage.h"
#include "Tasks/Rows/TaskEntity.h"

#include <map>
#include <memory>
#include <string>

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

/// Visits all rows but those of the settings, which live in the mirrored store whatever is chosen.
template <typename Visit>
void forEachRow(NSManagedObjectContext& context, const Visit& visit) {
  for (const auto* entity : context.persistentStoreCoordinator()->managedObjectModel().entities()) {
    if (entity->name() == SettingEntity::entityName()) continue;
    for (const auto& object :
         orThrow<NSManagedObject::Objects>(context.fetch(NSFetchRequest(entity->name())))) {
      visit(object);
    }
  }
}

void copyRows(NSManagedObjectContext& from, NSManagedObjectContext& to) {
  Copies copies;
  NSManagedObject::Objects originals;
  forEachRow(from, [&](const auto& object) {
    originals.push_back(object);
    const auto copy = to.insert(object->entity().name());
    copyAttributes(*object, *copy);
    copies.emplace(object->objectID(), copy);
  });
  for (const auto& object : originals)
    copyRelations(*object, *copies.at(object->objectID()), copies);
}

void deleteRows(NSManagedObjectContext& context) {
  forEachRow(context, [&](const auto& object) { context.deleteObject(*object); });
}

std::size_t tasksIn(NSManagedObjectContext& context) {
  return orThrow(context.count(NSFetchRequest::of<TaskEntity>()));
}

std::shared_ptr<DataManager::Container> containerFor(const DataManager& manager, bool isCloud) {
  return isCloud ? manager.cloudPersistentContainer() : manager.localPersistentContainer();
}

/// Takes the place of a copy that was made earlier. Returns how many tasks there are.
std::size_t copyTasks(DataManager::Container& chosen, DataManager::Container& former) {
  NSManagedObjectContext& to = *chosen.viewContext();
  const auto from = former.newBackgroundContext();  // it has read nothing yet
  return orThrow(to.performTransaction([&] {
    // A relation that can't be read would be copied as empty.
    return from->performTransaction([&]() -> Result<std::size_t> {
      if (tasksIn(to) > 0) deleteRows(to);
      const std::size_t count = tasksIn(*from);
      if (count > 0) copyRows(*from, to);
      return count;
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

void expectSaved(const ErrorPtr& error) {
  if (error != nullptr) throw HostError("the tasks stay: " + error->localizedDescription());
}

/// All but the end of the choice. It may be done again. Returns how many tasks were copied.
std::size_t carryOut(const DataManager& manager, const StoreChoice& choice) {
  const auto chosen = containerFor(manager, choice.isCloud);
  const auto former = containerFor(manager, !choice.isCloud);
  const std::size_t copied = choice.keepsTasks ? 0 : copyTasks(*chosen, *former);
  SettingsStorage& settings = SettingsStorage::shared();
  settings.changeTiers(choice.isCloud, Setting::cloudSyncTasksEnabled);
  expectSaved(SettingsStorage::saveError());
  settings.shareAgain();  // where the switch was set before the process was killed
  return copied;
}

/// Where that can't be done, the choice stays under way, and is carried out again.
void takeBack(const DataManager& manager, const StoreChoice& choice) {
  NSManagedObjectContext& chosen = *containerFor(manager, choice.isCloud)->viewContext();
  const auto taken = chosen.performTransaction([&]() -> Result<void> {
    if (!choice.keepsTasks && tasksIn(chosen) > 0) deleteRows(chosen);
    return {};
  });
  const auto ended = taken ? StoreChoice::end() : taken;
  if (!ended) Log::database.error(ended.error());
}

/// Call it with access to maintain the stores: no other process is then choosing one.
void finishChoice(const DataManager& manager) {
  const auto choice = StoreChoice::underWay();
  if (!choice) return;
  carryOut(manager, *choice);
  orThrow(StoreChoice::end());
}

}  // namespace

StoreSwitch chooseStore(DataManager& manager, bool isCloud) {
  const auto access = orThrow(StoreUse::toMaintain());
  const Maintenance maintenance(manager);
  finishChoice(manager);
  const auto chosen = containerFor(manager, isCloud);
  if (chosen == manager.activePersistentContainer()) return {};  // perhaps another was first
  StoreSwitch result{.found = tasksIn(*chosen->viewContext())};
  const StoreChoice choice{.isCloud = isCloud, .keepsTasks = result.found > 0};
  orThrow(choice.begin());
  try {
    result.copied = carryOut(manager, choice);
  } catch (const HostError&) {
    takeBack(manager, choice);
    throw;
  }
  orThrow(StoreChoice::end());
  return result;
}

void finishChoosingStore(DataManager& manager) {
  if (isExtension() || StoreUse::isHeldHere() || !StoreChoice::underWay()) return;
  try {
    const auto access = orThrow(StoreUse::toMaintain());
    const Maintenance maintenance(manager);
    finishChoice(manager);
  } catch (const HostError& error) {
    Log::database.error([&] { return std::string(error.what()); });
  }
}

}  // namespace velloro
