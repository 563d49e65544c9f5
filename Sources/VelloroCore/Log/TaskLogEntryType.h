#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/EnumSet.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace velloro {

/// The meaning of an entry of a task's log for its period. A full entry settles the period, partial
/// ones are steps on the way; either is made manually, by the user, or automatically.
///
///     rawValue(TaskLogEntryType::skippedManuallyFull);         // 3: the number that is stored
///     description(TaskLogEntryType::skippedManuallyFull);      // "skipped_manually", in exports
///     isFull(TaskLogEntryType::skippedManuallyFull);           // true
///     TaskLogEntryTypes::allSkipTypes.size();                  // 2
enum class TaskLogEntryType : std::int8_t {
  unknown,
  completedManuallyFull,
  completedAutomaticallyFull,
  completedManuallyPartial,
  skippedManuallyFull,
  skippedAutomaticallyFull,
  allowableMissManuallyFull,
  allowableMissAutomaticallyFull,
  missedAutomaticallyFull,
  missedManuallyFull,
  missedManuallyPartial,
  missedAutomaticallyPartial,
  completedAutomaticallyPartial,
  timerManual,     ///< A stretch of a running timer.
  timerAutomatic,  ///< The same, started by the app.
  externalHealthData,
};

namespace task_log_entry_type_detail {
enum class Outcome : std::int8_t { noOutcome, completed, skipped, allowableMiss, missed, timer };
enum class Extent : std::int8_t { noExtent, full, partial };
enum class Origin : std::int8_t { noOrigin, manual, automatic };

struct Row {
  TaskLogEntryType value;
  std::int64_t raw;
  std::string_view description;
  Outcome outcome;
  Extent extent;
  Origin origin;
};

using enum TaskLogEntryType;
using enum Outcome;
using enum Extent;
using enum Origin;
inline constexpr Row rows[] = {
    {unknown, 0, "unknown", noOutcome, noExtent, noOrigin},
    {completedManuallyFull, 1, "completed_manually", completed, full, manual},
    {completedAutomaticallyFull, 2, "completed_auto", completed, full, automatic},
    {completedManuallyPartial, 6, "completed_manually_partial", completed, partial, manual},
    {skippedManuallyFull, 3, "skipped_manually", skipped, full, manual},
    {skippedAutomaticallyFull, 4, "skipped_auto", skipped, full, automatic},
    {allowableMissManuallyFull, 13, "allowed_missed_manually", allowableMiss, full, manual},
    {allowableMissAutomaticallyFull, 14, "allowed_missed_auto", allowableMiss, full, automatic},
    {missedAutomaticallyFull, 5, "missed_auto", missed, full, automatic},
    {missedManuallyFull, 7, "missed_manually", missed, full, manual},
    {missedManuallyPartial, 8, "missed_manually_partial", missed, partial, manual},
    {missedAutomaticallyPartial, 9, "missed_auto_partial", missed, partial, automatic},
    {completedAutomaticallyPartial, 10, "completed_auto_partial", completed, partial, automatic},
    {timerManual, 11, "timer_manually", timer, noExtent, manual},
    {timerAutomatic, 12, "timer_auto", timer, noExtent, automatic},
    {externalHealthData, 15, "external_health_data", noOutcome, noExtent, automatic},
};

/// The types whose row has the value in the column.
template <typename Fact>
consteval EnumSet<TaskLogEntryType> typesWith(Fact Row::*column, Fact value) {
  EnumSet<TaskLogEntryType> types;
  for (const Row& row : rows) {
    if (row.*column == value) types.insert(row.value);
  }
  return types;
}
}  // namespace task_log_entry_type_detail

constexpr auto rawValues(std::type_identity<TaskLogEntryType>) {
  return rawColumn(task_log_entry_type_detail::rows);
}

/// The name under which the type is stored in exports: "completed_auto".
[[nodiscard]] constexpr std::string_view description(TaskLogEntryType type) {
  return rowOf(task_log_entry_type_detail::rows, type).description;
}
/// "TaskLogEntryType[2, completed_auto]".
[[nodiscard]] std::string debugDescription(TaskLogEntryType type);

