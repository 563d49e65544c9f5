#include "Tasks/Columns/StoredAutomaticTaskType.h"

#include "Foundation/Text/String.h"
#include "Foundation/Values/NSCache.h"
#include "OxLog/Log.h"
#include "Tasks/Columns/StoredJSON.h"
#include "Tasks/Columns/TextParts.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace velloro {
namespace {

using Text = std::optional<std::string>;
using DataSource = AutomaticTaskType::DataSource;

constexpr std::string_view screenTimeName = "screentime";
constexpr char sourceSeparator = '.';
constexpr char listSeparator = ',';

template <typename E>
std::optional<E> caseOf(const Text& raw) {
  return raw ? fromRawValue<E>(*raw) : std::nullopt;
}

template <typename Values>
Text joined(const Values& rawValues) {
  std::string text;
  for (const std::string_view raw : rawValues) {
    if (!text.empty()) text += listSeparator;
    text += raw;
  }
  return text.empty() ? std::nullopt : Text(std::move(text));
}

TypeUnit durationUnit(const Text& typeUnit) {
  return caseOf<TypeUnit>(typeUnit).value_or(TypeUnit::durationSeconds);
}

AutomaticTaskType timer(double target, const Text& typeUnit) {
  return AutomaticTaskType(
      TaskType::timer(),
      TaskTarget{.quantity = target, .unit = durationUnit(typeUnit), .speeds = {TypeSpeed::timed}});
}

std::optional<AutomaticTaskType> screenTime(double target, const Text& typeUnit,
                                            const Text& typeSpeed) {
  if (!(target > 0)) return std::nullopt;
  std::optional<TypeExtra> extra;
  auto settings = typeSpeed && !typeSpeed->empty()
                      ? fromStoredJSON<ScreenTimeSettings>(*typeSpeed, "ScreenTimeSettings")
                      : std::nullopt;
  if (settings) extra = TypeExtra{.screenTimeSettings = std::move(settings)};
  return AutomaticTaskType(TaskType::screenTime(),
                           TaskTarget{.quantity = target, .unit = durationUnit(typeUnit)},
                           std::move(extra));
}

std::optional<TypeUnit> unitOf(TaskType type, const Text& typeUnit) {
  const auto unit = caseOf<TypeUnit>(typeUnit);
  const auto options = type.unitOptions();
  if (unit && std::ranges::find(options, *unit) != options.end()) return unit;
  const bool isRequired = type.quantitySelectionStyle() == QuantitySelectionStyle::required;
  return isRequired ? type.defaultUnit() : std::nullopt;
}

TypeSpeeds speedsOf(TaskType type, const Text& typeSpeed) {
  TypeSpeeds speeds;
  if (type.canSelectSpeed() == SpeedSelectionType::noSpeed || !typeSpeed) return speeds;
  const auto options = type.sortedSpeedOptions();
  for (const std::string_view part : nonEmptyParts(*typeSpeed, listSeparator)) {
    const auto speed = fromRawValue<TypeSpeed>(part);
    if (speed && std::ranges::find(options, *speed) != options.end()) speeds.insert(*speed);
  }
  return speeds;
}

std::set<WorkoutType> workoutTypes(const std::string& typeSpeed) {
  std::set<WorkoutType> types;
  for (const std::string_view part : nonEmptyParts(typeSpeed, listSeparator)) {
    const auto activity = fromRawValue<OxHKWorkoutActivityType>(part);
    if (activity) types.insert(WorkoutType::healthKit(*activity));
  }
  if (!types.empty() || typeSpeed.empty()) return types;
  return fromStoredJSON<std::set<WorkoutType>>(typeSpeed, "WorkoutType").value_or(types);
}

std::optional<TypeExtra> extraOf(TaskType type, const Text& typeSpeed) {
  const bool hasWorkouts =
      type.canSelectSpeed() == SpeedSelectionType::noSpeed && type.canSelectWorkoutTypes();
  if (!hasWorkouts || !typeSpeed) return std::nullopt;
  auto types = workoutTypes(*typeSpeed);
  return types.empty() ? std::nullopt : std::optional(TypeExtra{.workoutTypes = std::move(types)});
}

std::optional<HealthType> healthType(const std::vector<std::string_view>& nameParts) {
  return nameParts.empty() ? std::nullopt : fromRawValue<HealthType>(nameParts[0]);
}

template <typename E>
bool areCases(const std::string& list) {
  return std::ranges::all_of(nonEmptyParts(list, listSeparator), [](std::string_view part) {
    return fromRawValue<E>(part).has_value();
  });
}

std::optional<AutomaticTaskType> healthData(const std::string& typeName, double target,
                                            const Text& typeUnit, const Text& typeSpeed) {
  const auto parts = nonEmptyParts(typeName, sourceSeparator);
  const auto health = healthType(parts);
  if (!health) return std::nullopt;
  const TaskType type = *health;
  std::optional<TaskTarget> taskTarget;
  if (const auto unit = unitOf(type, typeUnit)) {
    taskTarget = TaskTarget{.quantity = target, .unit = *unit, .speeds = speedsOf(type, typeSpeed)};
  }
  return AutomaticTaskType(type, taskTarget, extraOf(type, typeSpeed),
                           parts.size() > 1 ? fromRawValue<DataSource>(parts[1]) : std::nullopt);
}

// The way back.

Text speedsText(TypeSpeeds speeds) {
  std::vector<std::string_view> raws;
  for (const TypeSpeed speed : speeds) raws.push_back(rawValue(speed));
  return joined(raws);
}

/// Names where they say it all, since older programs read nothing else.
Text workoutsText(const std::set<WorkoutType>& types) {
  std::vector<std::string_view> raws;
  for (const WorkoutType& type : types) {
    const auto* activity = std::get_if<OxHKWorkoutActivityType>(&type.value);
    if (activity == nullptr) return JSONEncoder{}.encode(types);
    raws.push_back(rawValue(*activity));
  }
  return joined(raws);
}

Text nameText(const AutomaticTaskType& type) {
  if (type.type == TaskType::timer()) return std::nullopt;
  if (type.type == TaskType::screenTime()) return std::string(screenTimeName);
  std::string name(type.type.rawValue());
  if (type.dataSource) (name += sourceSeparator) += rawValue(*type.dataSource);
  return name;
}

Text speedText(const AutomaticTaskType& type) {
  if (type.type == TaskType::timer()) return std::string(rawValue(TypeSpeed::timed));
  if (type.type == TaskType::screenTime()) {
    const bool hasSettings = type.extra && type.extra->screenTimeSettings;
    return hasSettings ? Text(JSONEncoder{}.encode(*type.extra->screenTimeSettings)) : std::nullopt;
  }
  if (type.type.canSelectSpeed() != SpeedSelectionType::noSpeed) return speedsText(type.speeds);
  return type.extra ? workoutsText(type.extra->workoutTypes) : std::nullopt;
}

}  // namespace

