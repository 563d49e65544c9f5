#include "Tasks/Status/StoredTaskRecords.h"

#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "Tasks/Rows/TaskCategoryEntity.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskShareOwnerEntity.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "VelloroCore/Titles/TaskTitleIcon.h"

#include <algorithm>

namespace velloro {

using Columns = TaskAttributes;

namespace {

std::optional<ComplicationSnapshotDisplayRepresentation> snapshotOf(
    const std::optional<IconDisplayRepresentation>& icon) {
  return icon ? std::optional(ComplicationSnapshotDisplayRepresentation::of(*icon)) : std::nullopt;
}

std::shared_ptr<TaskShareOwnerEntity> shareOwner(const TaskEntity& task) {
  const auto share = task.value(Columns::taskShare);
  return share ? share->value(TaskShareEntity::owner) : nullptr;
}

std::optional<std::string> shareOwnerDisplayName(const TaskEntity& task) {
  const auto owner = shareOwner(task);
  return owner ? owner->displayName() : std::nullopt;
}

/// Only a button that was chosen has one.
std::optional<std::string> externalUrl(const TaskEntity& task) {
  const auto chosen = task.value(Columns::customReminderType);
  if (!chosen) return std::nullopt;
  const TaskExtra::ActionButton& button = chosen->uncheckedActionButton;
  return button.type == TaskExtra::ActionButtonType::externalUrl ? button.url : std::nullopt;
}

/// What the watch can't count without the log, for the frequencies that need it.
void addCounts(ComplicationTaskSnapshot& snapshot, const TaskSnapshot& task,
               const TaskFrequencyPeriod& period) {
  const TimeZone zone = snapshot.taskCurrentTimeZone;
  const auto counting = periodTypeForCompletionCountCalculation(snapshot.frequency.dayMode);
  const auto measured = measurementDuration(snapshot.frequency.dayMode);
  if (snapshot.frequency.dayMode == DayMode::dayInterval) {
    if (const auto day = lastCompletedDate(task, period.previous(zone).finishDate)) {
      snapshot.periodOfLastCompletionBeforeToday =
          snapshot.frequency.period(*day, snapshot.firstDayOfWeek, zone).period;
    }
  } else if (counting != measured && !isAggregate(snapshot.frequency.dayMode)) {
    const YYYYMMDD from = firstDate(counting, period.startDate, period.firstDayOfWeek, zone);
    const YYYYMMDD to = lastDate(counting, period.startDate, period.firstDayOfWeek, zone);
    snapshot.numUniqueCompletions = ComplicationTaskSnapshot::UniqueCompletions{
        .start = from, .end = to, .count = numUniqueCompletions(task, from, to).certainCount()};
  }
}

}  // namespace

std::optional<ComplicationSnapshotDisplayRepresentation> shareOwnerDisplayRepresentation(
    const TaskEntity& task) {
  const auto owner = shareOwner(task);
  return owner ? snapshotOf(owner->value(TaskShareOwnerEntity::imageName)) : std::nullopt;
}

std::optional<NotificationTask> notificationTask(const TaskSnapshot& task,
                                                 const StreakedCompletionStatus& standing) {
  const TaskEntity& row = *task.entity;
  const auto id = row.taskUniqueId();
  if (!id) return std::nullopt;
  const CompletionStatus& status = standing.completionStatus;
  return NotificationTask{
      .taskId = *id,
      .firstDayOfWeek = task.standing.firstDayOfWeek,
      .startOfDay = task.standing.startOfDay,
      .timeZone = task.standing.timeZone,
      .displayTitle = displayTitle(task, status.progress()),
      .titleIcon = titleIcon(task.standing.automaticTaskType, task.standing.isNegative),
      .displayOrder = row.taskDisplayOrder(),
      .displayRepresentation = snapshotOf(row.displayRepresentation()),
      .color = row.taskColor(),
      .frequency = task.standing.frequency,
      .streak = standing.streak,
      .completionStatus = status,
      .externalUrl = externalUrl(row),
      .shareStatus = task.shareStatus,
      .shareOwnerDisplayRepresentation = shareOwnerDisplayRepresentation(row),
      .shareOwnerDisplayName = shareOwnerDisplayName(row),
      .shareParticipantsCount = row.shareParticipantCount(),
      .userProfileID = row.userProfileID()};
}

ComplicationTaskSnapshot complicationTaskSnapshot(const TaskSnapshot& task, Date date) {
  const TaskEntity& row = *task.entity;
  const TaskStanding& standing = task.standing;
  const auto [status, streak] = streakedCompletionStatus(task, task.period(date));
  const YYYYMMDD day = YYYYMMDD::fromDate(standing.startOfDay, date, standing.timeZone);
  ComplicationTaskSnapshot snapshot{
      .date = date,
      .statusDate = row.value(Columns::statusDate).value_or(standing.now),
      .taskUniqueId = row.taskUniqueId(),
      .taskStatus = task.status,
      .createdDate = createdDay(task),
      .startOfDay = standing.startOfDay,
      .firstDayOfWeek = standing.firstDayOfWeek,
      .taskCurrentTimeZone = standing.timeZone,
      .title = row.value(Columns::title),
      .snapshotDisplayRepresentation = snapshotOf(row.displayRepresentation()),
      .automaticTaskType = standing.automaticTaskType,
      .taskDisplayOrder = row.taskDisplayOrder(),
      .frequency = standing.frequency,
      .isNegative = standing.isNegative,
      .codableColor = row.taskColor(),
      .taskExtra = row.taskExtra(),
      .completionStatus = status,
      .streak = streak,
      .shareStatus = task.shareStatus,
      .shareOwnerSnapshotDisplayRepresentation = shareOwnerDisplayRepresentation(row),
      .shareOwnerDisplayName = shareOwnerDisplayName(row),
      .shareParticipantCount = row.shareParticipantCount(),
      .notificationSettings = row.notificationSettings(),
      .userProfileID = row.userProfileID(),
      .notes = row.notes(day),
      .snapshotPinnedNote = row.pinnedNote()};
  for (const auto& category : row.value(Columns::taskCategories)) {
    const auto id = category->value(TaskCategoryEntity::uniqueId);
    if (id) snapshot.categoryIDs.insert(*id);
  }
  addCounts(snapshot, task, task.period(date));
  return snapshot;
}

}  // namespace velloro
