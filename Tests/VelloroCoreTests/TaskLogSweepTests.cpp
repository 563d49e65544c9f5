// Random logs through the walk, the rates and the skip rules, and through the same told plainly:
// every period is visited, and what was found for it is looked up in a map.

#include "VelloroCore/Log/TaskRecentHistory.h"
#include "VelloroCore/Status/TaskLogCounts.h"
#include "VelloroCore/Status/TaskLogSummary.h"

#include <map>
#include <random>
#include <tuple>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Moment = TaskLogSummary::Moment;

/// A task, its log, and the days that are asked about.
struct Case {
  TaskLogRules rules;
  std::vector<TaskLogRow> rows;
  std::optional<YYYYMMDD> from;
  YYYYMMDD to;
  YYYYMMDD createdDay;
  std::optional<YYYYMMDD> lastCompleted;

  [[nodiscard]] std::string description() const {
    std::string text = rules.frequency.debugDescription() + " first " +
                       std::to_string(static_cast<int>(rules.firstDayOfWeek)) + " to " +
                       to.debugDescription() + (rules.isNegative ? " negative" : "");
    for (const TaskLogRow& row : rows) {
      text += "\n" + std::to_string(row.entryDate) + " " + std::to_string(row.entryType);
    }
    return text;
  }
};

class Cases {
 public:
  Case next() {
    // Apia lost a whole day at the end of 2011.
    base_ = chance(5) ? YYYYMMDD{2011, 10, 20} : YYYYMMDD{2023, 12, 20};
    const Date now = day(30).dateAt(HHMMSS::midnight, HHMMSS{.h = number(24)}, TimeZone::gmt());
    const std::string_view zones[] = {"America/New_York", "Asia/Kathmandu", "Pacific/Apia"};
    Case task{.rules = {.frequency = frequency(),
                        .startOfDay = {.h = number(24)},
                        .firstDayOfWeek = allCases<DayOfWeek>()[index(7)],
                        .timeZone = zone(zones[index(3)]),
                        .isNegative = chance(2),
                        .now = now},
              .rows = {},
              .from = chance(2) ? std::optional(day(90)) : std::nullopt,
              .to = day(90),
              .createdDay = day(40),
              .lastCompleted = chance(2) ? std::optional(day(60)) : std::nullopt};
    if (chance(2)) task.to = task.rules.today();
    for (std::size_t rest = index(60); rest > 0; --rest) task.rows.push_back(row());
    std::ranges::sort(task.rows, [](const TaskLogRow& a, const TaskLogRow& b) {
      return std::tie(a.entryDate, a.createdTimestamp) > std::tie(b.entryDate, b.createdTimestamp);
    });
    return task;
  }

 private:
  std::int64_t number(std::int64_t below) { return static_cast<std::int64_t>(random_()) % below; }
  std::size_t index(std::int64_t below) { return static_cast<std::size_t>(number(below)); }
  bool chance(std::int64_t oneIn) { return number(oneIn) == 0; }
  YYYYMMDD day(std::int64_t days) { return base_.add(number(days), {}); }
  static TimeZone zone(std::string_view name) { return TimeZone::fromIdentifier(name).value(); }

  TaskFrequency frequency() {
    const auto modes = allCases<DayMode>();
    return {.dayMode = modes[index(std::ssize(modes))],
            .numCompletions = number(9),
            .dayInterval = 2 + number(5)};
  }

  std::int32_t storedDay() {
    if (chance(60)) return chance(2) ? 0 : 20111345;
    if (chance(60)) return 20240230;
    return static_cast<std::int32_t>(day(80).intValue());
  }

  TaskLogRow row() {
    const auto types = allCases<TaskFrequencyPeriodType>();
    TaskLogRow row{.entryDate = storedDay(),
                   .entryPeriodFrom = storedDay(),
                   .entryPeriodTo = storedDay(),
                   // Full types mostly; some numbers that no type has.
                   .entryType = static_cast<std::int16_t>(number(20) - 2)};
    if (chance(4)) row.entryPeriodType = types[index(5)];
    if (!chance(5))
      row.createdTimestamp = Date::since1970(1.7e9 + 3600.0 * static_cast<double>(number(20)));
    if (chance(3)) row.createdTimeZone = chance(2) ? "Australia/Lord_Howe" : "Nowhere";
    return row;
  }

  std::mt19937 random_{20240307};
  YYYYMMDD base_;
};

/// What was found for the periods, by their first days.
using Found = std::map<YYYYMMDD, CompletionByPeriod>;

void keep(Found& found, const YYYYMMDD& key, const CompletionByPeriod& entry, bool isNegative) {
  const auto [stored, isNew] = found.emplace(key, entry);
  if (!isNew && isFullEntryBefore(entry.type, stored->second.type, isNegative))
    stored->second = entry;
}

