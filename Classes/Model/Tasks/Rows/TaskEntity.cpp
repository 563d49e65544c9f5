#include "Tasks/Rows/TaskEntity.h"

#include "Foundation/Coding/JSON.h"
#include "Settings/Settings.h"
#include "Tasks/Columns/StoredAutomaticTaskType.h"
#include "Tasks/Columns/StoredValues.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/UserProfileEntity.h"
#include "VelloroBackup/VelloroJSONBackupTaskExtra.h"
#include "VelloroCore/Frequency/DayModeRules.h"

#include <algorithm>
#include <limits>

namespace velloro {
namespace {

using Columns = TaskAttributes;
using ButtonType = TaskExtra::ActionButtonType;

constexpr std::int64_t secondsPerDay = 86400;

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
  return storedUniqueID(text(Columns::uniqueId));
}

TaskStatus TaskEntity::taskStatus() const {
  return enumValue<TaskStatus>(Columns::status).value_or(defaultStatus);
}

bool TaskEntity::setTaskStatus(TaskStatus status) {
  if (!writeValue(Columns::status, std::string(rawValue(status)))) return false;
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
  return profile ? storedUniqueID(profile->text(UserProfileEntity::uniqueId)) : std::nullopt;
}

std::optional<IconDisplayRepresentation> TaskEntity::displayRepresentation() const {
  return storedIcon(text(Columns::imageName));
}

std::optional<IconVisualRepresentation> TaskEntity::visualRepresentation() const {
  auto shown = displayRepresentation();
  return shown ? std::optional(std::move(shown->visualRepresentation)) : std::nullopt;
}

bool TaskEntity::setDisplayRepresentation(const IconDisplayRepresentation& displayRepresentation) {
  return writeValue(Columns::imageName, displayRepresentation.coreDataStringRepresentation());
}

std::optional<OxCodableColor> TaskEntity::taskColor() const {
  return storedColor(text(Columns::colorInfo));
}

bool TaskEntity::setTaskColor(const std::optional<OxCodableColor>& color) {
  return writeValue(Columns::colorInfo,
                    color ? std::optional(color->toSpaceSeparated()) : std::nullopt);
}

HHMMSS TaskEntity::startOfDay() const {
  const std::int64_t stored = value(Columns::startOfDayValue);
  const auto own = stored >= 1 ? HHMMSS::fromIntValue(stored % secondsPerDay) : std::nullopt;
  return own ? *own : Settings::shared().startOfDay();
}

bool TaskEntity::setStartOfDay(const std::optional<HHMMSS>& startOfDay) {
  const std::int64_t seconds = !startOfDay                ? 0
                               : startOfDay->isMidnight() ? secondsPerDay
                                                          : startOfDay->intValue();
  return writeValue(Columns::startOfDayValue, static_cast<std::int32_t>(seconds));
}

DayOfWeek TaskEntity::firstDayOfWeek() const {
  const auto own = fromRawValue<CalendarDayOfWeek>(value(Columns::firstDayOfWeekValue));
  if (own && (usesFirstDayOfWeek(frequency().dayMode) ||
              taskShareStatus() == TaskShareStatus::isSharedWithMe)) {
    return dayOfWeek(*own);
  }
  return Settings::shared().firstDayOfWeek();
}

bool TaskEntity::setFirstDayOfWeek(std::optional<DayOfWeek> firstDayOfWeek) {
  const auto raw = firstDayOfWeek ? rawValue(calendarDayOfWeek(*firstDayOfWeek)) : 0;
  return writeValue(Columns::firstDayOfWeekValue, columnOf(raw));
}

TimeZone TaskEntity::taskCurrentTimeZone() const {
  const auto pinned = storedTimeZone(text(Columns::currentTimeZoneOverride));
  return pinned ? *pinned : TimeZone::current();
}

TaskFrequency TaskEntity::frequency() const {
  const auto type = automaticTaskType();
  const DayMode mode =
      fromRawValue<DayMode>(value(Columns::daysMode)).value_or(DayMode::specificDaysOfWeek);
  const std::int64_t daysPerWeek = value(Columns::daysPerWeek);
  TaskFrequency frequency{
      .dayMode = mode,
      .days = DaysOfWeek(value(Columns::daysOfWeek)).daysOfWeek(),
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
  bool wrote = writeValue(Columns::daysMode, columnOf(rawValue(mode)));
  wrote |= writeValue(Columns::daysOfWeek, daysOfWeek(frequency.days).rawValue);
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
  return StoredAutomaticTaskType{.typeName = value(Columns::typeName),
                                 .typeTarget = value(Columns::typeTarget),
                                 .typeUnit = value(Columns::typeUnit),
                                 .typeSpeed = value(Columns::typeSpeed)}
      .automaticTaskType();
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
  const auto stored =
      storedJSON<VelloroJSONBackupTaskExtra>(text(Columns::customReminderType), DateForm::iso8601);
  if (stored) return stored->taskExtra();
  return {.uncheckedActionButton = {.type = defaultButton(automaticTaskType())}};
}

bool TaskEntity::setTaskExtra(const TaskExtra& extra) {
  return writeValue(Columns::customReminderType,
                    JSONEncoder{.dateForm = DateForm::iso8601}.encode(codableTaskExtra(extra)));
}

TaskShareStatus TaskEntity::taskShareStatus() const {
  using enum TaskShareEntity::ShareStatus;
  const auto share = value(Columns::taskShare);
  if (share == nullptr) return TaskShareStatus::notShared;
  const auto status = share->shareStatus();
  const bool isAnothers = status == externalTask || status == externalTaskNoLongerShared;
  return isAnothers ? TaskShareStatus::isSharedWithMe : TaskShareStatus::isSharedWithOthers;
}

std::int64_t TaskEntity::shareParticipantCount() const {
  const auto share = value(Columns::taskShare);
  if (share == nullptr) return 0;
  return std::ranges::count(share->participants(),
                            SharedTaskParticipant::AcceptanceStatus::accepted,
                            &SharedTaskParticipant::acceptanceStatus);
}

Date TaskEntity::lastUpdated() const {
  const auto ofStatus = value(Columns::statusDate);
  const auto derived = value(Columns::taskTemporalData);
  const auto ofLog = derived ? derived->value(TaskTemporalDataEntity::lastUpdated) : std::nullopt;
  const auto latest = std::max(ofStatus, ofLog);  // absent comes before any date
  return latest ? *latest : Date::now();
}

}  // namespace velloro
