#pragma once

#include "Foundation/Dispatch/NSTimer.h"
#include "TimedTasks/TimedTaskEntries.h"
#include "VelloroCore/Reminders/NotificationModes.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace velloro {

/// What the application does about timers.
class TimedTaskManagerDelegate {
 public:
  virtual ~TimedTaskManagerDelegate() = default;

  /// Whether timers may run in this process now. If not, an entry expires with the first call of
  /// `processCurrentTimers` after its end, here or elsewhere.
  [[nodiscard]] virtual bool mayRunTimers() const = 0;
  /// The time of a run is up. Told again, here or in another process, if a process is killed before
  /// the entry is removed from the list: what is written is recognised by `entryId`. If it throws,
  /// the entry stays in the list for a later call.
  virtual void timerExpired(const TimedTaskManagerEntry& entry, const UniqueID& taskIdentifier) = 0;
  [[nodiscard]] virtual LiveActivityDisplayMode liveActivityDisplayMode(
      const UniqueID& taskIdentifier) const = 0;
};

/// Keeps running timers across launches. A run is an entry of a list that all processes of the
/// program share (`TimedTaskEntries`); its task is complete at the entry's end, whether or not a
/// process is there. The process that is there next tells its delegate.
///
///     class Host : public TimedTaskManagerDelegate {
///      public:
///       bool mayRunTimers() const override { return true; }
///       void timerExpired(const TimedTaskManagerEntry&, const UniqueID&) override { ++expired; }
///       LiveActivityDisplayMode liveActivityDisplayMode(const UniqueID&) const override {
///         return LiveActivityDisplayMode::automatic;
///       }
///       int expired = 0;
///     };
///     const auto host = std::make_shared<Host>();
///     TimedTaskManager manager(SettingsStorage::shared(), [] { return false; });
///     manager.delegate = host;
///     manager.start({.entryId = UniqueID::create(), .taskIdentifier = UniqueID::create(),
///                    .period = today, .start = now - 60, .end = now});
///     manager.processCurrentTimers().size();    // 1
///     host->expired;                            // 1
///
/// An entry is removed after the delegate was told, so that a killed process loses nothing. For the
/// main thread alone.
class TimedTaskManager {
 public:
  using Entry = TimedTaskManagerEntry;

  class Error : public platform::Error {
   public:
    enum class Reason { taskNotFound, alreadyTiming };

    explicit Error(Reason reason);

    [[nodiscard]] Reason reason() const { return static_cast<Reason>(code()); }
  };

  /// The process's own, over its settings and its store.
  [[nodiscard]] static TimedTaskManager& shared();
  /// \param storage Must outlive this.
  TimedTaskManager(SettingsStorage& storage, std::function<bool()> inMaintenanceMode)
      : entries_(storage), inMaintenanceMode_(std::move(inMaintenanceMode)) {}

  /// Told of expiry. Without one no timer starts, and what has expired is removed untold.
  std::weak_ptr<TimedTaskManagerDelegate> delegate;

  /// Tells the delegate of each entry whose end is not later than now, starts a timer for the
  /// others, and removes the former. Does nothing in maintenance mode, and none within a call of
  /// its own. Returns the `entryId`s of those that have expired in this call.
  std::set<UniqueID> processCurrentTimers();
  void applicationDidBecomeActive() { processCurrentTimers(); }
  /// The end of a one-shot timer: tells the delegate, and removes the entry.
  /// \throws Error `taskNotFound` if the entry is no longer in the list; nothing else happens then.
  void timerTriggered(const UniqueID& entryId);

  [[nodiscard]] std::vector<Entry> entries() const { return entries_.all(); }
  /// The entry of a task; absent where no timer of it is running.
  [[nodiscard]] std::optional<Entry> entry(const UniqueID& taskIdentifier) const;
  /// Adds an entry, and starts its timer where timers may run.
  /// \throws Error `alreadyTiming` if the task has an entry, and what can't be written.
  void start(const Entry& entry);
  /// Removes an entry, of which the delegate is not told. \throws Error `taskNotFound`, and what
  /// can't be written.
  void stop(const UniqueID& entryId);

  /// The one-shot timers of this process, by `entryId`.
  [[nodiscard]] const std::map<UniqueID, NSTimer>& timers() const { return timers_; }

 private:
  bool expire(const Entry& entry);
  void restartTimer(const Entry& entry, Date now);
  void remove(const std::set<UniqueID>& entryIds);
  void updateLiveActivity() const;

  TimedTaskEntries entries_;
  std::function<bool()> inMaintenanceMode_;
  std::map<UniqueID, NSTimer> timers_;
  bool isProcessing_ = false;
};

}  // namespace velloro
