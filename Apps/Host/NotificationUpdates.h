#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "Foundation/Time/Date.h"
#include "Notifications/Planning/NotificationHelper.h"
#include "OxKit/Platform.h"

#include <map>
#include <memory>
#include <utility>

namespace velloro {

class HostStore;
class TaskEntity;

/// Keeps the user's notifications true to what this process writes: `HostStore::write` notes which
/// tasks are concerned, and at the end of a command these are planned again. On a new logical day
/// of any task, after a change of the zone, the language or a setting that plans depend on,
/// everything is. A process that has only read changes nothing.
///
/// Nothing happens until the user has allowed notifications (`rebuildAll`), and in an extension,
/// which leaves planning to the application. On the main thread.
class NotificationUpdates {
 public:
  [[nodiscard]] static NotificationUpdates& shared();

  /// Within a transaction: the tasks that it is about to save, with all that belongs to them.
  void note(const NSManagedObjectContext& context);
  /// A task whose notifications have changed otherwise.
  void note(const std::shared_ptr<TaskEntity>& task) {
    hasWritten_ = true;
    note(task, false);
  }
  /// That any task may have changed: all is planned again.
  void noteEverything();
  /// That a setting has changed.
  void noteSettings() { hasWritten_ = true; }
  /// Plans what was noted, and returns when that is in the notification centre. What can't be
  /// planned is logged, since what was written stays written.
  void bringUpToDate();

  /// Asks for authorization if the user was not asked yet, and plans everything.
  /// \throws HostError if the user does not allow notifications, or the store can't be written.
  void rebuildAll();

 private:
  using ScheduleRequest = NotificationHelper::ScheduleRequest;

  void note(const std::shared_ptr<TaskEntity>& task, bool isDeleted);
  void rebuild(Date now);
  void planTouched(Date now);
  void noteWrittenElsewhere(const HostStore& store);
  void endSnoozes(const HostStore& store, Date now);
  void withdraw(ScheduleRequest&& request) { withdrawn_.merge(std::move(request)); }
  void withdrawFromCenter();

  bool hasWritten_ = false;
  std::map<const TaskEntity*, std::shared_ptr<TaskEntity>> touched_;
  ScheduleRequest withdrawn_;  ///< What tasks that are not in view any more may have planned.
};

}  // namespace velloro
