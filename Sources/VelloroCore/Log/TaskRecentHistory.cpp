#include "VelloroCore/Log/TaskRecentHistory.h"

#include <algorithm>
#include <iterator>

namespace velloro {
namespace {

using Status = TaskCalendarPeriodStatus;
using Infos = std::vector<TaskCalendarPeriodInfo>;

Status currentStatus(TaskLogEntryType entry, bool isNegative) {
  if (isMissedFull(entry)) return Status::currentMissed;
  if (isNegative) {
    return isAllowableMissFull(entry) ? Status::currentAllowedMiss : Status::currentCompleted;
  }
  return isCompletedFull(entry) ? Status::currentCompleted : Status::current;
}

Status pastStatus(TaskLogEntryType entry) {
  if (isCompletedFull(entry)) return Status::completed;
  return isMissedFull(entry) ? Status::missed : Status::skipped;
}

/// The status of a period whose entry is given, or that has none.
Status statusOf(const TaskFrequencyPeriod& period, const PeriodEntry* entry,
                const TaskRecentHistory::Question& question, const YYYYMMDD& ref) {
  const auto type = entry != nullptr ? entry->type : TaskLogEntryType::unknown;
  if (period.startsAfter(ref)) return Status::future;
  if (period.contains(ref)) return currentStatus(type, question.rules.isNegative);
  const bool isTooOld = entry == nullptr && period.endsBefore(question.createdDay);
  return isTooOld ? Status::past : pastStatus(type);
}

/// Of each period from the first to that of `question.to`.
Infos statuses(const TaskFrequencyPeriod& first, const std::vector<PeriodEntry>& entries,
               const TaskRecentHistory::Question& question, const YYYYMMDD& ref) {
  Infos infos;
  const TaskLogRules& rules = question.rules;
  const TaskFrequencyPeriod last = rules.period(question.to);
  auto entry = entries.rbegin();  // from the oldest on
  for (TaskFrequencyPeriod period = first; !(last < period); period = period.next(rules.timeZone)) {
    const std::int64_t start = period.startDate.intValue();
    while (entry != entries.rend() && entry->periodStart < start) ++entry;
    const bool hasEntry = entry != entries.rend() && entry->periodStart == start;
    infos.push_back({.period = period,
                     .status = statusOf(period, hasEntry ? &*entry : nullptr, question, ref)});
  }
  return infos;
}

bool isBefore(const TaskCalendarPeriodInfo& a, const TaskCalendarPeriodInfo& b) {
  return a.period < b.period;
}

}  // namespace

Infos sortedOldestToNewest(Infos periods) {
  std::ranges::stable_sort(periods, isBefore);
  return periods;
}

Infos sortedNewestToOldest(Infos periods) {
  std::ranges::stable_sort(periods, [](const auto& a, const auto& b) { return isBefore(b, a); });
  return periods;
}

TaskRecentHistory::TaskRecentHistory(DayOfWeek firstDay, const Infos& periods,
                                     const PreviousDaysSuccess& shortRate,
                                     const PreviousDaysSuccess& longRate)
    : firstDayOfWeek(firstDay), shortTerm(shortRate), longTerm(longRate) {
  for (const TaskCalendarPeriodInfo& info : periods) {
    if (info.period.periodType == TaskFrequencyPeriodType::day) {
      single.insert_or_assign(info.period.startDate, info.status);
    } else {
      multi.push_back(info);
    }
  }
}

TaskRecentHistory TaskRecentHistory::defaultResult(DayOfWeek firstDayOfWeek) {
  TaskRecentHistory history;
  history.firstDayOfWeek = firstDayOfWeek;
  return history;
}

TaskCalendarPeriodInfo TaskRecentHistory::dayInfo(YYYYMMDD day, Status status) const {
  return {.period =
              TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType::day, day, firstDayOfWeek, {}),
          .status = status};
}

Infos TaskRecentHistory::unsortedPeriods() const {
  Infos all;
  all.reserve(single.size() + multi.size());
  for (const auto& [day, status] : single) all.push_back(dayInfo(day, status));
  all.insert(all.end(), multi.begin(), multi.end());
  return all;
}

Infos TaskRecentHistory::unsortedPeriods(YYYYMM month) const {
  Infos found;
  const auto end = single.upper_bound(month.lastDay());
  for (auto day = single.lower_bound(month.firstDay()); day != end; ++day) {
    found.push_back(dayInfo(day->first, day->second));
  }
  std::ranges::copy_if(multi, std::back_inserter(found), [&](const TaskCalendarPeriodInfo& info) {
    return info.period.contains(month);
  });
  return found;
}

YYYYMMDD TaskRecentHistory::Question::ref() const {
  return std::min(rules.today(), to);
}

PreviousDaysSuccess::Question TaskRecentHistory::Question::rates() const {
  return {.rules = rules, .ref = ref(), .createdDay = createdDay, .lastCompleted = lastCompleted};
}

YYYYMMDD::Range TaskRecentHistory::Question::dates() const {
  YYYYMMDD::Range range{.maxDate = rules.period(ref()).finishDate};
  if (!from) return range;
  const auto [shortTerm, longTerm] =
      previousSuccessTypes(measurementDuration(rules.frequency.dayMode));
  range.minDate = std::min(
      {rules.period(*from).startDate, rates().firstDay(shortTerm), rates().firstDay(longTerm)});
  return range;
}

TaskRecentHistory TaskRecentHistory::fromLog(TaskLogRows rows, const Question& question) {
  const TaskLogRules& rules = question.rules;
  const YYYYMMDD ref = question.ref();
  auto first = question.from ? std::optional(rules.period(*question.from)) : std::nullopt;
  const auto entries =
      fullEntriesByPeriod(rows, rules,
                          {.minDate = first ? std::optional(first->startDate) : std::nullopt,
                           .maxDate = rules.period(ref).finishDate});
  if (!first && !entries.empty()) {
    first = rules.period(rows[entries.back().row].date().value_or(YYYYMMDD()));
  }
  Infos infos;
  if (first) infos = statuses(*first, entries, question, ref);
  const auto types = previousSuccessTypes(measurementDuration(rules.frequency.dayMode));
  const auto rates = question.rates();
  return {rules.firstDayOfWeek, infos, PreviousDaysSuccess::fromLog(types.shortTerm, rows, rates),
          PreviousDaysSuccess::fromLog(types.longTerm, rows, rates)};
}

}  // namespace velloro
