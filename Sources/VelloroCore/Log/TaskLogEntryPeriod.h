#pragma once

#include "VelloroCore/Frequency/TaskFrequencyPeriod.h"

#include <algorithm>
#include <optional>

namespace velloro {

/// The period that an entry of a task's log belongs to, and the day in it on which the entry
/// stands.
///
///     const TaskLogEntryPeriod week(TaskFrequencyPeriodType::week, {2024, 3, 3}, {2024, 3, 9},
///                                   {2024, 3, 12});
///     week.date;    // 20240309
struct TaskLogEntryPeriod {
  TaskFrequencyPeriodType type = TaskFrequencyPeriodType::day;
  YYYYMMDD from;
  YYYYMMDD to;
  YYYYMMDD date;  ///< Within `from`..`to`.

  TaskLogEntryPeriod() = default;
  /// A date outside the period gives the nearest day in it.
  constexpr TaskLogEntryPeriod(TaskFrequencyPeriodType type, YYYYMMDD from, YYYYMMDD to,
                               YYYYMMDD date);

  /// The period of an entry from its stored fields. A type other than day with both ends makes that
  /// period, on the date or, without one, on the last day. Anything else is the date alone, a
  /// single day that keeps the type; absent without a date.
  [[nodiscard]] static constexpr std::optional<TaskLogEntryPeriod> fromStored(
      std::optional<TaskFrequencyPeriodType> type, std::optional<YYYYMMDD> date,
      std::optional<YYYYMMDD> from, std::optional<YYYYMMDD> to);

  bool operator==(const TaskLogEntryPeriod&) const = default;
  static constexpr auto codingKeys =
      keys(key("type", &TaskLogEntryPeriod::type, initialWhenUnknown),
           key("from", &TaskLogEntryPeriod::from), key("to", &TaskLogEntryPeriod::to),
           key("date", &TaskLogEntryPeriod::date));
  /// Brings a date that lies outside into the period.
  [[nodiscard]] static TaskLogEntryPeriod decode(const Decoder& from);

  /// Whether the two have a day in common.
  [[nodiscard]] bool hasOverlap(const TaskLogEntryPeriod& with) const;
  [[nodiscard]] TaskFrequencyPeriod frequencyPeriod(DayOfWeek firstDayOfWeek) const;

  /// Whether the type is smaller, or `from` is earlier, or `to` is earlier. Any of the three is
  /// enough, so two periods can each be before the other: this is no order to sort by, and
  /// therefore not the operator.
  [[nodiscard]] bool isBefore(const TaskLogEntryPeriod& other) const;
};

// In the header, since the walk over a log calls them for each entry.

// No std::clamp: it has no answer for a stored period that ends before it begins.
constexpr TaskLogEntryPeriod::TaskLogEntryPeriod(TaskFrequencyPeriodType periodType,
                                                 YYYYMMDD firstDay, YYYYMMDD lastDay, YYYYMMDD day)
    : type(periodType),
      from(firstDay),
      to(lastDay),
      date(std::min(std::max(day, firstDay), lastDay)) {}

constexpr std::optional<TaskLogEntryPeriod> TaskLogEntryPeriod::fromStored(
    std::optional<TaskFrequencyPeriodType> type, std::optional<YYYYMMDD> date,
    std::optional<YYYYMMDD> from, std::optional<YYYYMMDD> to) {
  const TaskFrequencyPeriodType known = type.value_or(TaskFrequencyPeriodType::day);
  if (known != TaskFrequencyPeriodType::day && from && to) {
    return TaskLogEntryPeriod(known, *from, *to, date.value_or(*to));
  }
  if (!date) return std::nullopt;
  return TaskLogEntryPeriod(known, *date, *date, *date);
}

}  // namespace velloro
