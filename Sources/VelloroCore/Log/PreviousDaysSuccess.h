#pragma once

#include "VelloroCore/Log/TaskLogWalk.h"

#include <cstdint>
#include <optional>
#include <type_traits>

namespace velloro {

/// How far back a success rate looks.
enum class PreviousSuccessType : std::uint8_t { last7, last30, pastMonth, pastYear, allTime };

constexpr auto rawValues(std::type_identity<PreviousSuccessType>) {
  return caseNames<PreviousSuccessType::allTime>();
}

/// The periods of the window, counted in the task's own: `pastYear` of a task by weeks is 12 weeks.
/// Absent for `allTime`, which begins when the task was made.
[[nodiscard]] std::optional<std::int64_t> numPeriods(PreviousSuccessType type);

/// How often a task was completed in recent periods.
///
///     // Of the last four days two completed, one missed, one skipped
///     const auto success = PreviousDaysSuccess::fromLog(
///         PreviousSuccessType::last7, rows,
///         {.rules = rules, .ref = {2024, 3, 6}, .createdDay = {2024, 3, 3}});
///     success.numSamples;    // 4
///     success.successPct;    // 0.6666…: a skip is a sample, but none against the rate
struct PreviousDaysSuccess {
  PreviousSuccessType type = PreviousSuccessType::last7;
  std::int64_t numSamples = 0;
  double successPct = 0;  ///< 0 to 1; 0 without a completion or miss.

  bool operator==(const PreviousDaysSuccess&) const = default;
  static constexpr auto codingKeys = keys(key("type", &PreviousDaysSuccess::type),
                                          key("numSamples", &PreviousDaysSuccess::numSamples),
                                          key("successPct", &PreviousDaysSuccess::successPct));

  static const PreviousDaysSuccess defaultShortTerm;
  static const PreviousDaysSuccess defaultLongTerm;

  /// What a rate is computed from, beside the rows of its window.
  struct Question {
    const TaskLogRules& rules;
    YYYYMMDD ref;         ///< The day up to which it looks.
    YYYYMMDD createdDay;  ///< On which the task was made.
    /// The day of the task's newest completion; until that lies in it, the current period of a
    /// positive task is left out.
    std::optional<YYYYMMDD> lastCompleted = {};

    /// The first day of the window.
    [[nodiscard]] YYYYMMDD firstDay(PreviousSuccessType type) const;

   private:
    friend PreviousDaysSuccess;
    [[nodiscard]] TaskFrequencyPeriod lastPeriod() const;
    [[nodiscard]] TaskFrequencyPeriod firstPeriod(PreviousSuccessType type) const;
  };
  /// Of the rows, those of the window count.
  [[nodiscard]] static PreviousDaysSuccess fromLog(PreviousSuccessType type, TaskLogRows rows,
                                                   const Question& question);
};

inline constexpr PreviousDaysSuccess PreviousDaysSuccess::defaultShortTerm{
    .type = PreviousSuccessType::last7};
inline constexpr PreviousDaysSuccess PreviousDaysSuccess::defaultLongTerm{
    .type = PreviousSuccessType::last30};

/// The types of a task's two rates.
struct PreviousSuccessTypes {
  PreviousSuccessType shortTerm;
  PreviousSuccessType longTerm;
};

[[nodiscard]] PreviousSuccessTypes previousSuccessTypes(
    TaskFrequencyPeriodType measurementDuration);

}  // namespace velloro
