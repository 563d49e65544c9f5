#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/RawValue.h"
#include "VelloroCore/Status/CompletionStatus.h"
#include "VelloroTaskShare/TaskCloudSummary.h"

#include <cstdint>
#include <optional>
#include <type_traits>

namespace velloro {

/// What a new summary says to those who have seen an older one.
struct TaskCloudSummaryDifference {
  enum class ActionType : std::uint8_t {
    noAction,
    fullCompletion,
    partialCompletion,
    missed,
    allowedMiss,
  };
  /// Where the current period of the task lies, seen from a day.
  enum class Recency : std::uint8_t { old, current, future };

  bool operator==(const TaskCloudSummaryDifference&) const = default;
  static constexpr auto codingKeys = keys();
};

constexpr auto rawValues(std::type_identity<TaskCloudSummaryDifference::ActionType>) {
  return caseNames<TaskCloudSummaryDifference::ActionType::allowedMiss>();
}
constexpr auto rawValues(std::type_identity<TaskCloudSummaryDifference::Recency>) {
  return caseNames<TaskCloudSummaryDifference::Recency::future>();
}

/// Whether the period that holds `now`, in the zone in which the task was created, ends before the
/// day, holds it, or starts behind it.
[[nodiscard]] TaskCloudSummaryDifference::Recency recency(const TaskCloudSummary& summary,
                                                          YYYYMMDD relativeTo, Date now);

/// A summary with the status that follows from it. The older ones may be missing.
struct SummaryChange {
  const TaskCloudSummary& summary;
  const CompletionStatus& status;
  const TaskCloudSummary* old = nullptr;
  const CompletionStatus* oldStatus = nullptr;
};

/// What a participant should be told when a summary arrives: nothing when the task was set up
/// differently, its end when the status of the same period changed, and otherwise whether the
/// progress rose.
[[nodiscard]] TaskCloudSummaryDifference::ActionType difference(const SummaryChange& change,
                                                                Date now);

}  // namespace velloro
