#include "Tasks/Rows/TaskCategoryEntity.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskShareOwnerEntity.h"

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

std::optional<std::string> externalUrl(const TaskExtra::ActionButton& button) {
  return button.type == TaskExtra::ActionButtonType::externalUrl ? button.url : std::nullopt;
}

/// What the watch can't count without the log, for the frequencies that need it.
void addCounts(ComplicationTaskSnapshot& snapshot, const TaskEntity& task,
               const TaskFrequencyPeriod& period, Date now) {
  const TimeZone zone = snapshot.taskCurrentTimeZone;
  const auto counting = periodTypeForCompletionCountCalculation(snapshot.frequency.dayMode);
  const auto measured = measurementDuration(snapshot.frequency.dayMode);
  if (snapshot.frequency.dayMode == DayMode::dayInterval) {
    if (const auto day = task.lastCompletedDate(period.previous(zone).finishDate)) {
      snapshot.periodOfLastCompletionBeforeToday =
          snapshot.frequency.period(*day, snapshot.firstDayOfWeek, zone).period;
    }
  } else if (counting != measured && !isAggregate(snapshot.frequency.dayMode)) {
    const YYYYMMDD from = firstDate(counting, period.startDate, period.firstDayOfWeek, zone);
    const YYYYMMDD to = lastDate(counting, period.startDate, period.firstDayOfWeek, zone);
    snapshot.numUniqueCompletions = ComplicationTaskSnapshot::UniqueCompletions{
        .start = from, .end = to, .count = task.numUniqueCompletions(from, to, now).certainCount()};
  }
}

}  // namespace

std::optional<ComplicationSnapshotDisplayRepresentation>
TaskEntity::shareOwnerDisplayRepresentation() const {
  const auto owner = shareOwner(*this);
  return owner ? snapshotOf(owner->value(TaskShareOwnerEntity::imageName)) : std::nullopt;
}

std::optional<NotificationTask> TaskEntity::notificationTaskCurrentProgress(
    const TaskFrequencyPeriod& period, Date now) const {
  return notificationTask(streakedCompletionStatus(period, now), now);
}

std::optional<NotificationTask> TaskEntity::notificationTaskWhenCompleted(
    const TaskFrequencyPeriod& period, bool isPartialCompletion, Date now) const {
  const auto [status, streak] = streakedCompletionStatus(period, now);
  return notificationTask(status.nextCompletionStatus(streak, isPartialCompletion, now), now);
}

std::optional<NotificationTask> TaskEntity::notificationTask(
    const StreakedCompletionStatus& standing, Date now) const {
  const auto id = taskUniqueId();
  if (!id) return std::nullopt;
  const CompletionStatus& status = standing.completionStatus;
  return NotificationTask{.taskId = *id,
                          .firstDayOfWeek = firstDayOfWeek(),
                          .startOfDay = startOfDay(),
                          .timeZone = taskCurrentTimeZone(),
                          .displayTitle = displayTitle(status.progress(), now),
                          .titleIcon = titleIcon(),
                          .displayOrder = taskDisplayOrder(),
                          .displayRepresentation = snapshotOf(displayRepresentation()),
                          .color = taskColor(),
                          .frequency = frequency(),
                          .streak = standing.streak,
                          .completionStatus = status,
                          .externalUrl = externalUrl(taskExtra().uncheckedActionButton),
                          .shareStatus = taskShareStatus(),
                          .shareOwnerDisplayRepresentation = shareOwnerDisplayRepresentation(),
                          .shareOwnerDisplayName = shareOwnerDisplayName(*this),
                          .shareParticipantsCount = shareParticipantCount(),
                          .userProfileID = userProfileID()};
}

ComplicationTaskSnapshot TaskEntity::complicationTaskSnapshot(Date date, Date now) const {
  const auto [status, streak] = streakedCompletionStatus(date, now);
  const YYYYMMDD day = YYYYMMDD::fromDate(startOfDay(), date, taskCurrentTimeZone());
  ComplicationTaskSnapshot snapshot{
      .date = date,
      .statusDate = value(Columns::statusDate).value_or(now),
      .taskUniqueId = taskUniqueId(),
      .taskStatus = taskStatus(),
      .createdDate = createdDay(now),
      .startOfDay = startOfDay(),
      .firstDayOfWeek = firstDayOfWeek(),
      .taskCurrentTimeZone = taskCurrentTimeZone(),
      .title = value(Columns::title),
      .snapshotDisplayRepresentation = snapshotOf(displayRepresentation()),
      .automaticTaskType = automaticTaskType(),
      .taskDisplayOrder = taskDisplayOrder(),
      .frequency = frequency(),
      .isNegative = isNegative(),
      .codableColor = taskColor(),
      .taskExtra = taskExtra(),
      .completionStatus = status,
      .streak = streak,
      .shareStatus = taskShareStatus(),
      .shareOwnerSnapshotDisplayRepresentation = shareOwnerDisplayRepresentation(),
      .shareOwnerDisplayName = shareOwnerDisplayName(*this),
      .shareParticipantCount = shareParticipantCount(),
      .notificationSettings = notificationSettings(),
      .userProfileID = userProfileID(),
      .notes = notes(day),
      .snapshotPinnedNote = pinnedNote()};
  for (const auto& category : value(Columns::taskCategories)) {
    const auto id = category->value(TaskCategoryEntity::uniqueId);
    if (id) snapshot.categoryIDs.insert(*id);
  }
  addCounts(snapshot, *this, period(date), now);
  return snapshot;
}

}  // namespace velloro
