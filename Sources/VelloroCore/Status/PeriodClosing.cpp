#include "VelloroCore/Status/PeriodClosing.h"

#include "VelloroCore/Log/LogEntryRules.h"
#include "VelloroCore/Status/TaskLogCounts.h"

#include <algorithm>
#include <ranges>

namespace velloro {
namespace {

using Type = TaskLogEntryType;

/// What the periods of a log have reached, and which of them are settled, by their first days.
class OpenPeriods {
 public:
  OpenPeriods(TaskLogRows rows, const TaskLogRules& rules)
      : rules_(rules), settled_(fullEntriesByPeriod(rows, rules, {})) {
    for (const TaskLogRow& row : rows) {
      const double amount = LogStep{row.type(), row.progress}.counted(rules.isNegative);
      const auto date = amount != 0 ? row.date() : std::nullopt;
      if (date) amounts_.emplace_back(startOf(*date), amount);
    }
    std::ranges::stable_sort(amounts_, {}, &Amount::first);
  }

  [[nodiscard]] bool isOpen(const TaskFrequencyPeriod& period) const {
    const std::int64_t start = period.startDate.intValue();
    const auto entry =
        std::ranges::lower_bound(settled_, start, std::greater(), &PeriodEntry::periodStart);
    return entry == settled_.end() || entry->periodStart != start;
  }
  [[nodiscard]] double total(const TaskFrequencyPeriod& period) const {
    double sum = 0;
    const auto range =
        std::ranges::equal_range(amounts_, period.startDate.intValue(), {}, &Amount::first);
    for (const auto& [start, amount] : range) sum += amount;
    return sum;
  }

 private:
  using Amount = std::pair<std::int64_t, double>;

  [[nodiscard]] std::int64_t startOf(YYYYMMDD date) const {
    return rules_.startOfPeriod(date).intValue();
  }

  const TaskLogRules& rules_;
  std::vector<PeriodEntry> settled_;  // the newest first
  std::vector<Amount> amounts_;
};

/// What the skip mode of a period depends on, in a log that grows by closings from the oldest on.
class CompletedDays {
 public:
  CompletedDays(TaskLogRows rows, const TaskLogRules& rules) : rows_(rows), rules_(rules) {}

  void add(const PeriodClosing& closing) {
    if (isCompletedFull(closing.type)) closed_.push_back(closing.date);
  }
  /// Of the log alone, the count of one stretch is asked for again and again.
  [[nodiscard]] NumUniqueCompletions count(YYYYMMDD from, YYYYMMDD to) {
    const YYYYMMDD::Range dates{.minDate = from, .maxDate = to};
    if (counted_ != dates) {
      counted_ = dates;
      inLog_ = NumUniqueCompletions::fromLog(rows_, rules_, from, to);
    }
    auto sum = inLog_;
    sum.count += std::ranges::upper_bound(closed_, to) - std::ranges::lower_bound(closed_, from);
    return sum;
  }
  [[nodiscard]] std::optional<YYYYMMDD> last(YYYYMMDD onOrBefore) const {
    const auto inLog = lastCompletedDate(rows_, onOrBefore);
    const auto behind = std::ranges::upper_bound(closed_, onOrBefore);
    return behind == closed_.begin() ? inLog : std::max(inLog, std::optional(*(behind - 1)));
  }

 private:
  TaskLogRows rows_;
  const TaskLogRules& rules_;
  std::vector<YYYYMMDD> closed_;
  std::optional<YYYYMMDD::Range> counted_;
  NumUniqueCompletions inLog_;
};

YYYYMMDD closingDay(const TaskFrequencyPeriod& period, const TaskLogRules& rules) {
  for (YYYYMMDD day = period.finishDate; period.startDate < day;
       day = day.add(-1, rules.timeZone)) {
    if (rules.period(day) == period) return day;
  }
  return period.startDate;
}

}  // namespace

TaskLogRow PeriodClosing::row(Date at) const {
  return {.entryDate = static_cast<std::int32_t>(date.intValue()),
          .entryPeriodFrom = static_cast<std::int32_t>(period.startDate.intValue()),
          .entryPeriodTo = static_cast<std::int32_t>(period.finishDate.intValue()),
          .entryType = static_cast<std::int16_t>(rawValue(type)),
          .entryPeriodType = period.periodType,
          .progressTotal = total,
          .createdTimestamp = at};
}

Type closingType(SkipMode willSkip, bool isNegative) {
  if (isSkip(willSkip)) return Type::skippedAutomaticallyFull;
  return isNegative ? Type::completedAutomaticallyFull : Type::missedAutomaticallyFull;
}

UniqueID closingEntryID(const UniqueID& task, YYYYMMDD periodStart) {
  UUID::Bytes bytes = task.uuid.bytes();
  auto day = static_cast<std::uint32_t>(periodStart.intValue());
  for (std::size_t i = bytes.size(); day != 0; day >>= 8) {
    bytes[--i] ^= static_cast<std::uint8_t>(day);
  }
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x80);  // version 8: a form of our own
  return {UUID(bytes)};
}

