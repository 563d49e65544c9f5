#pragma once

#include "Foundation/Coding/Coding.h"
#include "Foundation/Time/Date.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Frequency/SkipMode.h"
#include "VelloroCore/Log/TaskLogEntryType.h"
#include "VelloroCore/Progress/TaskProgressCodable.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace velloro {

struct StreakRecord;
struct StreakedCompletionStatus;

/// The state of a task in one period: its status so far, and the progress made in it.
///
/// A positive task is something to do, and a period without action ends as a miss. A negative task
/// is something to avoid: its period is complete, that is clean, until the bad event happens.
/// Its progress counts the bad events, so that a full one means that the period is lost.
///
///     // Nothing done yet of what is to be done twice a day
///     const CompletionStatus status(
///         CompletionStatus::Status::positiveIncomplete(SkipMode::willMissWithoutIndicator),
///         TaskProgressDiscrete{.period = today, .expectedCompletions = 2});
///     const auto once = status.nextCompletionStatus(StreakRecord(9, 10), true, now);
///     once.streak.current;                                // 9
///     const auto twice = once.completionStatus.nextCompletionStatus(once.streak, true, now);
///     twice.completionStatus.status == CompletionStatus::Status::positiveComplete;    // true
///     twice.streak.current;                               // 10
struct CompletionStatus {
  /// The status of a period. For an open or clean period, it includes what the period turns into if
  /// nothing more happens.
  ///
  ///     using Status = CompletionStatus::Status;
  ///     Status::positiveIncomplete(SkipMode::willMissWithIndicator).stringValue();
  ///         // "i_mwi": the text that is stored
  ///     Status::fromStringValue("i_x");              // absent
  struct Status {
    enum class Kind : std::int8_t {
      positiveIncomplete,
      negativeComplete,
      positiveComplete,
      positiveMiss,
      positiveSkip,
      negativeMiss,
      negativeAllowedMiss,
    };

    Kind kind = Kind::positiveIncomplete;
    /// There for `positiveIncomplete` and `negativeComplete`, and for these alone.
    std::optional<SkipMode> skipMode = SkipMode::willMissWithoutIndicator;

    /// To be done yet.
    [[nodiscard]] static constexpr Status positiveIncomplete(SkipMode mode) {
      return {Kind::positiveIncomplete, mode};
    }
    /// Clean so far.
    [[nodiscard]] static constexpr Status negativeComplete(SkipMode mode) {
      return {Kind::negativeComplete, mode};
    }
    static const Status positiveComplete;     ///< Done.
    static const Status positiveMiss;         ///< Not done.
    static const Status positiveSkip;         ///< Not done, which does not count.
    static const Status negativeMiss;         ///< The bad event happened.
    static const Status negativeAllowedMiss;  ///< The bad event happened, and was allowed to.

    /// The five without a mode, then the two others with each mode.
    [[nodiscard]] static std::span<const Status> allCases();

    [[nodiscard]] std::string stringValue() const;
    [[nodiscard]] static std::optional<Status> fromStringValue(std::string_view text);

    bool operator==(const Status&) const = default;
    void hash(Hasher& hasher) const { hasher.combine(kind, skipMode); }
    void encode(Encoder& to) const { to.encode(stringValue()); }
    /// \throws DecodingError
    [[nodiscard]] static Status decode(const Decoder& from);

    /// Of a negative task.
    [[nodiscard]] bool isNegative() const;
    /// What taking a check mark back gives: an open or a clean period.
    [[nodiscard]] Status uncheckedStatus() const;
    /// What a check mark gives: for a negative task a miss, which is allowed unless the period
    /// would have been skipped.
    [[nodiscard]] Status completedStatus() const;
  };

  Status status;
  TaskProgressCodable codableProgress;

  CompletionStatus() = default;
  CompletionStatus(const Status& periodStatus, const TaskProgress& periodProgress)
      : status(periodStatus), codableProgress{periodProgress} {}

  bool operator==(const CompletionStatus&) const = default;
  static constexpr auto codingKeys =
      keys(key("status", &CompletionStatus::status),
           key("codableProgress", &CompletionStatus::codableProgress));

  [[nodiscard]] const TaskProgress& progress() const { return codableProgress.base; }
  [[nodiscard]] bool isNegative() const { return status.isNegative(); }

  // The results, and the runs that they start from, are in StreakRecord.h.

  /// What one entry of the log makes of the status and of the run that goes with it. Entries that
  /// say nothing of a task of this kind, such as a skip of a negative one, change nothing.
  [[nodiscard]] StreakedCompletionStatus applyEntryType(const StreakRecord& streak,
                                                        TaskLogEntryType type, Date now) const;
  /// What the next tap gives: a step or all of the completion, or of the miss of a negative task.
  [[nodiscard]] StreakedCompletionStatus nextCompletionStatus(const StreakRecord& streak,
                                                              bool isPartialCompletion,
                                                              Date now) const;
  /// What a running timer gives that has so many seconds yet to be counted in. When they finish the
  /// completion under way that is one step, whatever is over. A progress that is not timed stays.
  [[nodiscard]] StreakedCompletionStatus nextCompletionStatus(const StreakRecord& streak,
                                                              TimeInterval pendingTimerDuration,
                                                              Date now) const;
};

constexpr auto rawValues(std::type_identity<CompletionStatus::Status::Kind>) {
  using enum CompletionStatus::Status::Kind;
  return rawTexts<CompletionStatus::Status::Kind>({{positiveIncomplete, "i"},
                                                   {negativeComplete, "nc"},
                                                   {positiveComplete, "c"},
                                                   {positiveMiss, "m"},
                                                   {positiveSkip, "s"},
                                                   {negativeMiss, "nm"},
                                                   {negativeAllowedMiss, "a"}});
}

inline constexpr CompletionStatus::Status CompletionStatus::Status::positiveComplete{
    Kind::positiveComplete, {}};
inline constexpr CompletionStatus::Status CompletionStatus::Status::positiveMiss{Kind::positiveMiss,
                                                                                 {}};
inline constexpr CompletionStatus::Status CompletionStatus::Status::positiveSkip{Kind::positiveSkip,
                                                                                 {}};
inline constexpr CompletionStatus::Status CompletionStatus::Status::negativeMiss{Kind::negativeMiss,
                                                                                 {}};
inline constexpr CompletionStatus::Status CompletionStatus::Status::negativeAllowedMiss{
    Kind::negativeAllowedMiss, {}};

}  // namespace velloro
