#pragma once

#include "CoreData/EntityClass.h"
#include "Foundation/TimeZone.h"
#include "OxCheckableTasks/IconDisplayRepresentation.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/UniqueID.h"
#include "Tasks/TaskAttributes.h"
#include "VelloroCore/AutomaticTaskType.h"
#include "VelloroCore/TaskDisplayOrder.h"
#include "VelloroCore/TaskExtra.h"
#include "VelloroCore/TaskFrequency.h"
#include "VelloroCore/TaskNotificationSettings.h"
#include "VelloroCore/TaskStatus.h"
#include "VelloroSnapshots/ComplicationTaskSnapshot.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace velloro {

struct TaskLogFetchRequest;

/// A task of the store: its row (`TaskAttributes`), read and written as what it means.
///
///     const auto task = TaskEntity::create(*context);
///     task->setTaskDisplayOrder({TaskPageNumber{1}, 0});    // true; 101 is stored
///     task->value(TaskAttributes::displayOrder);            // 101
///
/// Whatever is stored can be read: what is unknown counts as absent, or as the default. The setters
/// write only what differs from what is stored, and return whether anything did.
class TaskEntity : public EntityClass<TaskEntity> {
 public:
  /// Absent when the stored text is no identifier.
  [[nodiscard]] std::optional<UniqueID> taskUniqueId() const;
  [[nodiscard]] TaskStatus taskStatus() const;
  /// A new status is dated now.
  bool setTaskStatus(TaskStatus status);
  [[nodiscard]] TaskDisplayOrder taskDisplayOrder() const;
  bool setTaskDisplayOrder(const TaskDisplayOrder& order);
  [[nodiscard]] std::optional<UniqueID> userProfileID() const;

  // What it shows.
  [[nodiscard]] std::optional<IconDisplayRepresentation> displayRepresentation() const;
  [[nodiscard]] std::optional<IconVisualRepresentation> visualRepresentation() const;
  bool setDisplayRepresentation(const IconDisplayRepresentation& displayRepresentation);
  /// Absent for the theme's.
  [[nodiscard]] std::optional<OxCodableColor> taskColor() const;
  bool setTaskColor(const std::optional<OxCodableColor>& color);

  // When it is due. Without a value of the task's own, the setting of all tasks holds.
  [[nodiscard]] HHMMSS startOfDay() const;
  bool setStartOfDay(const std::optional<HHMMSS>& startOfDay);
  /// The task's own counts where it has a meaning: in a task that is shared with the user, and
  /// where the log is kept in periods that are neither days nor months.
  [[nodiscard]] DayOfWeek firstDayOfWeek() const;
  bool setFirstDayOfWeek(std::optional<DayOfWeek> firstDayOfWeek);
  /// The one that the task is pinned to, else the device's.
  [[nodiscard]] TimeZone taskCurrentTimeZone() const;
  /// Counts are brought into the range of what can be chosen. A mode that the task can't have gives
  /// every day of the week.
  [[nodiscard]] TaskFrequency frequency() const;
  /// Days of the month are not stored.
  bool setFrequency(const TaskFrequency& frequency);

  // What is done.
  /// Absent for a task that is ticked off by hand.
  [[nodiscard]] std::optional<AutomaticTaskType> automaticTaskType() const;
  bool setAutomaticTaskType(const std::optional<AutomaticTaskType>& type);
  /// Where none was chosen, the button that suits the type.
  [[nodiscard]] TaskExtra taskExtra() const;
  bool setTaskExtra(const TaskExtra& extra);

  // How its user is told of it.
  /// A task without a row has the settings of a new untimed task, in the viewer's zone.
  [[nodiscard]] TaskNotificationSettings notificationSettings() const;
  /// A reminder keeps its row as long as its value is wanted, under whatever identifier; one whose
  /// trigger lacks what it needs gets none. Changed settings are dated now.
  bool setNotificationSettings(const TaskNotificationSettings& settings);

  // Its log and its notes.
  using Entries = std::vector<std::shared_ptr<TaskLogEntryEntity>>;
  /// Fails as the fetch does. A detached task has no log, which is logged.
  [[nodiscard]] Result<Entries> taskLog(const TaskLogFetchRequest& request) const;
  /// The same in another context, and without fail: an error is logged, and there are no entries.
  [[nodiscard]] static Entries taskLog(NSManagedObjectContext& context,
                                       const TaskLogFetchRequest& request, const TaskEntity& task);
  /// The notes of a day, the oldest first, but for those in the trash.
  [[nodiscard]] std::vector<ComplicationTaskNoteSnapshot> notes(YYYYMMDD date) const;
  /// The newest of those that are pinned.
  [[nodiscard]] std::optional<ComplicationTaskNoteSnapshot> pinnedNote() const;
  /// Where none is stored, the instant of the first entry of its log up to today; else now.
  [[nodiscard]] Date creationDate() const;

  // With whom it is shared.
  [[nodiscard]] TaskShareStatus taskShareStatus() const;
  /// Those who have accepted.
  [[nodiscard]] std::int64_t shareParticipantCount() const;

  /// When its status or what follows from its log last changed; now when that is not known.
  [[nodiscard]] Date lastUpdated() const;
  /// Whether it changed later than another.
  [[nodiscard]] bool isNewer(const TaskEntity& other) const;

 private:
  bool setReminders(NSManagedObjectContext& context, const std::vector<TaskReminder>& reminders);
};

}  // namespace velloro