/// The fortnight of a Saturday may overlap those of the days around it. Its `next` is of those that
/// follow one another, and so is the one before that: one of the two holds the day.
TaskFrequencyPeriod PeriodClosings::firstPeriod() const {
  const YYYYMMDD from = std::max(since, createdDay);
  const TaskFrequencyPeriod period = rules.period(from);
  const TaskFrequencyPeriod next = period.next(rules.timeZone);
  if (period.endsBefore(next.startDate)) return period;
  if (!next.startsAfter(from)) return next;
  return rules.period(next.startDate.add(-next.numberOfDays(rules.timeZone), rules.timeZone));
}

YYYYMMDD PeriodClosings::firstDay() const {
  const YYYYMMDD start = firstPeriod().startDate;
  const DayMode mode = rules.frequency.dayMode;
  if (mode == DayMode::dayInterval)
    return start.add(-TaskFrequency::dailyCompletionMaxIntervalDays, rules.timeZone);
  const auto counted = periodTypeForCompletionCountCalculation(mode);
  if (counted == TaskFrequencyPeriodType::fortnight) return start.add(-14, rules.timeZone);
  return std::min(start, firstDate(counted, start, rules.firstDayOfWeek, rules.timeZone));
}

std::vector<PeriodClosing> PeriodClosings::fromLog(TaskLogRows rows) const {
  const OpenPeriods periods(rows, rules);
  CompletedDays completed(rows, rules);
  const auto createdOn = [&] { return createdDay; };
  const auto count = [&](YYYYMMDD from, YYYYMMDD to) { return completed.count(from, to); };
  const auto last = [&](YYYYMMDD day) { return completed.last(day); };
  const WillSkipQuestion question{.rules = rules,
                                  .status = status,
                                  .shareStatus = shareStatus,
                                  .createdDay = createdOn,
                                  .numUniqueCompletions = count,
                                  .lastCompletedDate = last};
  const YYYYMMDD today = rules.today();
  std::vector<PeriodClosing> closings;
  for (auto period = firstPeriod(); period.endsBefore(today);
       period = period.next(rules.timeZone)) {
    if (!periods.isOpen(period)) continue;
    closings.push_back({.period = period,
                        .date = closingDay(period, rules),
                        .type = closingType(willSkip(period, question), rules.isNegative),
                        .total = periods.total(period)});
    completed.add(closings.back());
  }
  return closings;
}

std::optional<TaskTemporalData> afterClosing(const TaskTemporalData& before, TaskLogRows rows,
                                             const TaskLogRules& rules,
                                             const std::vector<PeriodClosing>& closings) {
  if (closings.empty()) return before;
  const TaskFrequencyPeriod& first = closings.front().period;
  if (first.periodType == TaskFrequencyPeriodType::fortnight ||
      rules.timeZone.hasSkippedOrRepeatedDays()) {
    return std::nullopt;
  }
  const auto entries = fullEntriesByPeriod(rows, rules, {});
  if (!entries.empty() && entries.front().periodStart > first.startDate.intValue()) {
    return std::nullopt;
  }
  TaskTemporalData after = before;
  for (const PeriodClosing& closing : closings) {
    auto& last = isSkipped(closing.type)         ? after.lastSkipped
                 : isCompletedFull(closing.type) ? after.lastCompleted
                                                 : after.lastMissed;
    last = std::max(last, std::optional(closing.date));
    if (isCompletedFull(closing.type)) after.streak = after.streak.increment();
    if (isMissedFull(closing.type)) after.streak = after.streak.reset();
  }
  return after;
}

}  // namespace velloro
