#include "Tasks/Rows/TaskEntity.h"

#include "Foundation/Text/String.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "Settings/Settings.h"
#include "Tasks/Columns/StoredAutomaticTaskType.h"
#include "Tasks/Log/StoredTemporalData.h"
#include "Tasks/Log/TaskOutlook.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/UserProfileEntity.h"
#include "Tasks/Status/StoredTaskRecords.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Log/TaskRecentHistory.h"
#include "VelloroCore/Status/TaskLogSummary.h"
#include "VelloroCore/Titles/TaskTitleIcon.h"

#include <algorithm>

namespace velloro {
namespace {

using Columns = TaskAttributes;
using ButtonType = TaskExtra::ActionButtonType;

/// Those whose values the program can ask for.
constexpr HealthType typedInTypes[] = {HealthType::recordWeight,
                                       HealthType::recordWaistCircumference,
                                       HealthType::recordPeakExpiratoryFlow,
                                       HealthType::recordBloodGlucose,
                                       HealthType::recordBloodPressure,
                                       HealthType::recordBodyTemperature,
                                       HealthType::recordBodyFatPercentage,
                                       HealthType::recordOxygenSaturation};

StoredAutomaticTaskType storedType(const TaskEntity& task) {
  return {.typeName = task.value(Columns::typeName),
          .typeTarget = task.value(Columns::typeTarget),
          .typeUnit = task.value(Columns::typeUnit),
          .typeSpeed = task.value(Columns::typeSpeed)};
}

ButtonType defaultButton(const std::optional<AutomaticTaskType>& type) {
  if (!type) return ButtonType::noAction;
  if (type->isTimed()) return ButtonType::timer;
  const auto health = type->type.healthType();
  const bool isTypedIn =
      health && std::ranges::find(typedInTypes, *health) != std::end(typedInTypes);
  return isTypedIn ? ButtonType::healthInput : ButtonType::noAction;
}

}  // namespace

std::shared_ptr<NSManagedObject> TaskAttributes::makeObject() {
  return std::make_shared<TaskEntity>();
}

// What the row says.

std::optional<UniqueID> TaskEntity::taskUniqueId() const {
  return value(Columns::uniqueId);
}

UniqueID TaskEntity::uniqueId() const {
  return taskUniqueId().value_or(UniqueID());
}

TaskStatus TaskEntity::taskStatus() const {
  return value(Columns::status).value_or(defaultStatus);
}

TaskDisplayOrder TaskEntity::taskDisplayOrder() const {
  return TaskDisplayOrder::fromDisplayOrderValue(value(Columns::displayOrder));
}

std::optional<UniqueID> TaskEntity::userProfileID() const {
  const auto profile = value(Columns::userProfile);
  return profile ? profile->value(UserProfileEntity::uniqueId) : std::nullopt;
}

std::string TaskEntity::title() const {
  // A text that is not UTF-8 would keep every record with it from being written.
  return repairedUTF8(value(Columns::title).value_or(""));
}

std::optional<TaskDisplayTitle::TitleIcon> TaskEntity::titleIcon() const {
  return velloro::titleIcon(automaticTaskType(), isNegative());
}

std::optional<IconDisplayRepresentation> TaskEntity::displayRepresentation() const {
  return value(Columns::imageName);
}

std::optional<IconVisualRepresentation> TaskEntity::visualRepresentation() const {
  auto shown = displayRepresentation();
  return shown ? std::optional(std::move(shown->visualRepresentation)) : std::nullopt;
}

bool TaskEntity::setDisplayRepresentation(const IconDisplayRepresentation& displayRepresentation) {
  return replaceValue(Columns::imageName, displayRepresentation);
}

std::optional<OxCodableColor> TaskEntity::taskColor() const {
  return value(Columns::colorInfo);
}

HHMMSS TaskEntity::startOfDay() const {
  const auto own = value(Columns::startOfDayValue);
  return own ? *own : Settings::shared().startOfDay();
}

DayOfWeek TaskEntity::firstDayOfWeek() const {
  return decodedFirstDayOfWeek(*this, frequency().dayMode);
}

TimeZone TaskEntity::taskCurrentTimeZone() const {
  const auto pinned = value(Columns::currentTimeZoneOverride);
  return pinned ? *pinned : TimeZone::current();
}

TimeZone TaskEntity::timeZone() const {
  return taskCurrentTimeZone();
}

TaskFrequency TaskEntity::frequency() const {
  return decodedFrequency(*this, automaticTaskType());
}

std::optional<AutomaticTaskType> TaskEntity::automaticTaskType() const {
  if (text(Columns::typeName) == nullptr && text(Columns::typeSpeed) == nullptr) {
    return std::nullopt;
  }
  return storedType(*this).automaticTaskType();
}

bool TaskEntity::isTimed() const {
  const auto type = automaticTaskType();
  return type && type->isTimed();
}

bool TaskEntity::isNegative() const {
  return value(Columns::isNegative);
}

TaskExtra TaskEntity::taskExtra() const {
  if (auto chosen = value(Columns::customReminderType)) return *std::move(chosen);
  return {.uncheckedActionButton = {.type = defaultButton(automaticTaskType())}};
}

TaskShareStatus TaskEntity::taskShareStatus() const {
  using enum TaskShareEntity::ShareStatus;
  const auto share = value(Columns::taskShare);
  if (share == nullptr) return TaskShareStatus::notShared;
  const auto status = share->value(TaskShareEntity::status);
  const bool isAnothers = status == externalTask || status == externalTaskNoLongerShared;
  return isAnothers ? TaskShareStatus::isSharedWithMe : TaskShareStatus::isSharedWithOthers;
}

std::int64_t TaskEntity::shareParticipantCount() const {
  const auto share = value(Columns::taskShare);
  const auto participants =
      share != nullptr ? share->value(TaskShareEntity::participantsJson) : std::nullopt;
  if (!participants) return 0;
  return std::ranges::count(*participants, SharedTaskParticipant::AcceptanceStatus::accepted,
                            &SharedTaskParticipant::acceptanceStatus);
}

Date TaskEntity::lastUpdated() const {
  const auto ofStatus = value(Columns::statusDate);
  const auto derived = value(Columns::taskTemporalData);
  const auto ofLog = derived ? derived->value(TaskTemporalDataEntity::lastUpdated) : std::nullopt;
  const auto latest = std::max(ofStatus, ofLog);  // absent comes before any date
  return latest ? *latest : Date::now();
}

bool TaskEntity::canRead(std::size_t slot) const {
  const auto holdsNothing = [&](const auto& column) { return value(column).value_or("").empty(); };
  if (slot == Columns::typeName.slot()) {
    return holdsNothing(Columns::typeName) ||
           (storedType(*this).canReadName() && automaticTaskType());
  }
  if (slot == Columns::typeUnit.slot()) return storedType(*this).canReadUnit();
  if (slot == Columns::typeSpeed.slot()) return storedType(*this).canReadSpeed();
  return NSManagedObject::canRead(slot);
}

void TaskEntity::setOutlook(Outlook outlook) {
  outlook_ = std::make_shared<const Outlook>(std::move(outlook));
}

// What follows from it.

DatedPeriod TaskEntity::currentPeriod(Date now) const {
  const TaskLogRules rules = logRules(*this, now);
  return rules.frequency.currentPeriod(rules.startOfDay, rules.firstDayOfWeek, rules.timeZone, now);
}

TaskDisplayTitle TaskEntity::displayTitle(Date date, Date now) const {
  const auto task = TaskSnapshot::of(*this, now);
  return velloro::displayTitle(task, task.standing.progress(task.period(date)));
}

TaskDisplayTitle TaskEntity::displayTitle(const TaskProgress& progress, Date now) const {
  return velloro::displayTitle(TaskSnapshot::of(*this, now), progress);
}

SkipMode TaskEntity::willSkip(const TaskFrequencyPeriod& period, Date now) const {
  return velloro::willSkip(TaskSnapshot::of(*this, now), period);
}

TaskProgress TaskEntity::progress(const TaskFrequencyPeriod& period, Date now) const {
  return TaskSnapshot::of(*this, now).standing.progress(period);
}

CompletionStatus TaskEntity::completionStatus(const TaskFrequencyPeriod& period, Date now) const {
  return streakedCompletionStatus(period, now).completionStatus;
}

CompletionStatus TaskEntity::currentCompletionStatus(Date now) const {
  const auto task = TaskSnapshot::of(*this, now);
  return velloro::streakedCompletionStatus(task, task.standing.currentPeriod().period)
      .completionStatus;
}

StreakedCompletionStatus TaskEntity::streakedCompletionStatus(const TaskFrequencyPeriod& period,
                                                              Date now) const {
  return velloro::streakedCompletionStatus(TaskSnapshot::of(*this, now), period);
}

StreakedCompletionStatus TaskEntity::streakedCompletionStatus(Date date, Date now) const {
  const auto task = TaskSnapshot::of(*this, now);
  return velloro::streakedCompletionStatus(task, task.period(date));
}

NumUniqueCompletions TaskEntity::numUniqueCompletions(YYYYMMDD from, YYYYMMDD to, Date now) const {
  return velloro::numUniqueCompletions(TaskSnapshot::of(*this, now), from, to);
}

std::optional<YYYYMMDD> TaskEntity::lastCompletedDate(YYYYMMDD onOrBefore) const {
  return velloro::lastCompletedDate(TaskSnapshot::of(*this, Date::now()), onOrBefore);
}

TaskLogSummary TaskEntity::logSummary(std::optional<YYYYMMDD> from, YYYYMMDD to, Date now) const {
  return velloro::logSummary(TaskSnapshot::of(*this, now), from, to);
}

TaskRecentHistory TaskEntity::recentHistory(std::optional<YYYYMMDD> from, YYYYMMDD to,
                                            Date now) const {
  return velloro::recentHistory(TaskSnapshot::of(*this, now), from, to);
}

void TaskEntity::updateTemporalData(YYYYMMDD day, TimeZone timeZone, Date now) {
  velloro::updateTemporalData(*this, day, timeZone, now);
}

std::optional<NotificationTask> TaskEntity::notificationTaskCurrentProgress(
    const TaskFrequencyPeriod& period, Date now) const {
  const auto task = TaskSnapshot::of(*this, now);
  return notificationTask(task, velloro::streakedCompletionStatus(task, period));
}

std::optional<NotificationTask> TaskEntity::notificationTaskWhenCompleted(
    const TaskFrequencyPeriod& period, bool isPartialCompletion, Date now) const {
  const auto task = TaskSnapshot::of(*this, now);
  const auto [status, streak] = velloro::streakedCompletionStatus(task, period);
  return notificationTask(task, status.nextCompletionStatus(streak, isPartialCompletion, now));
}

std::optional<ComplicationSnapshotDisplayRepresentation>
TaskEntity::shareOwnerDisplayRepresentation() const {
  return velloro::shareOwnerDisplayRepresentation(*this);
}

}  // namespace velloro