/// The types by what they have in common.
struct TaskLogEntryTypes {
 private:
  using Types = EnumSet<TaskLogEntryType>;
  using Row = task_log_entry_type_detail::Row;
  using Outcome = task_log_entry_type_detail::Outcome;
  using Extent = task_log_entry_type_detail::Extent;
  using Origin = task_log_entry_type_detail::Origin;

 public:
  static constexpr Types allPartialTypes = typesWith(&Row::extent, Extent::partial);
  static constexpr Types allFullTypes = typesWith(&Row::extent, Extent::full);
  static constexpr Types allManualTypes = typesWith(&Row::origin, Origin::manual);
  static constexpr Types allAutomaticTypes = typesWith(&Row::origin, Origin::automatic);
  static constexpr Types allTypes =
      allManualTypes.union_(allAutomaticTypes).union_(typesWith(&Row::origin, Origin::noOrigin));
  static constexpr Types allTimerTypes = typesWith(&Row::outcome, Outcome::timer);
  static constexpr Types allSkipTypes = typesWith(&Row::outcome, Outcome::skipped);
  static constexpr Types allCompletedTypes = typesWith(&Row::outcome, Outcome::completed);
  static constexpr Types allMissedTypes = typesWith(&Row::outcome, Outcome::missed);
};

[[nodiscard]] constexpr bool isPartial(TaskLogEntryType type) {
  return TaskLogEntryTypes::allPartialTypes.contains(type);
}
[[nodiscard]] constexpr bool isFull(TaskLogEntryType type) {
  return TaskLogEntryTypes::allFullTypes.contains(type);
}
[[nodiscard]] constexpr bool isAutomatic(TaskLogEntryType type) {
  return TaskLogEntryTypes::allAutomaticTypes.contains(type);
}
[[nodiscard]] constexpr bool isTimer(TaskLogEntryType type) {
  return TaskLogEntryTypes::allTimerTypes.contains(type);
}
[[nodiscard]] constexpr bool isSkipped(TaskLogEntryType type) {
  return TaskLogEntryTypes::allSkipTypes.contains(type);
}
[[nodiscard]] constexpr bool isCompletedFullOrPartial(TaskLogEntryType type) {
  return TaskLogEntryTypes::allCompletedTypes.contains(type);
}
[[nodiscard]] constexpr bool isCompletedFull(TaskLogEntryType type) {
  return isCompletedFullOrPartial(type) && isFull(type);
}
[[nodiscard]] constexpr bool isCompletedPartial(TaskLogEntryType type) {
  return isCompletedFullOrPartial(type) && isPartial(type);
}
[[nodiscard]] constexpr bool isMissedFullOrPartial(TaskLogEntryType type) {
  return TaskLogEntryTypes::allMissedTypes.contains(type);
}
[[nodiscard]] constexpr bool isMissedFull(TaskLogEntryType type) {
  return isMissedFullOrPartial(type) && isFull(type);
}
[[nodiscard]] constexpr bool isMissedPartial(TaskLogEntryType type) {
  return isMissedFullOrPartial(type) && isPartial(type);
}
[[nodiscard]] constexpr bool isAllowableMissFull(TaskLogEntryType type) {
  return rowOf(task_log_entry_type_detail::rows, type).outcome ==
         task_log_entry_type_detail::Outcome::allowableMiss;
}

/// Which of two full entries of one period stands for it: true when the first one does, or may as
/// well. A manual entry goes before an automatic one; else the better outcome goes first, which for
/// a negative task is the miss, then the completion, then the skip.
///
///     isFullEntryBefore(TaskLogEntryType::completedAutomaticallyFull,
///                       TaskLogEntryType::missedManuallyFull, false);    // false
///
/// Two entries of the same rank each go before the other, so this is no order to sort by.
[[nodiscard]] bool isFullEntryBefore(TaskLogEntryType type, TaskLogEntryType otherFullEntry,
                                     bool calculatingForNegativeTask);

}  // namespace velloro