std::optional<AutomaticTaskType> _buildAutomaticTaskType(const Text& typeName, double typeTarget,
                                                         const Text& typeUnit,
                                                         const Text& typeSpeed) {
  if (typeName == screenTimeName) return screenTime(typeTarget, typeUnit, typeSpeed);
  if (typeName) return healthData(*typeName, typeTarget, typeUnit, typeSpeed);
  const bool isTimed = caseOf<TypeSpeed>(typeSpeed) == TypeSpeed::timed;
  return isTimed ? std::optional(timer(typeTarget, typeUnit)) : std::nullopt;
}

StoredAutomaticTaskType StoredAutomaticTaskType::from(
    const std::optional<AutomaticTaskType>& type) {
  if (!type) return {};
  return {.typeName = nameText(*type),
          .typeTarget = type->quantity,
          .typeUnit = type->unit ? Text(rawValue(*type->unit)) : std::nullopt,
          .typeSpeed = speedText(*type)};
}

bool StoredAutomaticTaskType::canReadName() const {
  if (!typeName || typeName == screenTimeName) return true;
  const auto parts = nonEmptyParts(*typeName, sourceSeparator);
  return healthType(parts) && (parts.size() < 2 || fromRawValue<DataSource>(parts[1]));
}

bool StoredAutomaticTaskType::canReadUnit() const {
  return !typeUnit || typeUnit->empty() || caseOf<TypeUnit>(typeUnit);
}

bool StoredAutomaticTaskType::canReadSpeed() const {
  if (!typeSpeed || typeSpeed->empty()) return true;
  if (!typeName) return caseOf<TypeSpeed>(typeSpeed) == TypeSpeed::timed;
  if (typeName == screenTimeName) return isWholeJSON<ScreenTimeSettings>(*typeSpeed);
  const auto health = healthType(nonEmptyParts(*typeName, sourceSeparator));
  if (!health) return false;
  const TaskType type = *health;
  if (type.canSelectSpeed() != SpeedSelectionType::noSpeed) return areCases<TypeSpeed>(*typeSpeed);
  return !type.canSelectWorkoutTypes() || areCases<OxHKWorkoutActivityType>(*typeSpeed) ||
         isWholeJSON<std::set<WorkoutType>>(*typeSpeed);
}

std::optional<AutomaticTaskType> StoredAutomaticTaskType::automaticTaskType() const {
  using Types = NSCache<StoredAutomaticTaskType, AutomaticTaskTypeContainer>;
  static auto* types = new Types({.count = 512});
  if (auto known = types->object(*this)) return std::move(known->value);
  auto type = _buildAutomaticTaskType(typeName, typeTarget, typeUnit, typeSpeed);
  types->setObject(*this, {type});
  return type;
}

}  // namespace velloro
