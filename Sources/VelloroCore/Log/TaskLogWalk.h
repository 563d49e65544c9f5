#pragma once

#include "Foundation/Time/Date.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Log/TaskLogEntryPeriod.h"
#include "VelloroCore/Log/TaskLogEntryType.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace velloro {

/// One row of a task's log, as it is stored. Days are `YYYYMMDD::intValue`, 0 for none.
struct TaskLogRow {
  std::int32_t entryDate = 0;
  std::int32_t entryPeriodFrom = 0;
  std::int32_t entryPeriodTo = 0;
  std::int16_t entryType = 0;  ///< Raw value of `TaskLogEntryType`.
  std::optional<TaskFrequencyPeriodType> entryPeriodType = {};
  double progress = 0;       ///< The entry's own amount.
  double progressTotal = 0;  ///< The period's amount up to and with this entry.
  std::optional<Date> createdTimestamp = {};
  /// Identifier; empty for none. What it refers to must outlive the row.
  std::string_view createdTimeZone = {};

  /// The day on which the entry stands, of its `TaskLogEntryPeriod`; absent without either.
  [[nodiscard]] std::optional<YYYYMMDD> date() const;
  /// A number that no type has is `unknown`.
  [[nodiscard]] TaskLogEntryType type() const;
  /// In which it was made; the given one where that is absent or unknown.
  [[nodiscard]] TimeZone timeZone(TimeZone otherwise) const;
};

/// A task's log, in the order of a fetch: by `entryDate`, then by `createdTimestamp`, the newest
/// row first.
using TaskLogRows = std::span<const TaskLogRow>;

/// The rows whose `entryDate` lies in a range of days; an absent bound is open.
[[nodiscard]] TaskLogRows rowsWithin(TaskLogRows rows, const YYYYMMDD::Range& dates);

/// The rules by which a task's log is read: to which period of the current frequency an entry
/// belongs, which of several entries decides its period, and which day is today.
struct TaskLogRules {
  TaskFrequency frequency = {};
  HHMMSS startOfDay = HHMMSS::midnight;
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
  TimeZone timeZone = TimeZone::gmt();  ///< The task's current one.
  bool isNegative = false;
  Date now;

  [[nodiscard]] TaskFrequencyPeriod period(YYYYMMDD date) const {
    return frequency.period(date, firstDayOfWeek, timeZone).period;
  }
  [[nodiscard]] YYYYMMDD startOfPeriod(YYYYMMDD date) const {
    return frequency.startOfPeriod(date, firstDayOfWeek, timeZone);
  }
  [[nodiscard]] YYYYMMDD today() const { return YYYYMMDD::today(startOfDay, timeZone, now); }
};

/// The full entry that decides a period.
struct PeriodEntry {
  std::int64_t periodStart = 0;  ///< `YYYYMMDD::intValue` of the period's first day.
  std::uint32_t row = 0;         ///< Its place among the rows.
  TaskLogEntryType type = TaskLogEntryType::unknown;
  /// Whether the calendar has that first day under its name: 20240230 is 1 March.
  bool startsOnDayOfCalendar = false;

  [[nodiscard]] static PeriodEntry of(const YYYYMMDD& periodStart, std::ptrdiff_t row,
                                      TaskLogEntryType type);
};

/// Collects the full entries of a log. They are added from the newest row to the oldest. Keeps one
/// for each period; of several that are as good, the one of the oldest row.
class PeriodEntries {
 public:
  explicit PeriodEntries(bool isNegative) : isNegative_(isNegative) {}

  void reserve(std::size_t numRows) { entries_.reserve(numRows); }
  void add(const PeriodEntry& entry);
  /// One entry a period, the newest period first.
  [[nodiscard]] std::vector<PeriodEntry> take();

 private:
  void join(const PeriodEntry& entry);

  bool isNegative_;
  bool isSorted_ = true;
  std::vector<PeriodEntry> entries_;
};

/// The entries that decide the periods of the rows within a range of days.
[[nodiscard]] std::vector<PeriodEntry> fullEntriesByPeriod(TaskLogRows rows,
                                                           const TaskLogRules& rules,
                                                           const YYYYMMDD::Range& dates);

/// A walk from period to period, which skips the periods that are not asked for. Entries must be
/// passed in the order of the walk; the answer is whether it reaches the period of the entry, and
/// no for a period that it has passed.
///
/// The walk does not reach every period of a log: a date that is none of the calendar begins none,
/// a zone that skipped a day has no period on it, and fortnights of neighbouring days overlap.
class PeriodWalk {
 public:
  [[nodiscard]] static PeriodWalk forwards(const TaskFrequencyPeriod& from, TimeZone timeZone);
  [[nodiscard]] static PeriodWalk backwards(const TaskFrequencyPeriod& from, TimeZone timeZone);

  [[nodiscard]] bool comesTo(const PeriodEntry& entry);

 private:
  PeriodWalk(const TaskFrequencyPeriod& from, TimeZone timeZone, bool isForwards);

  [[nodiscard]] bool isAhead(std::int64_t periodStart) const;
  void step();

  TaskFrequencyPeriod at_;
  TimeZone timeZone_;
  std::int64_t start_;
  bool isForwards_;
  bool canJump_;  ///< From one period to any other; the first step has to be taken, though.
  bool hasStepped_ = false;
};

}  // namespace velloro
