#include "VelloroCore/TaskLogWalk.h"

#include <algorithm>
#include <array>

namespace velloro {
namespace {

/// By raw value, for a look-up per row of a log.
constexpr auto typesByRawValue = [] {
  std::array<TaskLogEntryType, allCases<TaskLogEntryType>().size()> types{};
  for (std::size_t raw = 0; raw < types.size(); ++raw) {
    types[raw] = fromRawValue<TaskLogEntryType>(static_cast<std::int64_t>(raw)).value();
  }
  return types;
}();

/// Whether the calendar has the day under this name: 20240230 is 1 March.
bool isDayOfCalendar(std::int64_t value) {
  const std::int64_t month = value / 100 % 100;
  const std::int64_t day = value % 100;
  if (day >= 1 && day <= 28 && month >= 1 && month <= 12) [[likely]]
    return true;
  const auto date = YYYYMMDD::fromRawValue(value);
  return date && YYYYMMDD::fromDayNumber(date->dayNumber()) == *date;
}

}  // namespace

std::optional<TaskLogEntryPeriod> TaskLogRow::period() const {
  if (!entryPeriodType || entryPeriodType == TaskFrequencyPeriodType::day) {  // has no other ends
    return TaskLogEntryPeriod::fromStored(entryPeriodType, YYYYMMDD::fromRawValue(entryDate),
                                          std::nullopt, std::nullopt);
  }
  return TaskLogEntryPeriod::fromStored(entryPeriodType, YYYYMMDD::fromRawValue(entryDate),
                                        YYYYMMDD::fromRawValue(entryPeriodFrom),
                                        YYYYMMDD::fromRawValue(entryPeriodTo));
}

TaskLogEntryType TaskLogRow::type() const {
  const auto raw = static_cast<std::size_t>(entryType);
  return raw < typesByRawValue.size() ? typesByRawValue[raw] : TaskLogEntryType::unknown;
}

TaskLogRows rowsWithin(TaskLogRows rows, const YYYYMMDD::Range& dates) {
  const auto isBehind = [&](const TaskLogRow& row) {
    return dates.maxDate && row.entryDate > dates.maxDate->intValue();
  };
  const auto isNotBefore = [&](const TaskLogRow& row) {
    return !dates.minDate || row.entryDate >= dates.minDate->intValue();
  };
  const auto first = std::ranges::partition_point(rows, isBehind);
  return {first, std::partition_point(first, rows.end(), isNotBefore)};
}

void PeriodEntries::add(const PeriodEntry& entry) {
  if (entries_.empty() || entry.periodStart < entries_.back().periodStart) [[likely]] {
    entries_.push_back(entry);
  } else {
    join(entry);
  }
}

void PeriodEntries::join(const PeriodEntry& entry) {
  PeriodEntry& last = entries_.back();
  if (entry.periodStart != last.periodStart) {
    isSorted_ = false;
    entries_.push_back(entry);
  } else if (isFullEntryBefore(entry.type, last.type, isNegative_)) {
    last = entry;
  }
}

std::vector<PeriodEntry> PeriodEntries::take() {
  if (!isSorted_) {
    auto unsorted = std::move(entries_);
    std::ranges::stable_sort(unsorted, std::greater(), &PeriodEntry::periodStart);
    entries_.clear();
    for (const PeriodEntry& entry : unsorted) add(entry);
    isSorted_ = true;
  }
  return std::move(entries_);
}

std::vector<PeriodEntry> fullEntriesByPeriod(TaskLogRows rows, const TaskLogRules& rules,
                                             const YYYYMMDD::Range& dates) {
  PeriodEntries entries(rules.isNegative);
  for (const TaskLogRow& row : rowsWithin(rows, dates)) {
    const TaskLogEntryType type = row.type();
    const auto period = isFull(type) ? row.period() : std::nullopt;
    if (!period) continue;
    const YYYYMMDD start = rules.frequency.startOfPeriod(period->date, rules.firstDayOfWeek);
    entries.add({.periodStart = start.intValue(),
                 .row = static_cast<std::uint32_t>(&row - rows.data()),
                 .type = type});
  }
  return entries.take();
}

PeriodWalk PeriodWalk::forwards(const TaskFrequencyPeriod& from) {
  return {from, true};
}

PeriodWalk PeriodWalk::backwards(const TaskFrequencyPeriod& from) {
  return {from, false};
}

PeriodWalk::PeriodWalk(const TaskFrequencyPeriod& from, bool isForwards)
    : at_(from),
      start_(from.startDate.intValue()),
      isForwards_(isForwards),
      canJump_(from.periodType != TaskFrequencyPeriodType::fortnight &&
               !TimeZone::current().hasSkippedOrRepeatedDays()) {}

bool PeriodWalk::isAhead(std::int64_t periodStart) const {
  return isForwards_ ? periodStart > start_ : periodStart < start_;
}

void PeriodWalk::step() {
  at_ = isForwards_ ? at_.next() : at_.previous();
  start_ = at_.startDate.intValue();
  hasStepped_ = true;
}

bool PeriodWalk::comesTo(std::int64_t periodStart) {
  while (isAhead(periodStart)) {
    if (canJump_ && hasStepped_) {
      if (!isDayOfCalendar(periodStart)) return false;
      start_ = periodStart;
    } else {
      step();
    }
  }
  return periodStart == start_;
}

}  // namespace velloro
