#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Foundation/Time/TimeZone.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/UniqueID.h"
#include "Tasks/Rows/TaskAttributes.h"
#include "Tasks/Status/VelloroTaskProtocol.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Log/TaskRecentHistory.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"
#include "VelloroCore/Status/TaskLogCounts.h"
#include "VelloroCore/Status/TaskLogSummary.h"
#include "VelloroCore/Status/TaskStanding.h"
#include "VelloroCore/Status/TaskStatus.h"
#include "VelloroCore/Types/AutomaticTaskType.h"
#include "VelloroCore/Types/TaskExtra.h"
#include "VelloroSnapshots/ComplicationTaskSnapshot.h"
#include "VelloroSnapshots/NotificationTask.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
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
class TaskEntity : public EntityClass<TaskEntity>, public VelloroTaskProtocol {
 public:
  /// Absent when the stored text is no identifier.
  [[nodiscard]] std::optional<UniqueID> taskUniqueId() const;
  [[nodiscard]] UniqueID uniqueId() const override;
  [[nodiscard]] TaskStatus taskStatus() const;
  [[nodiscard]] TaskStatus status() const override { return taskStatus(); }
  /// A new status is dated now.
  bool setTaskStatus(TaskStatus status);
  [[nodiscard]] TaskDisplayOrder taskDisplayOrder() const override;
  bool setTaskDisplayOrder(const TaskDisplayOrder& order);
  [[nodiscard]] std::optional<UniqueID> userProfileID() const override;

  // What it shows.
  [[nodiscard]] std::string title() const override;
  [[nodiscard]] std::optional<TaskDisplayTitle::TitleIcon> titleIcon() const override;
  [[nodiscard]] TaskDisplayTitle displayTitle(Date date, Date now = Date::now()) const override;
  [[nodiscard]] TaskDisplayTitle displayTitle(const TaskProgress& progress,
                                              Date now = Date::now()) const override;
  [[nodiscard]] std::optional<IconDisplayRepresentation> displayRepresentation() const;
  [[nodiscard]] std::optional<IconVisualRepresentation> visualRepresentation() const;
  bool setDisplayRepresentation(const IconDisplayRepresentation& displayRepresentation);
  [[nodiscard]] std::optional<OxCodableColor> taskColor() const override;
  bool setTaskColor(const std::optional<OxCodableColor>& color);

  // When it is due. Without a value of the task's own, the setting of all tasks holds.
  [[nodiscard]] HHMMSS startOfDay() const override;
  bool setStartOfDay(const std::optional<HHMMSS>& startOfDay);
  /// The task's own counts where it has a meaning: in a task that is shared with the user, and
  /// where the log is kept in periods that are neither days nor months.
  [[nodiscard]] DayOfWeek firstDayOfWeek() const override;
  bool setFirstDayOfWeek(std::optional<DayOfWeek> firstDayOfWeek);
  /// The one that the task is pinned to, else the device's.
  [[nodiscard]] TimeZone taskCurrentTimeZone() const;
  [[nodiscard]] TimeZone timeZone() const override { return taskCurrentTimeZone(); }
  /// Counts are brought into the range of what can be chosen. A mode that the task can't have gives
  /// every day of the week.
  [[nodiscard]] TaskFrequency frequency() const override;
  /// Days of the month are not stored.
  bool setFrequency(const TaskFrequency& frequency);

  // What is done.
  [[nodiscard]] std::optional<AutomaticTaskType> automaticTaskType() const override;
  bool setAutomaticTaskType(const std::optional<AutomaticTaskType>& type);
  [[nodiscard]] bool isTimed() const override;
  [[nodiscard]] bool isNegative() const override;
  /// Where none was chosen, the button that suits the type.
  [[nodiscard]] TaskExtra taskExtra() const override;
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
  /// The same without fail: an error is logged, and there are no entries.
  [[nodiscard]] Entries entriesOrNone(const TaskLogFetchRequest& request) const;
  /// The same in another context.
  [[nodiscard]] static Entries taskLog(NSManagedObjectContext& context,
                                       const TaskLogFetchRequest& request, const TaskEntity& task);
  /// The notes of a day, the oldest first, but for those in the trash.
  [[nodiscard]] std::vector<ComplicationTaskNoteSnapshot> notes(YYYYMMDD date) const override;
  /// The newest of those that are pinned.
  [[nodiscard]] std::optional<ComplicationTaskNoteSnapshot> pinnedNote() const override;
  /// Where none is stored, the instant of the first entry of its log up to today; else now.
  [[nodiscard]] Date creationDate(Date now = Date::now()) const;

  /// The logical day of its creation date, by the clock of the zone that it was made in.
  [[nodiscard]] YYYYMMDD createdDay(Date now = Date::now()) const;