bool isWithin(const TaskLogRow& row, const std::optional<TaskFrequencyPeriod>& first,
              const TaskFrequencyPeriod& last) {
  return (!first || row.entryDate >= first->startDate.intValue()) &&
         row.entryDate <= last.finishDate.intValue();
}

std::optional<TaskLogEntryPeriod> periodOf(const TaskLogRow& row) {
  return TaskLogEntryPeriod::fromStored(row.entryPeriodType, YYYYMMDD::fromRawValue(row.entryDate),
                                        YYYYMMDD::fromRawValue(row.entryPeriodFrom),
                                        YYYYMMDD::fromRawValue(row.entryPeriodTo));
}

CompletionByPeriod entryOf(const TaskLogRow& row, const TaskLogRules& rules) {
  const YYYYMMDD date = periodOf(row)->date;
  const auto made = TimeZone::fromIdentifier(row.createdTimeZone);
  const Date at = row.createdTimestamp.value_or(date.startOfDay(rules.startOfDay, rules.timeZone));
  return {row.type(), date, HHMMSS::fromDate(at, made.value_or(rules.timeZone))};
}

TaskLogSummary plainSummary(const Case& task) {
  const TaskLogRules& rules = task.rules;
  TaskLogSummary summary;
  summary.lastPeriod = rules.period(task.to);
  std::optional<TaskFrequencyPeriod> earliest, newest, oldest;
  if (task.from) earliest = std::min(rules.period(*task.from), summary.lastPeriod);
  Found found;
  for (const TaskLogRow& row : task.rows) {
    if (!isWithin(row, earliest, summary.lastPeriod) || !periodOf(row)) continue;
    const TaskFrequencyPeriod period = rules.period(periodOf(row)->date);
    if (!newest) newest = period;
    oldest = period;
    const bool counts =
        rules.isNegative ? isMissedFullOrPartial(row.type()) : isCompletedFullOrPartial(row.type());
    if (period == summary.lastPeriod && counts) ++summary.numLastPeriodEntries;
    if (isFull(row.type())) {
      keep(found, period.startDate, entryOf(row, rules), rules.isNegative);
    }
  }
  summary.firstPeriod = earliest ? *earliest : oldest.value_or(summary.lastPeriod);
  if (!oldest) return summary;
  for (TaskFrequencyPeriod p = *oldest; !(*newest < p); p = p.next(rules.timeZone)) {
    if (!found.contains(p.startDate)) continue;
    const auto& [type, date, time] = found.at(p.startDate);
    if (isCompletedFull(type)) summary.lastCompleted = Moment(date, time);
    if (isMissedFull(type)) summary.lastMissed = Moment(date, time);
    if (isAllowableMissFull(type)) summary.lastAllowableMiss = Moment(date, time);
    if (isSkipped(type)) summary.lastSkipped = Moment(date, time);
  }
  std::vector<std::int64_t> runs;
  std::int64_t run = 0;
  for (TaskFrequencyPeriod p = summary.lastPeriod; !(p < *oldest); p = p.previous(rules.timeZone)) {
    if (!found.contains(p.startDate)) continue;
    if (isCompletedFull(found.at(p.startDate).type)) ++run;
    if (isMissedFull(found.at(p.startDate).type) && run > 0) runs.push_back(std::exchange(run, 0));
  }
  if (run > 0) runs.push_back(run);
  const bool isBroken =
      !summary.lastCompleted ||
      (summary.lastMissed && summary.lastCompleted->first < summary.lastMissed->first);
  summary.streak = {isBroken || runs.empty() ? 0 : runs.front(),
                    runs.empty() ? 0 : std::ranges::max(runs)};
  return summary;
}

Found plainEntries(const Case& task, const std::optional<TaskFrequencyPeriod>& first,
                   const TaskFrequencyPeriod& last) {
  Found found;
  for (const TaskLogRow& row : task.rows) {
    if (!isWithin(row, first, last) || !isFull(row.type()) || !periodOf(row)) continue;
    keep(found, task.rules.period(periodOf(row)->date).startDate, entryOf(row, task.rules),
         task.rules.isNegative);
  }
  return found;
}

