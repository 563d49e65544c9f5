#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Foundation/Values/Error.h"
#include "Tasks/Rows/TaskAttributes.h"
#include "Tasks/Status/VelloroTaskProtocol.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

struct CompletionByPeriod;
struct CompletionStatus;
struct DatedPeriod;
struct IconVisualRepresentation;
struct NotificationTask;
struct NumUniqueCompletions;
struct TaskLogFetchRequest;
struct TaskLogSummary;
struct TaskNotificationSettings;
struct TaskOutlook;
struct TaskRecentHistory;

/// A task of the store: its row, whose columns are in `TaskAttributes`, and what the rest of the
/// program asks of a task by name.
///
///     const auto task = TaskEntity::create(*context);
///     task->setValue(TaskAttributes::startOfDayValue, HHMMSS{.h = 4});
///     task->startOfDay();                               // 04:00:00
///     task->currentCompletionStatus();                  // of the present period
///
/// Whatever is stored can be read: what is unknown counts as absent, or as the default. What is
/// derived decodes the row at each call; whoever asks more than once takes a `TaskSnapshot` and
/// asks the functions that take one (`StoredTaskStatus.h`, `StoredTaskRecords.h`). What several
/// columns hold together is written by the functions of `TaskWriting.h`.
///
/// Most types are declared only, so that the header is quick to read for the compiler: a source
/// includes the headers of those whose values it uses.
class TaskEntity : public EntityClass<TaskEntity>, public VelloroTaskProtocol {
 public:
  /// Absent when the stored text is no identifier.
  [[nodiscard]] std::optional<UniqueID> taskUniqueId() const;
  [[nodiscard]] UniqueID uniqueId() const override;
  [[nodiscard]] TaskStatus taskStatus() const;
  [[nodiscard]] TaskStatus status() const override { return taskStatus(); }
  [[nodiscard]] TaskDisplayOrder taskDisplayOrder() const override;
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

  // When it is due. Without a value of the task's own, the setting of all tasks holds.
  [[nodiscard]] HHMMSS startOfDay() const override;
  /// The task's own counts where it has a meaning: in a task that is shared with the user, and
  /// where the log is kept in periods that are neither days nor months.
  [[nodiscard]] DayOfWeek firstDayOfWeek() const override;
  /// The one that the task is pinned to, else the device's.
  [[nodiscard]] TimeZone taskCurrentTimeZone() const;
  [[nodiscard]] TimeZone timeZone() const override;
  /// Counts are brought into the range of what can be chosen. A mode that the task can't have gives
  /// every day of the week.
  [[nodiscard]] TaskFrequency frequency() const override;

  // What is done.
  [[nodiscard]] std::optional<AutomaticTaskType> automaticTaskType() const override;
  [[nodiscard]] bool isTimed() const override;
  [[nodiscard]] bool isNegative() const override;
  /// Where none was chosen, the button that suits the type.
  [[nodiscard]] TaskExtra taskExtra() const override;

  // How its user is told of it.
  /// A task without a row has the settings of a new untimed task, in the viewer's zone.
  [[nodiscard]] TaskNotificationSettings notificationSettings() const;

  // Its log and its notes.
  using Entries = std::vector<std::shared_ptr<TaskLogEntryEntity>>;
  /// Fails as the fetch does. A detached task has no log, which is logged.
  [[nodiscard]] Result<Entries> taskLog(const TaskLogFetchRequest& request) const;
  /// The same in another context, without fail: an error is logged, and there are no entries.
  [[nodiscard]] static Entries taskLog(NSManagedObjectContext& context,
                                       const TaskLogFetchRequest& request, const TaskEntity& task);
  /// The notes of a day, the oldest first, but for those in the trash.
  [[nodiscard]] std::vector<ComplicationTaskNoteSnapshot> notes(YYYYMMDD date) const override;
  /// The newest of those that are pinned.
  [[nodiscard]] std::optional<ComplicationTaskNoteSnapshot> pinnedNote() const override;

  // Where it stands. What is kept of the log answers, and only a count of days or the day of the
  // last completion, of which an open period can depend, is fetched. Whoever asks more than once
  // gives all questions the same `now`.
  [[nodiscard]] DatedPeriod currentPeriod(Date now = Date::now()) const;
  /// A task that rests skips its periods; of another's task nothing is said.
  [[nodiscard]] SkipMode willSkip(const TaskFrequencyPeriod& period,
                                  Date now = Date::now()) const override;
  [[nodiscard]] TaskProgress progress(const TaskFrequencyPeriod& period,
                                      Date now = Date::now()) const;
  /// See `TaskStanding`. The rings of today's activity are kept for the extensions, too.
  [[nodiscard]] CompletionStatus completionStatus(const TaskFrequencyPeriod& period,
                                                  Date now = Date::now()) const;
  [[nodiscard]] CompletionStatus currentCompletionStatus(Date now = Date::now()) const;
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

  using Outlook = TaskOutlook;
  /// From now on all that is asked of the task's log is answered as if the outlook had come true.
  /// Nothing that could be saved changes; `taskLog` gives what is stored.
  void setOutlook(Outlook outlook);
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

  // What others get to know of it; absent for a task without an identifier.
  [[nodiscard]] std::optional<NotificationTask> notificationTaskCurrentProgress(
      const TaskFrequencyPeriod& period, Date now = Date::now()) const;
  /// As it will stand after the next tap.
  [[nodiscard]] std::optional<NotificationTask> notificationTaskWhenCompleted(
      const TaskFrequencyPeriod& period, bool isPartialCompletion, Date now = Date::now()) const;

  // With whom it is shared.
  [[nodiscard]] std::optional<ComplicationSnapshotDisplayRepresentation>
  shareOwnerDisplayRepresentation() const override;
  [[nodiscard]] TaskShareStatus taskShareStatus() const override;
  [[nodiscard]] std::int64_t shareParticipantCount() const override;

  [[nodiscard]] Date lastUpdated() const override;

  /// The columns of the automatic type are read together.
  [[nodiscard]] bool canRead(std::size_t slot) const override;

 private:
  std::shared_ptr<const Outlook> outlook_;
};

}  // namespace velloro
