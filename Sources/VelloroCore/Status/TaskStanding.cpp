#include "VelloroCore/Status/TaskStanding.h"

#include "OxKit/Numbers.h"

#include <algorithm>
#include <cmath>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;

/// What a stored value can be at most; a count beyond it is none.
constexpr double mostCompletions = 1e15;

std::int64_t wholeCompletions(double value) {
  if (!(value > 0)) return 0;
  return static_cast<std::int64_t>(
      std::min(std::floor(wholeUnlessFractional(value)), mostCompletions));
}

TaskProgressTimer::Unit timerUnit(const AutomaticTaskType& type) {
  using Unit = TaskProgressTimer::Unit;
  for (const Unit unit : allCases<Unit>()) {
    if (automaticTaskTypeUnit(unit) == type.unit) return unit;
  }
  return Unit::seconds;
}

TaskProgress full(const TaskProgress& progress, Date now) {
  return progress.progressPct(now) >= 1 ? progress : progress.completeProgress();
}

}  // namespace

/// Whether the current period has what ends it: done, or, of a negative task, lost.
bool TaskStanding::isSettled(const TaskFrequencyPeriod& current) const {
  if (!isNegative) return isIn(temporal.lastCompleted, current);
  return isIn(temporal.lastMissed, current) || isIn(temporal.lastSkipped, current);
}

TaskProgress TaskStanding::progress(const TaskFrequencyPeriod& period) const {
  const DatedPeriod dated = period.latestPossibleDatedPeriod(startOfDay, timeZone, now);
  const std::int64_t expected = frequency.numPartialCompletions;
  const double stored = isIn(temporal.progressDate, period) ? temporal.progress : 0;
  const DatedPeriod current = currentPeriod();
  const bool isCurrent = period.contains(current.date);
  const bool isCompleted = isCurrent && isIn(temporal.lastCompleted, current.period);
  if (automaticTaskType && automaticTaskType->type == HealthType::activity) {
    const auto rings = TaskProgressActivityRings::fromEncoded(dated, stored);
    if (!isCompleted || rings.progressPct() >= 1) return rings;
    return TaskProgressDiscrete{
        .period = dated, .expectedCompletions = expected, .numCompletions = expected};
  }
  if (automaticTaskType && automaticTaskType->type == HealthType::energyDeficit) {
    const TaskProgress range = TaskProgressDateRange::from(
        {.period = dated, .startOfDay = startOfDay, .timeZone = timeZone, .enabled = stored > 0});
    return isCompleted ? range.completeProgress() : range;
  }
  const TaskProgressContinuous amount{.period = dated,
                                      .expectedCompletions = expected,
                                      .targetValue = typeTarget,
                                      .currentValue = stored};
  if (automaticTaskType && automaticTaskType->type == TaskType::screenTime()) {
    return isCompleted ? amount.completeProgress() : amount;
  }
  const bool isOver = isCurrent && isSettled(current.period);
  const double value = isOver ? std::max(typeTarget, stored) : stored;
  if (automaticTaskType && automaticTaskType->isTimed()) return timerProgress(dated, value);
  if (automaticTaskType && automaticTaskType->taskTarget()) {
    TaskProgressContinuous reached = amount;
    reached.currentValue = value;
    return reached;
  }
  // A period that is over may have been ended by one full entry in the place of its steps.
  return TaskProgressDiscrete{
      .period = dated,
      .expectedCompletions = expected,
      .numCompletions = isOver ? expected : std::min(wholeCompletions(value), expected)};
}

TaskProgressTimer TaskStanding::timerProgress(const DatedPeriod& dated, double value) const {
  const auto unit = timerUnit(*automaticTaskType);
  TaskProgressTimer timer{
      .period = dated,
      .unit = unit,
      .expectedCompletions = frequency.numPartialCompletions,
      .totalTargetDuration = TaskProgressTimer::convertToTimeInterval(typeTarget, unit)};
  const double seconds = TaskProgressTimer::convertToTimeInterval(value, unit);
  const double each = timer.durationPerCompletion();
  if (each > 0) timer.numCompletions = wholeCompletions(seconds / each);
  const bool isRunning = runningTimer && runningTimer->period == dated.period;
  const double rest = difference(seconds, each * static_cast<double>(timer.numCompletions));
  timer.currentCompletionDuration = std::max(rest + (isRunning ? runningTimer->duration : 0), 0.0);
  return timer;
}

CompletionStatus TaskStanding::completionStatus(const TaskFrequencyPeriod& period,
                                                WillSkip willSkip) const {
  const TaskProgress reached = progress(period);
  const auto open = [&] {
    const SkipMode mode = willSkip(period);
    return CompletionStatus(
        isNegative ? Status::negativeComplete(mode) : Status::positiveIncomplete(mode), reached);
  };
  if (period != currentPeriod().period) return open();
  if (isNegative) {
    if (isIn(temporal.lastMissed, period)) return {Status::negativeMiss, full(reached, now)};
    if (isIn(temporal.lastSkipped, period))
      return {Status::negativeAllowedMiss, full(reached, now)};
    return open();
  }
  if (isIn(temporal.lastCompleted, period)) return {Status::positiveComplete, full(reached, now)};
  if (isIn(temporal.lastMissed, period)) return {Status::positiveMiss, reached};
  if (isIn(temporal.lastSkipped, period)) return {Status::positiveSkip, reached};
  return open();
}

StreakRecord TaskStanding::streak() const {
  const auto newest =
      std::max({temporal.lastMissed, temporal.lastCompleted, temporal.lastSkipped});  // if any
  const bool isPending = isNegative && (!newest || *newest < today());
  return isPending ? temporal.streak.increment() : temporal.streak;
}

StreakedCompletionStatus TaskStanding::streakedCompletionStatus(const TaskFrequencyPeriod& period,
                                                                WillSkip willSkip) const {
  const TaskFrequencyPeriod current = currentPeriod().period;
  StreakedCompletionStatus result{completionStatus(period, willSkip), streak()};
  if (period < current || period == current) return result;
  result.streak = result.streak.adjust(current, period, completionStatus(current, willSkip).status);
  return result;
}

}  // namespace velloro
