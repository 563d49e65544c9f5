#include "Tasks/Columns/StoredFrequency.h"

#include "VelloroCore/Frequency/DayModeRules.h"

#include <algorithm>

namespace velloro {
namespace {

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

}  // namespace

TaskFrequency StoredFrequency::frequency(const std::optional<AutomaticTaskType>& type) const {
  const DayMode mode = daysMode;
  TaskFrequency frequency{
      .dayMode = mode,
      .days = daysOfWeek.daysOfWeek(),
      .numPartialCompletions = clamped(daysTimesPerDay, partialLimits(type, mode)),
      .numCompletions = clamped(daysPerWeek, completionLimits(mode)),
      .dayInterval = clamped(daysPerWeek, {TaskFrequency::dailyCompletionMinIntervalDays,
                                           TaskFrequency::dailyCompletionMaxIntervalDays})};
  if (!canHave(type, mode)) {
    frequency.dayMode = DayMode::specificDaysOfWeek;
    frequency.days = everyDay();
  }
  return frequency;
}

std::optional<std::int64_t> StoredFrequency::daysPerWeekOf(const TaskFrequency& frequency) {
  if (frequency.dayMode == DayMode::dayInterval) return frequency.dayInterval;
  const bool countsCompletions = completionLimits(frequency.dayMode).highest > 1;
  return countsCompletions ? std::optional(frequency.numCompletions) : std::nullopt;
}

}  // namespace velloro