PreviousDaysSuccess plainRate(const Case& task, PreviousSuccessType type) {
  const TaskLogRules& rules = task.rules;
  const TaskFrequencyPeriod current = rules.period(rules.today());
  TaskFrequencyPeriod last = rules.period(std::min(rules.today(), task.to));
  if (last == current && !rules.isNegative &&
      !(task.lastCompleted && current.contains(*task.lastCompleted))) {
    last = last.previous(rules.timeZone);
  }
  constexpr std::int64_t counts[] = {7, 30, 5, 12};
  const bool isAllTime = type == PreviousSuccessType::allTime;
  const auto first = isAllTime ? rules.period(task.createdDay)
                               : last.add(1 - counts[static_cast<int>(type)], rules.timeZone);
  const Found found = plainEntries(task, first, last);
  double completed = 0, missed = 0, skipped = 0;
  for (TaskFrequencyPeriod p = first; !(last < p); p = p.next(rules.timeZone)) {
    if (!found.contains(p.startDate)) continue;
    const TaskLogEntryType entry = found.at(p.startDate).type;
    if (isCompletedFull(entry)) ++completed;
    if (isMissedFull(entry)) ++missed;
    if (isSkipped(entry) || entry == TaskLogEntryType::allowableMissManuallyFull) ++skipped;
  }
  if (rules.isNegative && !found.contains(last.startDate)) ++completed;
  const double counted = completed + missed;
  return {type, static_cast<std::int64_t>(counted + skipped),
          counted < 1 ? 0 : completed / counted};
}

SkipMode plainWillSkip(const Case& task, const TaskFrequencyPeriod& period) {
  const TimeZone zone = task.rules.timeZone;
  const auto days = [&](const TaskFrequencyPeriod& asked) {
    const auto type = periodTypeForCompletionCountCalculation(task.rules.frequency.dayMode);
    const auto whole =
        TaskFrequencyPeriod::fromDate(type, asked.startDate, asked.firstDayOfWeek, zone);
    std::map<std::int64_t, TaskLogEntryType> found;
    for (const TaskLogRow& row : task.rows) {
      if (!isWithin(row, whole, whole) || !isFull(row.type())) continue;
      const auto [stored, isNew] = found.emplace(row.entryDate, row.type());
      if (!isNew && isFullEntryBefore(row.type(), stored->second, task.rules.isNegative)) {
        stored->second = row.type();
      }
    }
    TaskFrequency::DaysInPeriodCallbackResponse response{.taskCreatedDate = task.createdDay};
    for (YYYYMMDD day = whole.startDate; day <= whole.finishDate; day = day.nextDay(zone)) {
      const auto entry = found.find(day.intValue());
      if (entry != found.end() && isCompletedFull(entry->second)) ++response.numUniqueCompletions;
    }
    return response;
  };
  const auto last = [&](const TaskFrequencyPeriod& asked) -> TaskFrequency::DayIntervalResponse {
    for (const TaskLogRow& row : task.rows) {
      if (row.entryDate <= asked.previous(zone).finishDate.intValue() &&
          isCompletedFull(row.type())) {
        const auto date = YYYYMMDD::fromRawValue(row.entryDate);
        if (date) return {task.rules.frequency.period(*date, asked.firstDayOfWeek, zone).period};
      }
    }
    return {};
  };
  return task.rules.frequency.shouldSkipPeriod({.period = period,
                                                .startOfDay = task.rules.startOfDay,
                                                .timeZone = zone,
                                                .daysInPeriodCallback = days,
                                                .dayIntervalCallback = last,
                                                .now = task.rules.now});
}

TEST(TaskLogSweep, FindsWhatAPlainWalkFinds) {
  Cases cases;
  for (int i = 0; i < 10000; ++i) {
    const Case task = cases.next();
    const TaskLogRules& rules = task.rules;
    const auto summary = TaskLogSummary::fromLog(
        task.rows, {.rules = rules,
                    .from = task.from,
                    .to = task.to,
                    .created = task.to.dateAt(rules.startOfDay, rules.startOfDay, rules.timeZone)});
    ASSERT_TRUE(summary == plainSummary(task)) << i << task.description();
    const auto type = allCases<PreviousSuccessType>()[static_cast<std::size_t>(i % 5)];
    const auto rate = PreviousDaysSuccess::fromLog(type, task.rows,
                                                   {.rules = rules,
                                                    .ref = std::min(rules.today(), task.to),
                                                    .createdDay = task.createdDay,
                                                    .lastCompleted = task.lastCompleted});
    ASSERT_TRUE(rate == plainRate(task, type)) << i << rawValue(type) << task.description();
    const TaskFrequencyPeriod period = rules.period(task.to);
    const SkipMode mode = willSkip(
        period,
        {.rules = rules,
         .createdDay = [&] { return task.createdDay; },
         .numUniqueCompletions =
             [&](YYYYMMDD from, YYYYMMDD to) {
               return NumUniqueCompletions::fromLog(task.rows, rules, from, to);
             },
         .lastCompletedDate = [&](YYYYMMDD day) { return lastCompletedDate(task.rows, day); }});
    ASSERT_EQ(mode, plainWillSkip(task, period)) << i << task.description();
  }
}

}  // namespace
}  // namespace velloro
