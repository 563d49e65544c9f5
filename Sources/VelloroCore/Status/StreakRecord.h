#pragma once

#include "VelloroCore/Frequency/TaskFrequencyPeriod.h"
#include "VelloroCore/Status/CompletionStatus.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloro {

/// What an event does to a run.
enum class RunChange : std::int8_t {
  unchanged,
  increment,
  reset,
  startAgain,  ///< At 1: what comes next is the first of a new run.
};

/// How many periods in a row went well, now and at best.
///
///     const StreakRecord run(9, 10);
///     run.increment().isBest();            // true: 10 of 10
///     run.increment(2).best;               // 11
///     run.reset().best;                    // 10
///     StreakRecord(45, 45).currentMilestone() == StreakRecord::Milestone::mostRecent(30);  // true
struct StreakRecord {
  std::int64_t current = 0;
  std::int64_t best = 0;  ///< Never below `current`.

  StreakRecord() = default;
  /// A best run that is shorter than the current one becomes as long.
  StreakRecord(std::int64_t currentRun, std::int64_t bestRun);

  bool operator==(const StreakRecord&) const = default;
  static constexpr auto codingKeys =
      keys(key("current", &StreakRecord::current, initialWhenUnknown),
           key("best", &StreakRecord::best, initialWhenUnknown));
  /// Raises a best run that is too short.
  [[nodiscard]] static StreakRecord decode(const Decoder& from);
  /// "current=9 best=10".
  [[nodiscard]] std::string debugDescription() const;

  [[nodiscard]] StreakRecord increment(std::uint64_t count = 1) const;
  /// The current run becomes 0.
  [[nodiscard]] StreakRecord reset() const { return {0, best}; }
  [[nodiscard]] StreakRecord changed(RunChange change) const;

  [[nodiscard]] bool isBest() const { return current >= best; }
  /// One more is needed for the best.
  [[nodiscard]] bool nearlyBest() const { return current < best && current + 1 == best; }

  /// A length worth a word: that of the run itself, or the last one that it went past.
  struct Milestone {
    enum class Kind : std::int8_t { exact, mostRecent };

    Kind kind = Kind::exact;
    std::int64_t length = 0;

    [[nodiscard]] static constexpr Milestone exact(std::int64_t length) {
      return {Kind::exact, length};
    }
    [[nodiscard]] static constexpr Milestone mostRecent(std::int64_t length) {
      return {Kind::mostRecent, length};
    }
    bool operator==(const Milestone&) const = default;
  };
  /// 7, 14, 28, 30, 60, 100, 150, 200, 250, 300 and 365, then every full hundred; absent below 7.
  [[nodiscard]] std::optional<Milestone> currentMilestone() const;

  /// The run in the period `to`, when it stands as it is in `from` and that ends in the given
  /// status. It moves by one step at most, however far `to` lies behind `from`; where it does not
  /// lie behind, the run stays.
  [[nodiscard]] StreakRecord adjust(const TaskFrequencyPeriod& from, const TaskFrequencyPeriod& to,
                                    const CompletionStatus::Status& finalCompletionStatus) const;

  /// The current run's number; absent below 1.
  [[nodiscard]] std::optional<std::string> localizedCurrent(const Locale& locale) const;
  [[nodiscard]] std::string localizedCurrentWithZero(const Locale& locale) const;
  /// The current run in words, as a number of periods of that type: "9 weeks".
  [[nodiscard]] std::string localizedWithMeasurementDuration(
      TaskFrequencyPeriodType measurementDuration) const;
};

/// Where a task stands: its period, and its run.
struct StreakedCompletionStatus {
  CompletionStatus completionStatus;
  StreakRecord streak;

  bool operator==(const StreakedCompletionStatus&) const = default;
};

}  // namespace velloro
