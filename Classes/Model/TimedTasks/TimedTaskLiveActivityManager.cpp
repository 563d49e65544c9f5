#include "TimedTasks/TimedTaskLiveActivityManager.h"

#include "Foundation/Dispatch/NSNotificationCenter.h"

#include <utility>

namespace velloro {

bool TimedTaskLiveActivityManager::isShown(LiveActivityDisplayMode mode, double duration) {
  constexpr double shortestAutomatic = 60;
  switch (mode) {
    case LiveActivityDisplayMode::automatic:
      return duration >= shortestAutomatic;
    case LiveActivityDisplayMode::yes:
      return true;
    case LiveActivityDisplayMode::no:
      break;
  }
  return false;
}

void TimedTaskLiveActivityManager::update(
    Entries entries, FunctionRef<LiveActivityDisplayMode(const UniqueID&)> modeOf) {
  std::erase_if(entries, [&](const TimedTaskManagerEntry& entry) {
    return !isShown(modeOf(entry.taskIdentifier), entry.end.timeIntervalSince(entry.start));
  });
  NSNotificationCenter::defaultCenter().post(
      {.name = activitiesChanged, .userInfo = {{entriesKey, std::move(entries)}}});
}

}  // namespace velloro
