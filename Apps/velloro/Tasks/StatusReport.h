#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxKit/OxCodableColor.h"
#include "VelloroCore/Status/CompletionStatus.h"
#include "VelloroCore/Status/StreakRecord.h"
#include "VelloroCore/Types/AutomaticTaskType.h"
#include "velloro/Calendar/PeriodStretch.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

class TaskEntity;

/// The state of a task in one of its periods, as `velloro status` prints it.
struct StatusReport {
  struct Progress {
    TaskProgressType type = TaskProgressType::discrete;
    std::int64_t numCompletions = 0;
    std::int64_t expectedCompletions = 1;
    double currentValue = 0;
    double targetValue = 1;
    double progressPct = 0;

    static constexpr auto codingKeys = keys(
        key("type", &Progress::type), key("numCompletions", &Progress::numCompletions),
        key("expectedCompletions", &Progress::expectedCompletions),
        key("currentValue", &Progress::currentValue), key("targetValue", &Progress::targetValue),
        key("progressPct", &Progress::progressPct));
  };

  std::string uniqueId;
  std::string title;
  CompletionStatus::Status status;
  std::string state;  ///< The status in words: "due".
  SkipMode willSkip = SkipMode::willMissWithoutIndicator;
  std::string outcome;  ///< The same in words: "missed".
  Progress progress;
  StreakRecord streak;
  PeriodStretch period;
  std::optional<YYYYMMDD> lastCompleted, lastMissed, lastSkipped;
  std::optional<std::string> snoozedUntil;  ///< The instant at which a reminder comes back.
  /// The day went well across all tasks; the same for each of them.
  bool grandSlam = false;
  // For the text alone.
  std::optional<OxCodableColor> color;
  std::optional<AutomaticTaskType> automaticTaskType;

  static constexpr auto codingKeys = keys(
      key("uniqueId", &StatusReport::uniqueId), key("title", &StatusReport::title),
      key("status", &StatusReport::status), key("state", &StatusReport::state),
      key("willSkip", &StatusReport::willSkip), key("outcome", &StatusReport::outcome),
      key("progress", &StatusReport::progress), key("streak", &StatusReport::streak),
      key("period", &StatusReport::period), key("lastCompleted", &StatusReport::lastCompleted),
      key("lastMissed", &StatusReport::lastMissed), key("lastSkipped", &StatusReport::lastSkipped),
      key("grandSlam", &StatusReport::grandSlam));

  /// \param date A day of the period; absent for the current one.
  [[nodiscard]] static StatusReport of(const TaskEntity& task, std::optional<YYYYMMDD> date,
                                       Date now);

  /// A ring as one character: ○ ◔ ◑ ◕ ●, and signs for what was missed, skipped or allowed.
  [[nodiscard]] std::string glyph() const;
  /// "due, 3 of 8 cups, streak 4 (best 9)".
  [[nodiscard]] std::string line() const;
};

/// Whether the day of all tasks went well across them.
[[nodiscard]] bool isGrandSlam(const std::vector<StatusReport>& reports);
/// One line per task.
[[nodiscard]] std::string table(const std::vector<StatusReport>& reports);

}  // namespace velloro
