#include "Tasks/Rows/TaskEntity.h"

#include "Settings/Settings.h"
#include "Tasks/Columns/StoredAutomaticTaskType.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/UserProfileEntity.h"
#include "VelloroCore/Frequency/DayModeRules.h"

#include <algorithm>
#include <limits>

namespace velloro {
namespace {

using Columns = TaskAttributes;
using ButtonType = TaskExtra::ActionButtonType;

/// The column holds 16 bits; a count beyond them is none that anyone chose.
std::int16_t columnOf(std::int64_t number) {
  using Limits = std::numeric_limits<std::int16_t>;
  return static_cast<std::int16_t>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
}

struct Limits {
  std::int64_t lowest = 1;
  std::int64_t highest = 1;
};

/// How many completions the modes that count them can ask for.
Limits completionLimits(DayMode mode) {
  using F = TaskFrequency;
  switch (mode) {
    case DayMode::numberOfDaysInWeek:
      return {F::dailyCompletionMinTimesPerWeek, F::dailyCompletionMaxTimesPerWeek};
    case DayMode::numberOfDaysInFortnight:
      return {F::dailyCompletionMinTimesPerFortnight, F::dailyCompletionMaxTimesPerFortnight};
    case DayMode::numberOfDaysInMonth:
      return {F::dailyCompletionMinTimesPerMonth, F::dailyCompletionMaxTimesPerMonth};
    case DayMode::numberOfDaysInYear:
      return {F::dailyCompletionMinTimesPerYear, F::dailyCompletionMaxTimesPerYear};
    default:
      return {};
  }
}

Limits partialLimits(const std::optional<AutomaticTaskType>& type, DayMode mode) {
  const auto duration = measurementDuration(mode);
  if (type) return {type->minPartialCompletions(), type->maxPartialCompletions(duration)};
  return {TaskFrequency::minPartialCompletions, TaskFrequency::maxPartialCompletions(duration)};
}

/// `std::clamp` has no meaning where the limits cross.
std::int64_t clamped(std::int64_t value, Limits limits) {
  return std::max(std::min(value, limits.highest), limits.lowest);
}

bool canHave(const std::optional<AutomaticTaskType>& type, DayMode mode) {
  const auto has = [&](const auto& modes) {
    return std::ranges::find(modes, mode) != std::ranges::end(modes);
  };
  return type ? has(type->supportedFrequencyModes()) : has(sortedModes());
}

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

std::optional<UniqueID> TaskEntity::taskUniqueId() const {
  return value(Columns::uniqueId);
}

TaskStatus TaskEntity::taskStatus() const {
  return value(Columns::status).value_or(defaultStatus);
}

bool TaskEntity::setTaskStatus(TaskStatus status) {
  if (!writeValue(Columns::status, status)) return false;
  setValue(Columns::statusDate, Date::now());
  return true;
}

TaskDisplayOrder TaskEntity::taskDisplayOrder() const {
  return TaskDisplayOrder::fromDisplayOrderValue(value(Columns::displayOrder));
}

bool TaskEntity::setTaskDisplayOrder(const TaskDisplayOrder& order) {
  return writeValue(Columns::displayOrder, columnOf(order.displayOrderValue()));
}

std::optional<UniqueID> TaskEntity::userProfileID() const {
  const auto profile = value(Columns::userProfile);
  return profile ? profile->value(UserProfileEntity::uniqueId) : std::nullopt;
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

bool TaskEntity::setTaskColor(const std::optional<OxCodableColor>& color) {
  return replaceValue(Columns::colorInfo, color);
}

HHMMSS TaskEntity::startOfDay() const {
  const auto own = value(Columns::startOfDayValue);
  return own ? *own : Settings::shared().startOfDay();
}

bool TaskEntity::setStartOfDay(const std::optional<HHMMSS>& startOfDay) {
  return replaceValue(Columns::startOfDayValue, startOfDay);
}

DayOfWeek TaskEntity::firstDayOfWeek() const {
  const auto own = value(Columns::firstDayOfWeekValue);
  if (own && (usesFirstDayOfWeek(frequency().dayMode) ||
              taskShareStatus() == TaskShareStatus::isSharedWithMe)) {
    return dayOfWeek(*own);
  }
  return Settings::shared().firstDayOfWeek();
}

bool TaskEntity::setFirstDayOfWeek(std::optional<DayOfWeek> firstDayOfWeek) {
  return replaceValue(Columns::firstDayOfWeekValue, firstDayOfWeek.transform(calendarDayOfWeek));
}

TimeZone TaskEntity::taskCurrentTimeZone() const {
  const auto pinned = value(Columns::currentTimeZoneOverride);
  return pinned ? *pinned : TimeZone::current();
}

TaskFrequency TaskEntity::frequency() const {
  const auto type = automaticTaskType();
  const DayMode mode = value(Columns::daysMode).value_or(DayMode::specificDaysOfWeek);
  const std::int64_t daysPerWeek = value(Columns::daysPerWeek);
  TaskFrequency frequency{
      .dayMode = mode,
      .days = value(Columns::daysOfWeek).value_or(DaysOfWeek()).daysOfWeek(),
      .numPartialCompletions = clamped(value(Columns::daysTimesPerDay), partialLimits(type, mode)),
      .numCompletions = clamped(daysPerWeek, completionLimits(mode)),
      .dayInterval = clamped(daysPerWeek, {TaskFrequency::dailyCompletionMinIntervalDays,
                                           TaskFrequency::dailyCompletionMaxIntervalDays})};
  if (!canHave(type, mode)) {
    frequency.dayMode = DayMode::specificDaysOfWeek;
    frequency.days = everyDay();
  }
  return frequency;
}

bool TaskEntity::setFrequency(const TaskFrequency& frequency) {
  const DayMode mode = frequency.dayMode;
  bool wrote = writeValue(Columns::daysMode, mode);
  wrote |= writeValue(Columns::daysOfWeek, daysOfWeek(frequency.days));
  wrote |= writeValue(Columns::daysTimesPerDay, columnOf(frequency.numPartialCompletions));
  if (mode == DayMode::dayInterval) {
    wrote |= writeValue(Columns::daysPerWeek, columnOf(frequency.dayInterval));
  } else if (completionLimits(mode).highest > 1) {
    wrote |= writeValue(Columns::daysPerWeek, columnOf(frequency.numCompletions));
  }
  return wrote;
}

std::optional<AutomaticTaskType> TaskEntity::automaticTaskType() const {
  if (text(Columns::typeName) == nullptr && text(Columns::typeSpeed) == nullptr) {
    return std::nullopt;
  }
  return storedType(*this).automaticTaskType();
}

bool TaskEntity::setAutomaticTaskType(const std::optional<AutomaticTaskType>& type) {
  const auto stored = StoredAutomaticTaskType::from(type);
  bool wrote = writeValue(Columns::typeName, stored.typeName);
  wrote |= writeValue(Columns::typeTarget, stored.typeTarget);
  wrote |= writeValue(Columns::typeUnit, stored.typeUnit);
  wrote |= writeValue(Columns::typeSpeed, stored.typeSpeed);
  return wrote;
}

TaskExtra TaskEntity::taskExtra() const {
  if (auto chosen = value(Columns::customReminderType)) return *std::move(chosen);
  return {.uncheckedActionButton = {.type = defaultButton(automaticTaskType())}};
}

bool TaskEntity::setTaskExtra(const TaskExtra& extra) {
  return replaceValue(Columns::customReminderType, extra);
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

}  // namespace velloro
