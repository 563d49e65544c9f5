#pragma once

#include "Host/HostStore.h"
#include "OxKit/FunctionRef.h"
#include "TimedTasks/TimedTaskManager.h"

#include <memory>
#include <optional>
#include <vector>

namespace velloro {

class TaskLogEntryEntity;

/// The application's part in timers: it starts and stops runs, and writes the log entry at their
/// end. See "Timers" in `docs/host.md`. On the main thread.
///
/// A run is kept twice: as an entry of `TimedTaskManager`, by which it ends, and as a row of the
/// store, from which the status of its task is read. It is over once the log has an entry with its
/// identifier, which is written in the transaction that removes the row. Therefore a process that
/// is killed anywhere leaves either a running timer or one log entry.
class TimedTaskHost final : public TimedTaskManagerDelegate {
 public:
  using Run = TimedTaskManagerEntry;
  /// Looks a task up; called within the transaction that writes.
  using Find = FunctionRef<std::shared_ptr<TaskEntity>()>;

  /// \param store Must outlive this.
  /// \param runsTimers Whether the process stays until timers end. Otherwise a run is logged by the
  ///     next command that writes after its end.
  explicit TimedTaskHost(const HostStore& store, bool runsTimers = false)
      : store_(store), runsTimers_(runsTimers) {}

  struct Started {
    std::shared_ptr<TaskEntity> task;
    Run run;
  };
  /// Starts a timer for what is left of the completion under way, in the current period, and plans
  /// its notifications.
  /// \throws HostError for a task that is not timed, is archived or is deleted, and
  /// TimedTaskManager::Error `alreadyTiming`.
  Started start(Find find, Date now);

  struct Stopped {
    std::shared_ptr<TaskEntity> task;
    Run run;
    TimeInterval ran = 0;                            ///< Seconds.
    std::shared_ptr<TaskLogEntryEntity> entry = {};  ///< Null where nothing was logged.
  };
  /// Ends the timer of a task before its time, and cancels its notifications. What ran is logged
  /// as a timed stretch, which counts towards the completion under way and completes nothing.
  /// Absent where no timer of the task is running.
  /// \param isKept False logs nothing.
  std::optional<Stopped> stop(Find find, bool isKept, Date now);

  [[nodiscard]] bool mayRunTimers() const override { return runsTimers_; }
  void timerExpired(const Run& run, const UniqueID& taskIdentifier) override;
  [[nodiscard]] LiveActivityDisplayMode liveActivityDisplayMode(
      const UniqueID& taskIdentifier) const override;

 private:
  const HostStore& store_;
  bool runsTimers_;
};

/// Logs the runs that are over by now; `HostStore::write` begins with it.
void logExpiredRuns(const HostStore& store);

/// Plans the notifications of all running timers again, after the notification centre was cleared.
void scheduleRunningTimers(const HostStore& store, Date now);

/// Makes a task answer as if those of the runs that are its own and are over were logged. Nothing
/// is saved.
void foreseeExpiredRuns(TaskEntity& task, const std::vector<TimedTaskManagerEntry>& runs, Date now);

}  // namespace velloro
