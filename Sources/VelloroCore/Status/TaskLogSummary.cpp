#include "VelloroCore/Status/TaskLogSummary.h"

#include "VelloroCore/Log/LogEntryRules.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <ranges>

namespace velloro {
namespace {

std::optional<TaskFrequencyPeriod> earliestPeriod(const TaskLogSummary::Question& question) {
  if (!question.from) return std::nullopt;
  const auto& rules = question.rules;
  return std::min(rules.period(*question.from), rules.period(question.to), std::less<>());
}

/// What one pass over the rows finds.
struct Pass {
  std::optional<YYYYMMDD> newest;  ///< The days of the first and of the last usable row.
  std::optional<YYYYMMDD> oldest;
  std::vector<PeriodEntry> entries;
  std::int64_t numLastPeriodEntries = 0;
};

Pass passOver(TaskLogRows rows, const TaskLogRules& rules, const YYYYMMDD& lastPeriodStart) {
  Pass pass;
  PeriodEntries entries(rules.isNegative);
  entries.reserve(rows.size());
  const auto counted =
      rules.isNegative ? TaskLogEntryTypes::allMissedTypes : TaskLogEntryTypes::allCompletedTypes;
  for (const TaskLogRow& row : rows) {
    const auto date = row.date();
    if (!date) continue;
    const YYYYMMDD start = rules.startOfPeriod(*date);
    if (!pass.newest) pass.newest = date;
    pass.oldest = date;
    const TaskLogEntryType type = row.type();
    if (start == lastPeriodStart && counted.contains(type)) ++pass.numLastPeriodEntries;
    if (isFull(type)) entries.add(PeriodEntry::of(start, &row - rows.data(), type));
  }
  pass.entries = entries.take();
  return pass;
}

/// The newest entry of each kind, by its place; absent where there is none.
struct NewestEntries {
  const PeriodEntry* completed = nullptr;
  const PeriodEntry* missed = nullptr;
  const PeriodEntry* allowableMiss = nullptr;
  const PeriodEntry* skipped = nullptr;

