#include "Host/StoreSwitch.h"

#include "DataManager/StoreChoice.h"
#include "DataManager/StoreUse.h"
#include "Host/HostStore.h"
#include "OxKit/UniqueID.h"
#include "OxLog/Log.h"
#include "Settings/RunTarget.h"
#include "Settings/SettingEntity.h"
#include "Settings/SettingsStorage.h"
#include "Tasks/Rows/TaskEntity.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace velloro {
namespace {

using Rows = std::map<NSManagedObjectID, std::shared_ptr<NSManagedObject>>;
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
void copyRelations(const NSManagedObject& object, NSManagedObject& copy, const Rows& copies) {
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

/// The name, in the history, of the context that copies.
constexpr const char* copyingContext = "storeSwitch";

/// Of the chosen store, as it is when the copying begins.
struct Chosen {
  Rows copied;  ///< What this choice has copied earlier.
  std::multimap<UniqueID, std::shared_ptr<NSManagedObject>> identified;
};

std::optional<UniqueID> identifierOf(const NSManagedObject& object) {
  const auto& attributes = object.entity().attributes();
  const auto* attribute = object.entity().attribute("uniqueId");
  if (attribute == nullptr) return std::nullopt;
  const auto slot = static_cast<std::size_t>(attribute - attributes.data());
  const auto* text = std::get_if<std::string>(&object.slotValue(slot));
  return text != nullptr ? UniqueID::fromString(*text) : std::nullopt;
}

std::set<NSManagedObjectID> copiedIDs(NSManagedObjectContext& context, const StoreChoice& choice) {
  std::set<NSManagedObjectID> ids;
  const auto history = orThrow(
      context.execute(NSPersistentHistoryChangeRequest::fetchHistoryAfterDate(choice.began)));
  for (const NSPersistentHistoryTransaction& transaction : history.transactions) {
    if (transaction.contextName != copyingContext) continue;
    ids.insert(transaction.inserted.begin(), transaction.inserted.end());
  }
  return ids;
}

Chosen chosenRows(NSManagedObjectContext& context, const StoreChoice& choice) {
  Chosen rows;
  const auto copied = copiedIDs(context, choice);
  forEachRow(context, [&](const auto& object) {
    if (copied.contains(object->objectID())) rows.copied.emplace(object->objectID(), object);
    if (const auto id = identifierOf(*object)) rows.identified.emplace(*id, object);
  });
  return rows;
}

/// The row that stands for this one already, copied or brought by an import. It is taken once.
std::shared_ptr<NSManagedObject> takeTwin(Chosen& rows, const NSManagedObject& object) {
  const auto id = identifierOf(object);
  if (!id) return nullptr;
  auto [twin, end] = rows.identified.equal_range(*id);
  while (twin != end && &twin->second->entity() != &object.entity()) ++twin;
  if (twin == end) return nullptr;
  const auto taken = twin->second;
  rows.identified.erase(twin);
  rows.copied.erase(taken->objectID());
  return taken;
}

/// What belongs to a row and has no identifier, such as its settings, is copied again.
void noteParts(const NSManagedObject& twin, Rows& replaced) {
  for (const NSRelationshipDescription& relation : twin.entity().relationships()) {
    if (relation.isToMany || relation.deleteRule != NSDeleteRule::cascade) continue;
    for (const auto& part : twin.members(relation)) replaced.emplace(part->objectID(), part);
  }
}

/// Whether rows would go with it that stay.
bool hasOthers(const NSManagedObject& object, const Rows& leaving) {
  return std::ranges::any_of(object.entity().relationships(), [&](const auto& relation) {
    return relation.deleteRule == NSDeleteRule::cascade &&
           std::ranges::any_of(object.members(relation), [&](const auto& member) {
             return !leaving.contains(member->objectID());
           });
  });
}

void deleteRows(NSManagedObjectContext& context, const Rows& rows) {
  NSManagedObject::Objects leaving;
  for (const auto& [id, object] : rows) {
    if (!hasOthers(*object, rows)) leaving.push_back(object);
  }
  for (const auto& object : leaving) context.deleteObject(*object);
}

/// What the chosen store has from elsewhere stays; what was copied earlier and has been deleted
/// since goes.
void copyRows(NSManagedObjectContext& from, NSManagedObjectContext& to, Chosen rows) {
  Rows copies;  // by the originals
  NSManagedObject::Objects originals;
  forEachRow(from, [&](const auto& object) {
    originals.push_back(object);
    auto copy = takeTwin(rows, *object);
    if (copy != nullptr) {
      noteParts(*copy, rows.copied);
    } else {
      copy = to.insert(object->entity().name());
    }
    copyAttributes(*object, *copy);
    copies.emplace(object->objectID(), copy);
  });
  deleteRows(to, rows.copied);
  for (const auto& object : originals)
    copyRelations(*object, *copies.at(object->objectID()), copies);
}

std::size_t tasksIn(NSManagedObjectContext& context) {
  return orThrow(context.count(NSFetchRequest::of<TaskEntity>()));
}

std::shared_ptr<DataManager::Container> containerFor(const DataManager& manager, bool isCloud) {
  return isCloud ? manager.cloudPersistentContainer() : manager.localPersistentContainer();
}

std::shared_ptr<NSManagedObjectContext> contextToCopy(const DataManager& manager,
                                                      const StoreChoice& choice) {
  auto context = containerFor(manager, choice.isCloud)->newBackgroundContext();
  context->setName(copyingContext);
  return context;
}

/// Completes a copy that was made earlier. Returns how many tasks there are.
std::size_t copyTasks(const DataManager& manager, const StoreChoice& choice) {
  const auto to = contextToCopy(manager, choice);
  const auto from = containerFor(manager, !choice.isCloud)->newBackgroundContext();
  return orThrow(to->performTransaction([&] {
    // A relation that can't be read would be copied as empty.
    return from->performTransaction([&]() -> Result<std::size_t> {
      copyRows(*from, *to, chosenRows(*to, choice));
      return tasksIn(*from);
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
  const std::size_t copied = choice.keepsTasks ? 0 : copyTasks(manager, choice);
  SettingsStorage& settings = SettingsStorage::shared();
  settings.changeTiers(choice.isCloud, Setting::cloudSyncTasksEnabled);
  expectSaved(SettingsStorage::saveError());
  settings.shareAgain();  // where the switch was set before the process was killed
  return copied;
}

/// Where that can't be done, the choice stays under way, and is carried out again.
void takeBack(const DataManager& manager, const StoreChoice& choice) {
  const auto chosen = contextToCopy(manager, choice);
  const auto taken = chosen->performTransaction([&]() -> Result<void> {
    deleteRows(*chosen, chosenRows(*chosen, choice).copied);
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
  // From a moment earlier: a save at the same instant is later.
  const StoreChoice choice{
      .isCloud = isCloud, .keepsTasks = result.found > 0, .began = Date::now() - 1};
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
