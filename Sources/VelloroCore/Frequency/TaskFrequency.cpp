#include "VelloroCore/Frequency/TaskFrequency.h"

#include <algorithm>

namespace velloro {
namespace {

std::string listText(const EnumSet<DayOfWeek>& days) {
  std::string text = "[";
  for (const DayOfWeek day : days) {
    text += (text.size() > 1 ? ", " : "") + velloro::debugDescription(day);
  }
  return text + "]";
}

}  // namespace

std::string TaskFrequency::debugDescription() const {
  return "TaskFrequency(dayMode=" + velloro::debugDescription(dayMode) +
         ", days=" + listText(days) + ", daysOfMonth=" + std::to_string(daysOfMonth.rawValue) +
         ", periodTypeForCompletion=" + velloro::debugDescription(measurementDuration(dayMode)) +
         ", periodTypeForCompletionCountCalculation=" +
         velloro::debugDescription(periodTypeForCompletionCountCalculation(dayMode)) +
         ", numPartialCompletions=" + std::to_string(numPartialCompletions) +
         ", numCompletions=" + std::to_string(numCompletions) +
         ", dayInterval=" + std::to_string(dayInterval) + ")";
}

DatedPeriod TaskFrequency::currentPeriod(HHMMSS startOfDay, DayOfWeek firstDayOfWeek,
                                         TimeZone timeZone, Date now) const {
  return period(startOfDay, now, firstDayOfWeek, timeZone);
}

DatedPeriod TaskFrequency::period(YYYYMMDD date, DayOfWeek firstDayOfWeek,
                                  const CountedIn& timeZone) const {
  return DatedPeriod::fromDate(date, measurementDuration(dayMode), firstDayOfWeek, timeZone);
}

DatedPeriod TaskFrequency::period(HHMMSS startOfDay, Date date, DayOfWeek firstDayOfWeek,
                                  TimeZone timeZone) const {
  return period(YYYYMMDD::fromDate(startOfDay, date, timeZone), firstDayOfWeek, timeZone);
}

YYYYMMDD TaskFrequency::startOfPeriod(YYYYMMDD date, DayOfWeek firstDayOfWeek,
                                      const CountedIn& timeZone) const {
  return firstDate(measurementDuration(dayMode), date, firstDayOfWeek, timeZone);
}

void TaskFrequency::set(DayOfWeek day, bool include) {
  if (include) {
    days.insert(day);
  } else {
    days.remove(day);
  }
}

std::int64_t TaskFrequency::numberOfExpectedTimes(const TaskFrequencyPeriod& period,
                                                  YYYYMMDD taskCreatedDate,
                                                  const CountedIn& timeZone) const {
  return expectedTimes(countingPeriod(period, timeZone), taskCreatedDate, timeZone);
}

bool TaskFrequency::isEmpty() const {
  if (numPartialCompletions < minPartialCompletions) return true;
  switch (dayMode) {
    using enum DayMode;
    case specificDaysOfWeek:
      return days.isDisjoint(everyDay());
    case numberOfDaysInWeek:
    case numberOfDaysInFortnight:
    case numberOfDaysInMonth:
    case numberOfDaysInYear:
      return numCompletions < 1;
    case DayMode::dayInterval:
      return this->dayInterval < dailyCompletionMinIntervalDays ||
             this->dayInterval > dailyCompletionMaxIntervalDays;
    case aggregateOverWeek:
    case aggregateOverFortnight:
    case aggregateOverMonth:
    case aggregateOverYear:
      return false;
    case specificDaysOfMonth:
      break;  // No reminder can be planned for such days yet.
  }
  return true;
}

SkipMode TaskFrequency::shouldSkipPeriod(const SkipQuestion& question) const {
  const auto& [period, startOfDay, timeZone, ofDays, ofInterval, now] = question;
  switch (dayMode) {
    using enum DayMode;
    case specificDaysOfWeek:
      return hasDay(period.startDate.dayOfWeek(timeZone)) ? SkipMode::willMissWithoutIndicator
                                                          : SkipMode::willSkipWithIndicator;
    case numberOfDaysInWeek:
    case numberOfDaysInFortnight:
    case numberOfDaysInMonth:
    case numberOfDaysInYear:
      return skipByCount(question);
    case DayMode::dayInterval:
      return skipByInterval(question);
    case aggregateOverWeek:
    case aggregateOverFortnight:
    case aggregateOverMonth:
    case aggregateOverYear:
      return period.latestPossibleDatedPeriod(startOfDay, timeZone, now).isLastDay()
                 ? SkipMode::willMissWithIndicator
                 : SkipMode::willMissWithoutIndicator;
    case specificDaysOfMonth:
      break;
  }
  return SkipMode::willMissWithoutIndicator;
}

SkipMode TaskFrequency::skipByInterval(const SkipQuestion& question) const {
  const auto last = question.dayIntervalCallback(question.period).periodOfLastCompletionBeforeToday;
  const bool isTooEarly =
      last && question.period.startDate < last->startDate.add(dayInterval, question.timeZone);
  return isTooEarly ? SkipMode::willSkipWithIndicator : SkipMode::willMissWithoutIndicator;
}

SkipMode TaskFrequency::skipByCount(const SkipQuestion& question) const {
  const TaskFrequencyPeriod whole = countingPeriod(question.period, question.timeZone);
  const DaysInPeriodCallbackResponse log = question.daysInPeriodCallback(question.period);
  const std::int64_t needed =
      expectedTimes(whole, log.taskCreatedDate, question.timeZone) - log.numUniqueCompletions;
  if (needed <= 0) return SkipMode::willSkipWithIndicator;
  const std::int64_t remaining =
      question.period.finishDate.distance(whole.finishDate, false, question.timeZone);
  return remaining < needed ? SkipMode::willMissWithIndicator : SkipMode::willSkipWithoutIndicator;
}

TaskFrequencyPeriod TaskFrequency::countingPeriod(const TaskFrequencyPeriod& period,
                                                  const CountedIn& timeZone) const {
  return TaskFrequencyPeriod::fromDate(periodTypeForCompletionCountCalculation(dayMode),
                                       period.startDate, period.firstDayOfWeek, timeZone);
}

std::int64_t TaskFrequency::expectedTimes(const TaskFrequencyPeriod& countingPeriod,
                                          YYYYMMDD taskCreatedDate,
                                          const CountedIn& timeZone) const {
  const std::int64_t count = countingPeriod.contains(taskCreatedDate)
                                 ? std::min(numCompletions, countingPeriod.numberOfDays(timeZone))
                                 : numCompletions;
  return std::max<std::int64_t>(count, 1);
}

}  // namespace velloro