  void take(const PeriodEntry& entry) {
    if (isCompletedFull(entry.type)) completed = &entry;
    if (isMissedFull(entry.type)) missed = &entry;
    if (isAllowableMissFull(entry.type)) allowableMiss = &entry;
    if (isSkipped(entry.type)) skipped = &entry;
  }
};

NewestEntries newestEntries(const Pass& pass, const TaskLogRules& rules) {
  NewestEntries found;
  const std::int64_t newest = rules.period(*pass.newest).startDate.intValue();
  auto walk = PeriodWalk::forwards(rules.period(*pass.oldest), rules.timeZone);
  for (const PeriodEntry& entry : pass.entries | std::views::reverse) {
    if (entry.periodStart <= newest && walk.comesTo(entry)) found.take(entry);
  }
  return found;
}

/// The newest run, and the longest one.
StreakRecord runs(const Pass& pass, const TaskLogRules& rules,
                  const TaskFrequencyPeriod& lastPeriod) {
  std::int64_t newestRun = 0, longestRun = 0, run = 0;
  const auto endRun = [&] {
    if (newestRun == 0) newestRun = run;
    longestRun = std::max(longestRun, run);
    run = 0;
  };
  const std::int64_t oldest = rules.period(*pass.oldest).startDate.intValue();
  auto walk = PeriodWalk::backwards(lastPeriod, rules.timeZone);
  for (const PeriodEntry& entry : pass.entries) {
    if (entry.periodStart < oldest || !walk.comesTo(entry)) continue;
    if (isCompletedFull(entry.type)) ++run;
    if (isMissedFull(entry.type)) endRun();
  }
  endRun();
  return {newestRun, longestRun};
}

CompletionByPeriod completion(const PeriodEntry& entry, TaskLogRows rows,
                              const TaskLogRules& rules) {
  const TaskLogRow& row = rows[entry.row];
  const YYYYMMDD date = row.date().value_or(YYYYMMDD());
  const Date made =
      row.createdTimestamp.value_or(date.startOfDay(rules.startOfDay, rules.timeZone));
  return {.type = entry.type,
          .date = date,
          .time = HHMMSS::fromDate(made, row.timeZone(rules.timeZone))};
}

/// Whether the newest run has not been ended by a miss.
bool isRunning(const TaskLogSummary& summary) {
  if (!summary.lastCompleted) return false;
  return !summary.lastMissed || summary.lastCompleted->first >= summary.lastMissed->first;
}

TaskFrequencyPeriod firstPeriodOfEmptyLog(const TaskLogSummary::Question& question,
                                          const TaskFrequencyPeriod& lastPeriod) {
  const TaskLogRules& rules = question.rules;
  if (question.created) {
    return rules.period(YYYYMMDD::fromDate(rules.startOfDay, *question.created, rules.timeZone));
  }
  return std::min(rules.period(rules.today()), lastPeriod, std::less<>());
}

}  // namespace

YYYYMMDD::Range TaskLogSummary::Question::dates() const {
  const auto earliest = earliestPeriod(*this);
  return {.minDate = earliest ? std::optional(earliest->startDate) : std::nullopt,
          .maxDate = rules.period(to).finishDate};
}

TaskLogSummary TaskLogSummary::fromLog(TaskLogRows allRows, const Question& question) {
  const TaskLogRules& rules = question.rules;
  const TaskLogRows rows = rowsWithin(allRows, question.dates());
  const auto earliest = earliestPeriod(question);
  TaskLogSummary summary{.lastPeriod = rules.period(question.to)};
  const Pass pass = passOver(rows, rules, summary.lastPeriod.startDate);
  if (!pass.oldest) {
    summary.firstPeriod =
        earliest ? *earliest : firstPeriodOfEmptyLog(question, summary.lastPeriod);
    return summary;
  }
  const NewestEntries newest = newestEntries(pass, rules);
  const auto moment = [&](const PeriodEntry* entry) -> std::optional<Moment> {
    if (entry == nullptr) return std::nullopt;
    const CompletionByPeriod found = completion(*entry, rows, rules);
    return Moment(found.date, found.time);
  };
  summary.firstPeriod = earliest ? *earliest : rules.period(*pass.oldest);
  summary.lastCompleted = moment(newest.completed);
  summary.lastMissed = moment(newest.missed);
  summary.lastAllowableMiss = moment(newest.allowableMiss);
  summary.lastSkipped = moment(newest.skipped);
  summary.numLastPeriodEntries = pass.numLastPeriodEntries;
  summary.streak = runs(pass, rules, summary.lastPeriod);
  if (!isRunning(summary)) summary.streak.current = 0;
  return summary;
}

std::optional<double> amountInPeriod(TaskLogRows rows, const TaskLogRules& rules,
                                     const TaskFrequencyPeriod& period) {
  const auto counted = countedTypes(rules.isNegative);
  for (const TaskLogRow& row :
       rowsWithin(rows, {.minDate = period.startDate, .maxDate = period.finishDate})) {
    const auto date = counted.contains(row.type()) ? row.date() : std::nullopt;
    if (date && rules.period(*date) == period) return row.progressTotal;
  }
  return std::nullopt;
}

std::optional<double> enteredAmount(TaskLogRows rows, const TaskLogRules& rules,
                                    const TaskFrequencyPeriod& period, double kept) {
  constexpr double closeness = 0.00001;
  double total = 0;
  bool isEntered = std::abs(kept) < closeness;
  const auto within = rowsWithin(rows, {.minDate = period.startDate, .maxDate = period.finishDate});
  for (const TaskLogRow& row : within | std::views::reverse) {
    const double amount = LogStep{row.type(), row.progress}.counted(rules.isNegative);
    const auto date = amount != 0 ? row.date() : std::nullopt;
    if (!date || rules.period(*date) != period) continue;
    total += amount;
    isEntered = isEntered || std::abs(kept - total) < closeness;
  }
  return isEntered ? std::optional(total) : std::nullopt;
}

}  // namespace velloro
