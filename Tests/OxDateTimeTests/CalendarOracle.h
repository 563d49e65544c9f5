#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <unicode/gregocal.h>

namespace velloro {

/// Days by ICU's calendar, proleptic Gregorian, and a zone's clock by the C library, which reads
/// the system's zone files (ICU's own zones may be of another year). Neither shares code with ours.
/// The zone is the process's for as long as the oracle lives.
class CalendarOracle {
 public:
  explicit CalendarOracle(const std::string& zone);
  ~CalendarOracle();
  CalendarOracle(const CalendarOracle&) = delete;
  CalendarOracle& operator=(const CalendarOracle&) = delete;

  /// The day that lies `days` after a day.
  std::int64_t add(std::int64_t day, int days);
  /// 0 is Sunday.
  int weekday(std::int64_t day);
  int distance(std::int64_t from, std::int64_t to);
  int numberOfDaysInMonth(std::int64_t day);

  struct Reading {
    std::int64_t day;
    std::int64_t secondOfDay;
    std::int64_t offset;  ///< Seconds east of Greenwich.
  };
  /// What the clock shows at a UTC second.
  static Reading read(std::int64_t utcSeconds);
  /// The UTC second of a time of the clock on a day, moved on by calendar days. Skipped times move
  /// forward by the gap, of repeated ones the first counts.
  std::int64_t instant(std::int64_t day, std::int64_t secondOfDay, int daysOn);

  /// The UTC seconds at which the zone's clocks change between two instants, but for changes that
  /// are taken back within a week.
  static std::vector<std::int64_t> changes(std::int64_t from, std::int64_t to);

 private:
  icu::GregorianCalendar& at(std::int64_t day, std::int64_t secondOfDay = 0);
  std::int64_t instantShowing(std::int64_t day, std::int64_t secondOfDay);

  UErrorCode status_ = U_ZERO_ERROR;
  icu::GregorianCalendar calendar_;
};

}  // namespace velloro
