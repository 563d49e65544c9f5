#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "Notifications/Planning/NotificationHelper.h"
#include "OxKit/Platform.h"

#include <map>
#include <memory>
#include <utility>

namespace velloro {

class TaskEntity;

/// Keeps the user's notifications true to what this process writes: `HostStore::write` notes which
/// tasks are concerned, and at the end of a command these are planned again. On a new logical day,
/// after a change of the zone, the language or a setting that plans depend on, everything is.
///
/// Nothing happens until the user has allowed notifications (`rebuildAll`), and in an extension,
/// which leaves planning to the application. On the main thread.
class NotificationUpdates {
 public:
  [[nodiscard]] static NotificationUpdates& shared();

  /// Within a transaction: the tasks that it is about to save, with all that belongs to them.
  void note(const NSManagedObjectContext& context);
  /// A task whose notifications have changed otherwise.
  void note(const std::shared_ptr<TaskEntity>& task) { note(task, false); }
  /// What is to be taken from the centre beside.
  void withdraw(NotificationHelper::ScheduleRequest&& request) {
    withdrawn_.merge(std::move(request));
  }
  /// Plans what was noted, and returns when that is in the notification centre. What can't be
  /// planned is logged, since what was written stays written.
  void bringUpToDate();

  /// Asks for authorization if the user was not asked yet, and plans everything.
  /// \throws HostError if the user does not allow notifications, or the store can't be written.
  void rebuildAll();

 private:
  using ScheduleRequest = NotificationHelper::ScheduleRequest;

  void note(const std::shared_ptr<TaskEntity>& task, bool isDeleted);
  void rebuild();
  void planTouched();
  void endSnoozes();

  std::map<const TaskEntity*, std::shared_ptr<TaskEntity>> touched_;
  ScheduleRequest withdrawn_;  ///< What tasks that are not in view any more may have planned.
};

}  // namespace velloro
