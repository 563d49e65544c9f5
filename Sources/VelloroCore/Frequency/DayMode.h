#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"

#include <cstdint>
#include <span>
#include <type_traits>
#include <vector>

namespace velloro {

/// The ways in which a task can recur; `TaskFrequency::DayMode`. The aggregate modes keep one total
/// per period, the others a tick per day.
enum class DayMode : std::int8_t {
  specificDaysOfWeek,
  numberOfDaysInWeek,
  dayInterval,
  numberOfDaysInMonth,
  numberOfDaysInYear,
  numberOfDaysInFortnight,
  aggregateOverWeek,
  aggregateOverMonth,
  aggregateOverFortnight,
  aggregateOverYear,
  specificDaysOfMonth,
};

struct DayModeRow {
  DayMode value;
  std::int64_t raw;
  TaskFrequencyPeriodType measurementDuration;
  TaskFrequencyPeriodType periodTypeForCompletionCountCalculation;
};

namespace day_mode_detail {
using enum DayMode;
using enum TaskFrequencyPeriodType;
inline constexpr DayModeRow rows[] = {
    {specificDaysOfWeek, 0, day, day},
    {numberOfDaysInWeek, 1, day, week},
    {dayInterval, 2, day, day},
    {numberOfDaysInMonth, 3, day, month},
    {numberOfDaysInYear, 4, day, year},
    {numberOfDaysInFortnight, 5, day, fortnight},
    {aggregateOverWeek, 6, week, week},
    {aggregateOverMonth, 7, month, month},
    {aggregateOverFortnight, 8, fortnight, fortnight},
    {aggregateOverYear, 9, year, year},
    {specificDaysOfMonth, 10, day, month},
};
}  // namespace day_mode_detail

constexpr auto rawValues(std::type_identity<DayMode>) {
  return rawColumn(day_mode_detail::rows);
}

/// The period in which the task's log is kept.
[[nodiscard]] constexpr TaskFrequencyPeriodType measurementDuration(DayMode mode) {
  return rowOf(day_mode_detail::rows, mode).measurementDuration;
}
/// The period over which completions are counted.
[[nodiscard]] constexpr TaskFrequencyPeriodType periodTypeForCompletionCountCalculation(
    DayMode mode) {
  return rowOf(day_mode_detail::rows, mode).periodTypeForCompletionCountCalculation;
}
[[nodiscard]] constexpr bool isAggregate(DayMode mode) {
  return measurementDuration(mode) != TaskFrequencyPeriodType::day;
}

/// The modes in the order in which a user chooses among them; days of the month are not offered.
[[nodiscard]] std::span<const DayMode> sortedModes();
/// Those whose log is kept in periods of this type.
[[nodiscard]] std::vector<DayMode> sortedModes(TaskFrequencyPeriodType measurementDuration);

}  // namespace velloro
