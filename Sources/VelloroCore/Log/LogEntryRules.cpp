#include "VelloroCore/Log/LogEntryRules.h"

#include "OxKit/Numbers.h"

#include <algorithm>

namespace velloro {
namespace {

using Type = TaskLogEntryType;

bool reaches(double total, double target) {
  constexpr double closeness = 0.00001;
  return total > target - closeness;
}

}  // namespace

std::vector<double> runningTotals(std::span<const LogStep> entries, bool isNegative) {
  std::vector<double> totals;
  double total = 0;
  for (const LogStep& entry : entries) totals.push_back(total += entry.counted(isNegative));
  return totals;
}

Date instantOfItsOwn(Date at, std::span<const Date> taken) {
  for (const Date instant : taken) {
    if (instant == at) at = at + 0.001;
  }
  return at;
}

Type fullForm(Type type) {
  switch (type) {
    case Type::completedManuallyPartial:
      return Type::completedManuallyFull;
    case Type::completedAutomaticallyPartial:
      return Type::completedAutomaticallyFull;
    case Type::missedManuallyPartial:
      return Type::missedManuallyFull;
    case Type::missedAutomaticallyPartial:
      return Type::missedAutomaticallyFull;
    default:
      return type;
  }
}

LogStep nextLogStep(const LogStepQuestion& question) {
  const auto& [wantedType, wantedAmount, isNegative, progress, done, now] = question;
  const Type type = wantedType.value_or(isNegative ? Type::missedManuallyPartial
                                                   : Type::completedManuallyPartial);
  if (!countedTypes(isNegative).contains(type) || isTimer(type)) {
    return {type, wantedAmount.value_or(0)};
  }
  const double target = progress.targetValue();
  const double left =
      isFull(type) ? difference(target, done) : progress.remainingValueForCurrentCompletion(now);
  const double amount = wantedAmount.value_or(std::max(left, 0.0));
  return {reaches(done + amount, target) ? fullForm(type) : type, amount};
}

}  // namespace velloro
