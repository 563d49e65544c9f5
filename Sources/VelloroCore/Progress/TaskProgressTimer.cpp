#include "VelloroCore/Progress/TaskProgressTimer.h"

#include "OxKit/Numbers.h"

#include <algorithm>

namespace velloro {

double TaskProgressTimer::convertToTimeInterval(double value, Unit unit) {
  return velloro::convertToTimeInterval(value, automaticTaskTypeUnit(unit));
}

double TaskProgressTimer::convertFromTimeInterval(double duration, Unit unit) {
  return velloro::convertFromTimeInterval(duration, automaticTaskTypeUnit(unit));
}

double TaskProgressTimer::remainingDuration() const {
  if (!(totalTargetDuration > 0)) return 0;
  return std::max(difference(totalTargetDuration, elapsedDuration()), 0.0);
}

/// A completion counts with what it takes, however long its timer ran.
double TaskProgressTimer::elapsedDuration() const {
  const double each = durationPerCompletion();
  return each * static_cast<double>(numCompletions) + std::min(currentCompletionDuration, each);
}

double TaskProgressTimer::remainingDurationCurrentCompletion() const {
  const double each = durationPerCompletion();
  return each > 0 ? difference(each, currentCompletionDuration) : each;
}

TaskProgressTimer TaskProgressTimer::addCurrentCompletionDuration(
    double duration, bool assignOverflowToNextCompletion) const {
  const double each = durationPerCompletion();
  const double done = each > 0 ? currentCompletionDuration : 0;
  const double overflow = difference(done + duration, each);
  if (overflow < 0) return with(numCompletions, currentCompletionDuration + duration);
  const std::int64_t completions = expectedCompletions.after(numCompletions);
  const bool isLast = completions >= expectedCompletions;
  return with(completions, assignOverflowToNextCompletion && !isLast ? overflow : 0);
}

double TaskProgressTimer::progressPct() const {
  if (!(totalTargetDuration > 0)) return 0;
  return wholeUnlessFractional(elapsedDuration() / totalTargetDuration);
}

double TaskProgressTimer::currentCompletionProgressPct() const {
  const double each = durationPerCompletion();
  return each > 0 ? wholeUnlessFractional(currentCompletionDuration / each) : 0;
}

double TaskProgressTimer::remainingValueForCurrentCompletion() const {
  return inUnit(std::max(difference(durationPerCompletion(), currentCompletionDuration), 0.0));
}

TaskProgressTimer TaskProgressTimer::with(std::int64_t completions, double duration) const {
  TaskProgressTimer changed = *this;
  changed.numCompletions = completions;
  changed.currentCompletionDuration = duration;
  return changed;
}

}  // namespace velloro
