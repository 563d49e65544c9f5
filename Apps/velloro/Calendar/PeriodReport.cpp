#include "velloro/Calendar/PeriodReport.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/Locale.h"
#include "Foundation/Text/String.h"
#include "velloro/Options/Arguments.h"

namespace velloro {
namespace {

std::string line(const char* name, const PeriodStretch& stretch) {
  return stringWithFormat("%-10s %s  to  %s\n", name, stretch.start.debugDescription().c_str(),
                          stretch.finish.debugDescription().c_str());
}

}  // namespace

PeriodReport PeriodReport::of(const TaskFrequency& frequency, YYYYMMDD date,
                              DayOfWeek firstDayOfWeek, TimeZone timeZone) {
  const TaskFrequencyPeriod period = frequency.period(date, firstDayOfWeek, timeZone).period;
  const YYYYMMDD longAgo{};
  return {.mode = modeName(frequency.dayMode),
          .date = date,
          .dayOfWeek = date.dayOfWeek(timeZone),
          .period = PeriodStretch::of(period),
          .previous = PeriodStretch::of(period.previous(timeZone)),
          .next = PeriodStretch::of(period.next(timeZone)),
          .numberOfDays = period.numberOfDays(timeZone),
          .remainingDays = period.remainingDays(date, false, timeZone),
          .expectedCompletions = frequency.numberOfExpectedTimes(period, longAgo, timeZone),
          .countedOver = periodName(periodTypeForCompletionCountCalculation(frequency.dayMode)),
          .isEmpty = frequency.isEmpty()};
}

std::string PeriodReport::json() const {
  return JSONEncoder{}.encode(*this) + "\n";
}

std::string PeriodReport::text() const {
  const auto number = [](std::int64_t n) { return static_cast<long long>(n); };
  return mode + ", " + localizedTitle(dayOfWeek, Locale::current()) + ", " +
         date.debugDescription() + "\n\n" + line(("the " + period.type).c_str(), period) +
         line("previous", previous) + line("next", next) +
         stringWithFormat("days       %lld, %lld to go\n", number(numberOfDays),
                          number(remainingDays)) +
         (countedOver == period.type
              ? ""
              : stringWithFormat("expected   %lld times in the %s\n", number(expectedCompletions),
                                 countedOver.c_str())) +
         (isEmpty ? "No day can ever be due.\n" : "");
}

}  // namespace velloro
