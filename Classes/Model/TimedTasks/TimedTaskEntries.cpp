#include "TimedTasks/TimedTaskEntries.h"

#include "Foundation/Files/FileLock.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Values/Try.h"

namespace velloro {

std::vector<TimedTaskManagerEntry> TimedTaskEntries::all() const {
  return storage_.codable<std::vector<Entry>>(Setting::timedTaskEntries)
      .value_or(std::vector<Entry>());
}

Result<void> TimedTaskEntries::change(FunctionRef<void(std::vector<Entry>&)> change) const {
  const auto& folder = Environment::current().directories().preferences;
  TRY(NSFileManager::createDirectory(folder));
  const auto lock = FileLock::exclusive(folder / ".timers.lock");
  if (!lock) return std::unexpected(lock.error());
  std::vector<Entry> entries = all();
  const std::vector<Entry> before = entries;
  change(entries);
  if (entries == before) return {};
  storage_.setCodable(entries.empty() ? std::nullopt : std::optional(entries),
                      Setting::timedTaskEntries);
  if (auto error = SettingsStorage::saveError()) return std::unexpected(std::move(error));
  return {};
}

}  // namespace velloro
