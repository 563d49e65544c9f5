#pragma once

#include "Foundation/Coding/Coding.h"
#include "VelloroCore/Advice/VisualRepresentationIntent.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Log/PreviousDaysSuccess.h"
#include "VelloroCore/Status/CompletionStatus.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

namespace platform {
struct HKActivitySummary;
}

namespace velloro {

/// Where an advice comes from.
struct ChangeDifficultySource {
  enum class Direction : std::uint8_t { makeItEasier, makeItHarder };
  enum class ExternalSource : std::uint8_t {
    activityMove,
    activityExercise,
    activityStand,
    activityRoll,
  };
  /// A goal that moved elsewhere, or how well the task goes.
  std::variant<ExternalSource, Direction> value;

  [[nodiscard]] static ChangeDifficultySource external(ExternalSource source) { return {source}; }
  [[nodiscard]] static ChangeDifficultySource app(Direction direction) { return {direction}; }
  bool operator==(const ChangeDifficultySource&) const = default;
  static constexpr auto codingCases =
      cases(&ChangeDifficultySource::value, keyed("external"), keyed("app"));
};

constexpr auto rawValues(std::type_identity<ChangeDifficultySource::Direction>) {
  using enum ChangeDifficultySource::Direction;
  return keyedCases<ChangeDifficultySource::Direction>(
      {{makeItEasier, "makeItEasier"}, {makeItHarder, "makeItHarder"}});
}

constexpr auto rawValues(std::type_identity<ChangeDifficultySource::ExternalSource>) {
  using enum ChangeDifficultySource::ExternalSource;
  return keyedCases<ChangeDifficultySource::ExternalSource>({{activityMove, "activityMove"},
                                                             {activityExercise, "activityExercise"},
                                                             {activityStand, "activityStand"},
                                                             {activityRoll, "activityRoll"}});
}

namespace change_difficulty_detail {
/// The new value of a property; the number keeps those of one type apart.
template <typename Value, int property>
struct NewValue {
  Value value = {};

  bool operator==(const NewValue&) const = default;
  static constexpr auto codingValue = &NewValue::value;
};
}  // namespace change_difficulty_detail

/// The change that an advice proposes: the new value of one property, or of two.
struct ChangeDifficultyType {
  template <int property>
  using Amount = change_difficulty_detail::NewValue<double, property>;
  template <int property>
  using Count = change_difficulty_detail::NewValue<std::int64_t, property>;

  using TypeQuantity = Amount<0>;
  using DurationPerCompletion = Amount<1>;  ///< Seconds.
  using NumPartialCompletions = Count<0>;
  using QuantityAndPartials = std::pair<double, std::int64_t>;
  using TimesPerWeek = Count<1>;
  using TimesPerFortnight = Count<2>;
  using TimesPerMonth = Count<3>;
  using TimesPerYear = Count<4>;
  using DayInterval = Count<5>;
  std::variant<TypeQuantity, DurationPerCompletion, NumPartialCompletions, QuantityAndPartials,
               TimesPerWeek, TimesPerFortnight, TimesPerMonth, TimesPerYear, DayInterval>
      value;

  bool operator==(const ChangeDifficultyType&) const = default;
  static constexpr auto codingCases =
      cases(&ChangeDifficultyType::value, keyed("typeQuantity"), keyed("durationPerCompletion"),
            keyed("numPartialCompletions"), keyed("typeQuantityAndNumPartialCompletions"),
            keyed("timesPerWeek"), keyed("timesPerFortnight"), keyed("timesPerMonth"),
            keyed("timesPerYear"), keyed("dayInterval"));
};

struct ChangeDifficultyRecommendation {
  ChangeDifficultySource source;
  ChangeDifficultyType type;

  bool operator==(const ChangeDifficultyRecommendation&) const = default;
  static constexpr auto codingKeys = keys(key("source", &ChangeDifficultyRecommendation::source),
                                          key("type", &ChangeDifficultyRecommendation::type));
};

/// What the user answered to an advice; stored with the task.
enum class ChangeDifficultyStatus : std::uint8_t {
  harderConfirm,
  harderCancel,
  easierConfirm,
  easierCancel,
  externalConfirm,
  externalCancel,
};

struct ChangeDifficultyStatusRow {
  ChangeDifficultyStatus value;
  std::string_view raw;
  bool isConfirm;
};

inline constexpr ChangeDifficultyStatusRow changeDifficultyStatusRows[] = {
    {ChangeDifficultyStatus::harderConfirm, "harder_yes", true},
    {ChangeDifficultyStatus::harderCancel, "harder_no", false},
    {ChangeDifficultyStatus::easierConfirm, "easier_yes", true},
    {ChangeDifficultyStatus::easierCancel, "easier_no", false},
    {ChangeDifficultyStatus::externalConfirm, "external_yes", true},
    {ChangeDifficultyStatus::externalCancel, "external_no", false},
};

constexpr auto rawValues(std::type_identity<ChangeDifficultyStatus>) {
  return rawColumn(changeDifficultyStatusRows);
}

[[nodiscard]] constexpr bool isConfirm(ChangeDifficultyStatus status) {
  return rowOf(changeDifficultyStatusRows, status).isConfirm;
}

/// Whether a task is too hard or too easy, and the next step up or down.
///
///     const ChangeDifficultyCalculator thrice{
///         .frequency = {.dayMode = DayMode::numberOfDaysInWeek, .numCompletions = 3}};
///     JSONEncoder{}.encode(*thrice.harderDifficulty());    // {"timesPerWeek":{"_0":4}}
struct ChangeDifficultyCalculator {
  using Direction = ChangeDifficultySource::Direction;

