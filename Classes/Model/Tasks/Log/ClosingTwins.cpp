#include "Tasks/Log/ClosingTwins.h"

#include "CoreData/Context/NSManagedObjectContext.h"
#include "OxLog/Log.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "VelloroCore/Log/TaskLogEntryType.h"

#include <map>

namespace velloro {
namespace {

using Entry = TaskLogEntryEntity;

bool isClosing(const Entry& entry) {
  const auto type = entry.value(Entry::entryType);
  return type && isAutomatic(*type) && isFull(*type) && !entry.isTemporary();
}

/// The same on every device: by what all of them have of a row.
bool goesBefore(const Entry& entry, const Entry& other) {
  const auto bySlot = [&](std::size_t slot) {
    return order(entry.slotValue(slot), other.slotValue(slot));
  };
  const auto made = [](const Entry& one) {
    return one.value(Entry::createdTimestamp).value_or(Date::distantFuture());
  };
  if (made(entry) != made(other)) return made(entry) < made(other);
  for (std::size_t slot = 0; slot < entry.entity().attributes().size(); ++slot) {
    if (const auto difference = bySlot(slot); difference != 0) return difference < 0;
  }
  return false;
}

}  // namespace

Result<bool> removeClosingTwins(const TaskEntity& task) {
  const auto entries = task.taskLog({.direction = TaskLogFetchRequest::Direction::none});
  if (!entries) return std::unexpected(entries.error());
  std::map<UniqueID, std::shared_ptr<Entry>> kept;
  bool haveGone = false;
  for (const auto& entry : *entries) {
    const auto id = entry->value(Entry::uniqueId);
    if (!id || !isClosing(*entry)) continue;
    auto& first = kept[*id];
    auto twin = entry;
    if (first == nullptr || goesBefore(*twin, *first)) std::swap(first, twin);
    if (twin == nullptr) continue;
    Log::database.debug([&] { return "Removing twin of closing entry " + id->stringValue(); });
    task.managedObjectContext()->deleteObject(*twin);
    haveGone = true;
  }
  return haveGone;
}

}  // namespace velloro
