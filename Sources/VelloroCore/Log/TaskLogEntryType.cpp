#include "VelloroCore/Log/TaskLogEntryType.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace velloro {
namespace {

using task_log_entry_type_detail::Outcome;
using Outcomes = std::array<Outcome, 3>;

// The outcomes that count, the one that stands for the period first.
constexpr Outcomes ofPositiveTask = {Outcome::completed, Outcome::skipped, Outcome::missed};
constexpr Outcomes ofNegativeTask = {Outcome::missed, Outcome::completed, Outcome::skipped};

std::ptrdiff_t rank(TaskLogEntryType type, const Outcomes& outcomes) {
  const auto& row = rowOf(task_log_entry_type_detail::rows, type);
  const auto* place = isFull(type) ? std::ranges::find(outcomes, row.outcome) : outcomes.end();
  return place - outcomes.begin();
}

}  // namespace

std::string debugDescription(TaskLogEntryType type) {
  return "TaskLogEntryType[" + std::to_string(rawValue(type)) + ", " +
         std::string(description(type)) + "]";
}

bool isFullEntryBefore(TaskLogEntryType type, TaskLogEntryType otherFullEntry,
                       bool calculatingForNegativeTask) {
  if (isAutomatic(type) != isAutomatic(otherFullEntry)) return isAutomatic(otherFullEntry);
  const Outcomes& outcomes = calculatingForNegativeTask ? ofNegativeTask : ofPositiveTask;
  return rank(type, outcomes) <= rank(otherFullEntry, outcomes);
}

}  // namespace velloro
