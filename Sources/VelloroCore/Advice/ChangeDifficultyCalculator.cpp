#include "VelloroCore/Advice/ChangeDifficultyCalculator.h"

#include "VelloroCore/Types/QuantityOptions.h"

#include <algorithm>
#include <cmath>

namespace velloro {
namespace {

using Calculator = ChangeDifficultyCalculator;
using Direction = Calculator::Direction;
using Reason = Calculator::DoNotAdjustReason;
using Type = ChangeDifficultyType;

constexpr std::int64_t neededShortTermSamples = 7;
constexpr std::int64_t neededLongTermSamples = 21;
constexpr double mostOfTooHard = 0.4;
constexpr double leastOfTooEasy = 0.85;
constexpr std::int64_t fewestAdjustablePartials = 3;

bool isSettled(const CompletionStatus::Status& status) {
  using enum CompletionStatus::Status::Kind;
  return status.kind == positiveComplete || status.kind == negativeMiss ||
         status.kind == negativeAllowedMiss;
}

std::optional<double> neighbour(const std::optional<ValueRange>& range, double of,
                                Direction direction) {
  if (!range) return std::nullopt;
  return direction == Direction::makeItEasier ? range->smaller(of) : range->bigger(of);
}

/// One less for what is easier and one more for what is harder, up to the limit on that side.
std::optional<std::int64_t> step(std::int64_t count, Direction direction, std::int64_t least,
                                 std::int64_t most) {
  if (direction == Direction::makeItEasier) {
    return count > least ? std::optional(count - 1) : std::nullopt;
  }
  return count < most ? std::optional(count + 1) : std::nullopt;
}

Direction opposite(Direction direction) {
  return direction == Direction::makeItEasier ? Direction::makeItHarder : Direction::makeItEasier;
}

template <typename Case, typename Value>
std::optional<Type> changeTo(const std::optional<Value>& value) {
  return value ? std::optional(Type{Case{*value}}) : std::nullopt;
}

}  // namespace

Calculator::AdjustmentResult Calculator::recommendedDifficultyDirection(
    const Question& question) const {
  if (frequency.dayMode == DayMode::dayInterval) return {Reason{Reason::UnsupportedDayMode{}}};
  const bool isByShortTerm =
      !question.lastDifficultyStatus || isConfirm(*question.lastDifficultyStatus);
  const auto& rate = isByShortTerm ? question.shortTermResult : question.longTermResult;
  const std::int64_t needed = isByShortTerm ? neededShortTermSamples : neededLongTermSamples;
  if (rate.numSamples < needed) {
    return {Reason{Reason::NotEnoughSamples{rate.numSamples, needed}}};
  }
  if (rate.successPct > mostOfTooHard && rate.successPct < leastOfTooEasy) {
    return {Reason{Reason::GoodProgress{}}};
  }
  if (isSettled(question.currentCompletionStatus)) {
    return {Reason{Reason::PreventedByCurrentStatus{}}};
  }
  return {rate.successPct > mostOfTooHard ? Direction::makeItHarder : Direction::makeItEasier};
}

std::optional<Type> Calculator::easierDifficulty() const {
  return difficulty(Direction::makeItEasier);
}

std::optional<Type> Calculator::harderDifficulty() const {
  return difficulty(Direction::makeItHarder);
}

std::optional<Type> Calculator::difficulty(Direction direction) const {
  if (isNegative || !canAdjust()) return std::nullopt;
  if (durationPerCompletion && frequency.numPartialCompletions == 1) return nextDuration(direction);
  const bool hasTarget =
      automaticTaskType && automaticTaskType->usesHealthKit() && automaticTaskType->taskTarget();
  if (durationPerCompletion || !hasTarget) return nextFrequency(direction);
  return nextQuantity(direction);
}

bool Calculator::canAdjust() const {
  if (automaticTaskType && automaticTaskType->usesHealthKit()) {
    return automaticTaskType->canAdjustDifficulty();
  }
  using enum VisualRepresentationIntent;
  return titleIntent == unknown && iconIntent == unknown;
}

TaskFrequencyPeriodType Calculator::measuredIn() const {
  return measurementDuration(frequency.dayMode);
}

std::optional<Type> Calculator::nextDuration(Direction direction) const {
  const auto options = optionsForTimedTasks(TypeUnit::durationSeconds, measuredIn());
  return changeTo<Type::DurationPerCompletion>(
      neighbour(options, *durationPerCompletion, direction));
}

std::optional<Type> Calculator::nextQuantity(Direction direction) const {
  const AutomaticTaskType& type = *automaticTaskType;
  const auto quantity = neighbour(type.quantityOptions(measuredIn()), type.quantity, direction);
  if (!quantity) return std::nullopt;
  const auto steps = recommendedNumPartialCompletionChange(type, frequency.numPartialCompletions,
                                                           *quantity, measuredIn());
  if (steps) return Type{Type::QuantityAndPartials{*quantity, *steps}};
  return Type{Type::TypeQuantity{*quantity}};
}

std::optional<Type> Calculator::nextFrequency(Direction direction) const {
  const auto times = [&](std::int64_t least, std::int64_t most) {
    return step(frequency.numCompletions, direction, least, most);
  };
  using F = TaskFrequency;
  std::optional<Type> change;
  switch (frequency.dayMode) {
    case DayMode::numberOfDaysInWeek:
      change = changeTo<Type::TimesPerWeek>(
          times(F::dailyCompletionMinTimesPerWeek, F::dailyCompletionMaxTimesPerWeek));
      break;
    case DayMode::numberOfDaysInFortnight:
      change = changeTo<Type::TimesPerFortnight>(
          times(F::dailyCompletionMinTimesPerFortnight, F::dailyCompletionMaxTimesPerFortnight));
      break;
    case DayMode::numberOfDaysInMonth:
      change = changeTo<Type::TimesPerMonth>(
          times(F::dailyCompletionMinTimesPerMonth, F::dailyCompletionMaxTimesPerMonth));
      break;
    case DayMode::numberOfDaysInYear:
      change = changeTo<Type::TimesPerYear>(
          times(F::dailyCompletionMinTimesPerYear, F::dailyCompletionMaxTimesPerYear));
      break;
    case DayMode::dayInterval:
      // More days between completions are easier.
      change = changeTo<Type::DayInterval>(step(frequency.dayInterval, opposite(direction),
                                                F::dailyCompletionMinIntervalDays,
                                                F::dailyCompletionMaxIntervalDays));
      break;
    default:
      break;
  }
  return change ? change : nextPartials(direction);
}

std::optional<Type> Calculator::nextPartials(Direction direction) const {
  const std::int64_t steps = frequency.numPartialCompletions;
  if (steps <= fewestAdjustablePartials) return std::nullopt;
  return changeTo<Type::NumPartialCompletions>(
      step(steps, direction, fewestAdjustablePartials,
           TaskFrequency::maxPartialCompletions(measuredIn())));
}

std::optional<std::int64_t> recommendedNumPartialCompletionChange(
    const AutomaticTaskType& type, std::int64_t numPartialCompletions, double newQuantity,
    TaskFrequencyPeriodType measurementDuration) {
  const bool isInCups = type.type == HealthType::dietaryDrinkWater && type.unit == TypeUnit::cupsUS;
  const bool isOneStepACup =
      std::trunc(type.quantity) == static_cast<double>(numPartialCompletions);
  if (!isInCups || newQuantity == type.quantity || !isOneStepACup) return std::nullopt;
  const auto most = static_cast<double>(type.maxPartialCompletions(measurementDuration));
  return static_cast<std::int64_t>(std::clamp(std::trunc(newQuantity), 1.0, most));
}

}  // namespace velloro
