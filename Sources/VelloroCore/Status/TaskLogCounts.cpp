#include "VelloroCore/Status/TaskLogCounts.h"

#include <algorithm>
#include <ranges>

namespace velloro {
namespace {

TaskFrequency::DaysInPeriodCallbackResponse daysInPeriod(const TaskFrequencyPeriod& period,
                                                         const WillSkipQuestion& question) {
  const auto type = periodTypeForCompletionCountCalculation(question.rules.frequency.dayMode);
  const TimeZone zone = question.rules.timeZone;
  const YYYYMMDD from = firstDate(type, period.startDate, period.firstDayOfWeek, zone);
  const YYYYMMDD to = lastDate(type, period.startDate, period.firstDayOfWeek, zone);
  // A day that is only clean so far does not count against the target yet.
  return {.firstDayOfWeek = period.firstDayOfWeek,
          .numUniqueCompletions = question.numUniqueCompletions(from, to).certainCount(),
          .taskCreatedDate = question.createdDay(),
          .isNegative = question.rules.isNegative,
          .fromDate = from,
          .toDate = to};
}

}  // namespace

NumUniqueCompletions NumUniqueCompletions::fromLog(TaskLogRows rows, const TaskLogRules& rules,
                                                   YYYYMMDD from, YYYYMMDD to) {
  const YYYYMMDD today = rules.today();
  NumUniqueCompletions result;
  PeriodEntries days(rules.isNegative);
  for (const TaskLogRow& row : rowsWithin(rows, {.minDate = from, .maxDate = to})) {
    const TaskLogEntryType type = row.type();
    const auto day = isFull(type) ? YYYYMMDD::fromRawValue(row.entryDate) : std::nullopt;
    if (day) days.add(PeriodEntry::of(*day, 0, type));
  }
  bool todayHasEntry = false;
  auto walk = PeriodWalk::forwards(TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType::day, from,
                                                                 DayOfWeek::sunday, rules.timeZone),
                                   rules.timeZone);
  const auto entries = days.take();
  for (const PeriodEntry& day : entries | std::views::reverse) {
    if (day.periodStart == today.intValue()) todayHasEntry = true;
    if (walk.comesTo(day) && isCompletedFull(day.type)) ++result.count;
  }
  result.assumesToday = rules.isNegative && from <= today && today <= to && !todayHasEntry;
  if (result.assumesToday) ++result.count;
  return result;
}

std::optional<YYYYMMDD> lastCompletedDate(TaskLogRows rows, YYYYMMDD onOrBefore) {
  const auto upTo = rowsWithin(rows, YYYYMMDD::Range::to(onOrBefore));
  const auto newest =
      std::ranges::find_if(upTo, [](const TaskLogRow& row) { return isCompletedFull(row.type()); });
  return newest != upTo.end() ? YYYYMMDD::fromRawValue(newest->entryDate) : std::nullopt;
}

SkipMode willSkip(const TaskFrequencyPeriod& period, const WillSkipQuestion& question) {
  if (question.status == TaskStatus::paused || question.status == TaskStatus::archived) {
    return SkipMode::willSkipWithIndicator;
  }
  if (question.shareStatus == TaskShareStatus::isSharedWithMe) {
    return SkipMode::willMissWithoutIndicator;
  }
  const TaskLogRules& rules = question.rules;
  const auto lastPeriod = [&](const TaskFrequencyPeriod& asked) {
    const auto day = question.lastCompletedDate(asked.previous(rules.timeZone).finishDate);
    if (!day) return TaskFrequency::DayIntervalResponse{};
    return TaskFrequency::DayIntervalResponse{
        rules.frequency.period(*day, asked.firstDayOfWeek, rules.timeZone).period};
  };
  return rules.frequency.shouldSkipPeriod(
      {.period = period,
       .startOfDay = rules.startOfDay,
       .timeZone = rules.timeZone,
       .daysInPeriodCallback = [&](const auto& asked) { return daysInPeriod(asked, question); },
       .dayIntervalCallback = lastPeriod,
       .now = rules.now});
}

}  // namespace velloro
