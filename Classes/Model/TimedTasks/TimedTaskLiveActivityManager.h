#pragma once

#include "OxKit/FunctionRef.h"
#include "VelloroCore/Progress/TimedTaskManagerEntry.h"
#include "VelloroCore/Reminders/NotificationModes.h"

#include <vector>

namespace velloro {

/// Decides which running timers are shown as a live activity: a display that stays in sight while
/// the timer runs. This platform has none, so nothing is shown by itself; a program with a place
/// for them observes `activitiesChanged`.
///
///     using enum LiveActivityDisplayMode;
///     TimedTaskLiveActivityManager::isShown(automatic, 59);    // false: over at a glance
///     TimedTaskLiveActivityManager::isShown(yes, 59);          // true
class TimedTaskLiveActivityManager {
 public:
  using Entries = std::vector<TimedTaskManagerEntry>;

  /// Posted on the default centre when a timer was started, was stopped or has expired. The user
  /// info has those that are to be shown, as `Entries`, under the key.
  static constexpr const char* activitiesChanged = "TimedTasks.activitiesChanged";
  static constexpr const char* entriesKey = "entries";

  /// \param duration Of the run, in seconds. `automatic` shows runs of a minute or more.
  [[nodiscard]] static bool isShown(LiveActivityDisplayMode mode, double duration);
  /// Tells which of the timers are to be shown. \param modeOf By the task's identifier.
  static void update(Entries entries, FunctionRef<LiveActivityDisplayMode(const UniqueID&)> modeOf);
};

}  // namespace velloro