  std::optional<AutomaticTaskType> automaticTaskType = {};
  bool isNegative = false;
  TaskFrequency frequency = {};
  std::optional<double> durationPerCompletion = {};  ///< Seconds; of what is timed.
  VisualRepresentationIntent titleIntent = VisualRepresentationIntent::unknown;
  VisualRepresentationIntent iconIntent = VisualRepresentationIntent::unknown;

  /// Why a task stays as it is.
  struct DoNotAdjustReason {
    struct PreventedByCurrentStatus {
      bool operator==(const PreventedByCurrentStatus&) const = default;
    };
    struct GoodProgress {
      bool operator==(const GoodProgress&) const = default;
    };
    struct UnsupportedDayMode {
      bool operator==(const UnsupportedDayMode&) const = default;
    };
    /// Samples that there are, and that are needed.
    using NotEnoughSamples = std::pair<std::int64_t, std::int64_t>;
    std::variant<NotEnoughSamples, PreventedByCurrentStatus, GoodProgress, UnsupportedDayMode>
        value;

    bool operator==(const DoNotAdjustReason&) const = default;
    static constexpr auto codingCases = cases(&DoNotAdjustReason::value, keyed("notEnoughSamples"),
                                              keyed("preventedByCurrentStatus"),
                                              keyed("goodProgress"), keyed("unsupportedDayMode"));
  };
  struct AdjustmentResult {
    std::variant<Direction, DoNotAdjustReason> value;

    bool operator==(const AdjustmentResult&) const = default;
  };

  struct Question {
    std::optional<ChangeDifficultyStatus> lastDifficultyStatus = {};
    CompletionStatus::Status currentCompletionStatus = {};
    PreviousDaysSuccess shortTermResult = PreviousDaysSuccess::defaultShortTerm;
    PreviousDaysSuccess longTermResult = PreviousDaysSuccess::defaultLongTerm;
  };
  /// By the recent success of the task; after an advice that was declined, by that of a longer
  /// time.
  [[nodiscard]] AdjustmentResult recommendedDifficultyDirection(const Question& question) const;

  // Absent where there is no such step, for a task to be avoided, and for what is about the body.
  [[nodiscard]] std::optional<ChangeDifficultyType> easierDifficulty() const;
  [[nodiscard]] std::optional<ChangeDifficultyType> harderDifficulty() const;
  [[nodiscard]] std::optional<ChangeDifficultyType> difficulty(Direction direction) const;

  /// The types whose target can follow a goal of the activity rings.
  static const std::set<HealthType> activityRingsRecommendationTypes;
  /// The goal of the rings, where it is known and not the target; energy in the target's unit.
  [[nodiscard]] static std::optional<ChangeDifficultyRecommendation> activityRingsRecommendation(
      const HKActivitySummary& summary, HealthType healthType, const TaskTarget& target);

 private:
  [[nodiscard]] bool canAdjust() const;
  [[nodiscard]] TaskFrequencyPeriodType measuredIn() const;
  [[nodiscard]] std::optional<ChangeDifficultyType> nextDuration(Direction direction) const;
  [[nodiscard]] std::optional<ChangeDifficultyType> nextQuantity(Direction direction) const;
  [[nodiscard]] std::optional<ChangeDifficultyType> nextFrequency(Direction direction) const;
  [[nodiscard]] std::optional<ChangeDifficultyType> nextPartials(Direction direction) const;
};

/// The steps that a task should have when its target changes: for water in cups, of which there was
/// one step for each, one for each of the new ones. Absent where the steps stay.
[[nodiscard]] std::optional<std::int64_t> recommendedNumPartialCompletionChange(
    const AutomaticTaskType& type, std::int64_t numPartialCompletions, double newQuantity,
    TaskFrequencyPeriodType measurementDuration);

}  // namespace velloro
