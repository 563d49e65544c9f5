#include "VelloroCore/Progress/TaskProgressContinuous.h"

#include "OxKit/Numbers.h"

#include <algorithm>
#include <cmath>

namespace velloro {

std::int64_t TaskProgressContinuous::numCompletions() const {
  // Amounts in a stored record can be of any size; a count beyond this is no count.
  constexpr double most = 1e15;
  return static_cast<std::int64_t>(std::clamp(std::floor(completions()), -most, most));
}

/// The current value in completions, with the fraction of the one under way.
double TaskProgressContinuous::completions() const {
  const double each = valuePerCompletion();
  return each > 0 ? wholeUnlessFractional(currentValue / each) : 0;
}

double TaskProgressContinuous::progressPct() const {
  if (!(targetValue > 0)) return 0;
  return std::clamp(wholeUnlessFractional(currentValue / targetValue), 0.0, 1.0);
}

double TaskProgressContinuous::remainingValue() const {
  return std::max(difference(targetValue, currentValue), 0.0);
}

double TaskProgressContinuous::remainingValueForCurrentCompletion() const {
  const double each = valuePerCompletion();
  if (!(each > 0)) return each - std::max(currentValue, 0.0);
  const double begun = difference(currentValue, std::floor(completions()) * each);
  return difference(each, std::clamp(begun, 0.0, each));
}

}  // namespace velloro