  // Where it stands. What is kept of the log answers, and only a count of days or the day of the
  // last completion, of which an open period can depend, is fetched. Whoever asks more than once
  // gives all questions the same `now`.
  [[nodiscard]] DatedPeriod currentPeriod(Date now = Date::now()) const;
  /// A task that rests skips its periods; of another's task nothing is said.
  [[nodiscard]] SkipMode willSkip(const TaskFrequencyPeriod& period,
                                  Date now = Date::now()) const override;
  [[nodiscard]] TaskProgress progress(const TaskFrequencyPeriod& period,
                                      Date now = Date::now()) const;
  /// As it would be with that amount in an open period, and no timer running.
  [[nodiscard]] TaskProgress progress(const TaskFrequencyPeriod& period, double amount,
                                      Date now = Date::now()) const;
  /// See `TaskStanding`. The rings of today's activity are kept for the extensions, too.
  [[nodiscard]] CompletionStatus completionStatus(const TaskFrequencyPeriod& period,
                                                  Date now = Date::now()) const;
  [[nodiscard]] CompletionStatus currentCompletionStatus(Date now = Date::now()) const {
    return completionStatus(currentPeriod(now).period, now);
  }
  [[nodiscard]] StreakedCompletionStatus streakedCompletionStatus(const TaskFrequencyPeriod& period,
                                                                  Date now = Date::now()) const;
  [[nodiscard]] StreakedCompletionStatus streakedCompletionStatus(
      Date date, Date now = Date::now()) const override;
  [[nodiscard]] std::optional<UniqueID> currentUndoableEntry(
      const std::optional<TaskFrequencyPeriod>& period) const override;
  /// The completed days from one day to another, with today as long as a negative task has no entry
  /// for it.
  [[nodiscard]] NumUniqueCompletions numUniqueCompletions(YYYYMMDD from, YYYYMMDD to,
                                                          Date now = Date::now()) const;
  /// Absent also for a task that is another's.
  [[nodiscard]] std::optional<YYYYMMDD> lastCompletedDate(YYYYMMDD onOrBefore) const;

  /// What is kept of its log; nothing in a task without a row.
  [[nodiscard]] TaskTemporalData temporalData() const;
  /// By what its log is read.
  [[nodiscard]] TaskLogRules logRules(Date now = Date::now()) const;

  /// How the log will be once somebody writes it, for those who read and must not write.
  struct Outlook {
    std::vector<TaskLogRow> added = {};             ///< Entries that it will have, newest first.
    std::set<NSManagedObjectID> withdrawn = {};     ///< Stored entries that it won't have.
    std::optional<TaskTemporalData> temporal = {};  ///< What will be kept of it, where known.

    [[nodiscard]] bool withdraws(const NSManagedObject& entry) const {
      return withdrawn.contains(entry.objectID());
    }
  };
  /// From now on all that is asked of the task's log is answered as if the outlook had come true.
  /// Nothing that could be saved changes; `taskLog` gives what is stored.
  void setOutlook(Outlook outlook) {
    outlook_ = std::make_shared<const Outlook>(std::move(outlook));
  }
  /// Null without one.
  [[nodiscard]] const Outlook* outlook() const { return outlook_.get(); }

  // What its log says, by reading it.
  using CompletionByPeriod = velloro::CompletionByPeriod;
  /// \param from Absent for the whole log.
  [[nodiscard]] TaskLogSummary logSummary(std::optional<YYYYMMDD> from, YYYYMMDD to,
                                          Date now = Date::now()) const;
  /// \param from Absent for the oldest entry.
  [[nodiscard]] TaskRecentHistory recentHistory(std::optional<YYYYMMDD> from, YYYYMMDD to,
                                                Date now = Date::now()) const;
  /// Brings what is kept of the log up to date with it, as of a day, and gives the task what every
  /// task must have: an identifier, and the dates of its creation and status. Only what differs is
  /// written, so a second pass changes nothing; the caller saves.
  void updateTemporalData(YYYYMMDD day, TimeZone timeZone, Date now = Date::now());
  /// What `updateTemporalData` would keep.
  [[nodiscard]] TaskTemporalData temporalDataFromLog(YYYYMMDD day, TimeZone timeZone,
                                                     Date now = Date::now()) const;

  // What others get to know of it; absent for a task without an identifier.
  [[nodiscard]] std::optional<NotificationTask> notificationTaskCurrentProgress(
      const TaskFrequencyPeriod& period, Date now = Date::now()) const;
  /// As it will stand after the next tap.
  [[nodiscard]] std::optional<NotificationTask> notificationTaskWhenCompleted(
      const TaskFrequencyPeriod& period, bool isPartialCompletion, Date now = Date::now()) const;
  /// As it stands at a moment.
  [[nodiscard]] ComplicationTaskSnapshot complicationTaskSnapshot(Date date,
                                                                  Date now = Date::now()) const;

  // With whom it is shared.
  [[nodiscard]] std::optional<ComplicationSnapshotDisplayRepresentation>
  shareOwnerDisplayRepresentation() const override;
  [[nodiscard]] TaskShareStatus taskShareStatus() const override;
  [[nodiscard]] std::int64_t shareParticipantCount() const override;

  [[nodiscard]] Date lastUpdated() const override;

  /// The columns of the automatic type are read together.
  [[nodiscard]] bool canRead(std::size_t slot) const override;

 private:
  [[nodiscard]] TaskFrequencyPeriod period(Date date) const;
  [[nodiscard]] TaskStanding standing(Date now) const;
  [[nodiscard]] TaskTemporalData temporalData(TaskLogRows rows, const TaskLogRules& rules,
                                              YYYYMMDD day) const;
  [[nodiscard]] SkipMode willSkip(const TaskFrequencyPeriod& period,
                                  const TaskLogRules& rules) const;
  [[nodiscard]] std::optional<NotificationTask> notificationTask(
      const StreakedCompletionStatus& standing, Date now) const;
  void repair(Date now);
  bool setReminders(NSManagedObjectContext& context, const std::vector<TaskReminder>& reminders);

  std::shared_ptr<const Outlook> outlook_;
};

}  // namespace velloro
