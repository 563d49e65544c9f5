#include "velloro/Calendar/PeriodStretch.h"

#include "velloro/Options/Arguments.h"

namespace velloro {

PeriodStretch PeriodStretch::of(const TaskFrequencyPeriod& period) {
  return {periodName(period.periodType), period.startDate, period.finishDate};
}

}  // namespace velloro
