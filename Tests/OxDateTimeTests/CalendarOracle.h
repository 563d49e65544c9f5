#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <unicode/gregocal.h>

namespace velloro {

/// ICU's calendar, which shares no code with ours: proleptic Gregorian, skipped local times moved
/// forward by the gap, repeated ones taken the first time. Its zone rules are read from the
/// system's zone files directly, since ICU's own may be of another year.
class CalendarOracle {
 public:
  explicit CalendarOracle(const std::string& zone);

  /// The day that lies `days` after a day, by way of noon.
  std::int64_t add(std::int64_t day, int days);
  /// 0 is Sunday.
  int weekday(std::int64_t day);
  int distance(std::int64_t from, std::int64_t to);
  int numberOfDaysInMonth(std::int64_t day);

  struct Reading {
    std::int64_t day;
    std::int64_t secondOfDay;
  };
  /// What the clock shows at a UTC second.
  Reading read(std::int64_t utcSeconds);
  /// The UTC second of a time of the clock on a day, moved on by calendar days.
  std::int64_t instant(std::int64_t day, std::int64_t secondOfDay, int daysOn);

  /// The UTC seconds at which the zone's clocks change between two instants.
  std::vector<std::int64_t> changes(std::int64_t from, std::int64_t to) const;

 private:
  void set(std::int64_t day, std::int64_t secondOfDay);
  std::int64_t day() const;

  std::vector<std::int64_t> changes_;
  std::unique_ptr<icu::GregorianCalendar> calendar_;
};

}  // namespace velloro
