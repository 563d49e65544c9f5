#include "VelloroCore/Log/TaskLogWalk.h"

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

}  // namespace

std::optional<YYYYMMDD> TaskLogRow::date() const {
  const auto day = YYYYMMDD::fromRawValue(entryDate);
  if (!entryPeriodType || *entryPeriodType == TaskFrequencyPeriodType::day) return day;
  const auto period =
      TaskLogEntryPeriod::fromStored(entryPeriodType, day, YYYYMMDD::fromRawValue(entryPeriodFrom),
                                     YYYYMMDD::fromRawValue(entryPeriodTo));
  return period ? std::optional(period->date) : std::nullopt;
}

TaskLogEntryType TaskLogRow::type() const {
  const auto raw = static_cast<std::size_t>(entryType);
  return raw < typesByRawValue.size() ? typesByRawValue[raw] : TaskLogEntryType::unknown;
}

TimeZone TaskLogRow::timeZone(TimeZone otherwise) const {
  if (createdTimeZone.empty()) return otherwise;
  return TimeZone::fromIdentifier(createdTimeZone).value_or(otherwise);
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

PeriodEntry PeriodEntry::of(const YYYYMMDD& periodStart, std::ptrdiff_t row,
                            TaskLogEntryType type) {
  const auto& [y, m, d] = periodStart;
  return {.periodStart = periodStart.intValue(),
          .row = static_cast<std::uint32_t>(row),
          .type = type,
          .startsOnDayOfCalendar = isRealDay({.y = y, .m = m, .d = d}) ||
                                   YYYYMMDD::fromDayNumber(periodStart.dayNumber()) == periodStart};
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
    const auto date = isFull(type) ? row.date() : std::nullopt;
    if (!date) continue;
    const YYYYMMDD start = rules.startOfPeriod(*date);
    entries.add(PeriodEntry::of(start, &row - rows.data(), type));
  }
  return entries.take();
}

PeriodWalk PeriodWalk::forwards(const TaskFrequencyPeriod& from, TimeZone timeZone) {
  return {from, timeZone, true};
}

PeriodWalk PeriodWalk::backwards(const TaskFrequencyPeriod& from, TimeZone timeZone) {
  return {from, timeZone, false};
}

PeriodWalk::PeriodWalk(const TaskFrequencyPeriod& from, TimeZone timeZone, bool isForwards)
    : at_(from),
      timeZone_(timeZone),
      start_(from.startDate.intValue()),
      isForwards_(isForwards),
      canJump_(from.periodType != TaskFrequencyPeriodType::fortnight &&
               !timeZone.hasSkippedOrRepeatedDays()) {}

bool PeriodWalk::isAhead(std::int64_t periodStart) const {
  return isForwards_ ? periodStart > start_ : periodStart < start_;
}

void PeriodWalk::step() {
  at_ = isForwards_ ? at_.next(timeZone_) : at_.previous(timeZone_);
  start_ = at_.startDate.intValue();
  hasStepped_ = true;
}

bool PeriodWalk::comesTo(const PeriodEntry& entry) {
  while (isAhead(entry.periodStart)) {
    if (canJump_ && hasStepped_) {
      if (!entry.startsOnDayOfCalendar) return false;
      start_ = entry.periodStart;
    } else {
      step();
    }
  }
  return entry.periodStart == start_;
}

}  // namespace velloro
