#include "velloro/Store/WatchReport.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "Settings/SettingEntity.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"

#include <algorithm>

namespace velloro {
namespace {

struct ChangeRow {
  const char* key;
  const char* name;
  char sign;
};

constexpr ChangeRow changes[] = {
    {NSInsertedObjectIDsKey, "inserted", '+'},
    {NSUpdatedObjectIDsKey, "updated", '~'},
    {NSDeletedObjectIDsKey, "deleted", '-'},
};

std::string titleOf(const TaskEntity& task) {
  return task.value(TaskAttributes::title).value_or("");
}

std::string describe(const TaskLogEntryEntity& entry) {
  const auto task = entry.value(TaskLogEntryEntity::task);
  return (task ? titleOf(*task) + ": " : "") +
         std::string(description(
             entry.value(TaskLogEntryEntity::entryType).value_or(TaskLogEntryType::unknown))) +
         " on " + std::to_string(entry.stored(TaskLogEntryEntity::entryDate));
}

/// Rows that belong to a task are told by it.
std::optional<std::string> describeByTask(const NSManagedObject& object) {
  for (const NSRelationshipDescription& relation : object.entity().relationships()) {
    if (relation.isToMany || relation.destinationName != TaskEntity::entityName()) continue;
    const auto tasks = object.members(relation);
    if (!tasks.empty()) return titleOf(static_cast<const TaskEntity&>(*tasks.front()));
  }
  return std::nullopt;
}

std::optional<std::string> describe(const NSManagedObject& object) {
  if (const auto* task = dynamic_cast<const TaskEntity*>(&object)) return titleOf(*task);
  if (const auto* entry = dynamic_cast<const TaskLogEntryEntity*>(&object)) return describe(*entry);
  if (const auto* setting = dynamic_cast<const SettingEntity*>(&object)) {
    return setting->value(SettingEntity::settingKey);
  }
  return describeByTask(object);
}

}  // namespace

std::vector<WatchedChange> WatchedChange::of(const Notification& merged,
                                             NSManagedObjectContext& context) {
  std::vector<WatchedChange> result;
  for (const auto& [key, name, sign] : changes) {
    const auto* ids = merged.value<std::vector<NSManagedObjectID>>(key);
    if (ids == nullptr) continue;
    for (const NSManagedObjectID id : *ids) {
      result.push_back(
          {.merged = Date::now(), .change = name, .entity = id.entity->name(), .row = id.key});
      const auto what = sign != '-' ? describe(*context.objectWithID(id)) : std::nullopt;
      if (what) result.back().what = repairedUTF8(*what);
    }
  }
  return result;
}

std::string WatchedChange::json() const {
  return JSONEncoder{.dateForm = DateForm::iso8601}.encode(*this) + "\n";
}

std::string WatchedChange::text() const {
  const char sign = std::ranges::find(changes, change, &ChangeRow::name)->sign;
  return merged.iso8601() + "  " + sign + entity + " " + std::to_string(row) +
         (what ? "  " + terminalText(*what) : "") + "\n";
}

}  // namespace velloro
