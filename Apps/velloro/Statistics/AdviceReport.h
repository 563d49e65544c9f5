#pragma once

#include "VelloroCore/Advice/ChangeDifficultyCalculator.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

class HostStore;
class TaskEntity;

/// Whether a task should be made easier or harder, as `velloro advice` prints it.
struct AdviceReport {
  std::string uniqueId;
  std::string title;
  std::optional<std::string_view> adjust;  ///< "makeItEasier" or "makeItHarder"; else a reason.
  std::optional<ChangeDifficultyCalculator::DoNotAdjustReason> doNotAdjust;
  /// Absent where the task offers no such step.
  std::optional<ChangeDifficultyRecommendation> recommendation;
  std::optional<ChangeDifficultyCalculator::Direction> direction;  ///< `adjust`, not printed.

  static constexpr auto codingKeys =
      keys(key("uniqueId", &AdviceReport::uniqueId), key("title", &AdviceReport::title),
           key("adjust", &AdviceReport::adjust), key("doNotAdjust", &AdviceReport::doNotAdjust),
           key("recommendation", &AdviceReport::recommendation));

  [[nodiscard]] static AdviceReport of(const TaskEntity& task, Date now);

  /// "make it easier: 4 times a week", "nothing to change: 3 samples of the 7 that are needed".
  [[nodiscard]] std::string line() const;
};

/// One line per task.
[[nodiscard]] std::string table(const std::vector<AdviceReport>& reports);

/// Keeps what the user answers to the advice that a task has, and makes the change if it is
/// accepted. Within `HostStore::write`. \throws HostError if there is no advice to answer.
AdviceReport answerAdvice(const HostStore& store, TaskEntity& task, bool isAccepted, Date now);

}  // namespace velloro
