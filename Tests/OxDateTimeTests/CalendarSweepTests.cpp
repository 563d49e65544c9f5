#include "Foundation/Process/VirtualEnvironment.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxDateTimeTests/CalendarOracle.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

constexpr std::int64_t start2020 = 1577836800;
constexpr std::int64_t start2031 = 1924992000;
/// Starts of day on both sides of noon, and inside and at the ends of the hours that clocks change.
constexpr std::int64_t startsOfDay[] = {0,     3600,  7200,  9000,  10800, 43200,
                                        43201, 64800, 82800, 84600, 86399};

YYYYMMDD day(std::int64_t value) {
  return YYYYMMDD::fromRawValue(value).value();
}

TEST(CalendarSweep, DayArithmeticFrom1600To2400) {
  const Calendar calendar(TimeZone::gmt());
  CalendarOracle oracle("Etc/UTC");
  std::int64_t far = 20000101;
  std::int64_t expected = 16000101;
  for (YYYYMMDD today = day(16000101); today < day(24000101); today = today.nextDay({})) {
    const std::int64_t value = today.intValue();
    ASSERT_EQ(value, expected);
    ASSERT_EQ(static_cast<int>(today.dayOfWeek({})), oracle.weekday(value)) << value;
    expected = oracle.add(value, 1);
    ASSERT_EQ(day(expected).previousDay({}).intValue(), value);
    ASSERT_EQ(today.nextDayUsingCalendar(calendar).intValue(), expected);
    if (value % 7 != 0) continue;
    ASSERT_EQ(today.distance(day(far)), oracle.distance(value, far)) << value << " to " << far;
    const int days = static_cast<int>(value / 7 % 61) - 30;
    ASSERT_EQ(today.add(days, {}).intValue(), oracle.add(value, days)) << value << " " << days;
    ASSERT_EQ(today.yyyymm().numberOfDays(), oracle.numberOfDaysInMonth(value)) << value;
    far = value;
  }
}

/// The days and times on which something can go wrong: around each clock change of a zone.
std::vector<std::int64_t> instantsRoundChanges(const CalendarOracle& oracle) {
  std::vector<std::int64_t> instants;
  for (const std::int64_t change : oracle.changes(start2020, start2031)) {
    for (std::int64_t place = -30 * 3600; place <= 30 * 3600; place += 1800) {
      instants.push_back(change + place);
      if (place % 3600 == 0) instants.push_back(change + place - 1);
    }
  }
  return instants;
}

/// The logical day by its definition, from the clock's reading and the oracle's days.
std::int64_t logicalDay(CalendarOracle& oracle, CalendarOracle::Reading clock, std::int64_t start) {
  if (start <= 43200 && clock.secondOfDay < start) return oracle.add(clock.day, -1);
  if (start > 43200 && clock.secondOfDay >= start) return oracle.add(clock.day, 1);
  return clock.day;
}

void compareLogicalDays(const TimeZone& zone, CalendarOracle& oracle) {
  for (const std::int64_t instant : instantsRoundChanges(oracle)) {
    const Date date = Date::since1970(static_cast<double>(instant));
    const auto reading = oracle.read(instant);
    for (const std::int64_t start : startsOfDay) {
      const auto startOfDay = HHMMSS::fromRawValue(start).value();
      ASSERT_EQ(YYYYMMDD::fromDate(startOfDay, date, zone).intValue(),
                logicalDay(oracle, reading, start))
          << zone.identifier() << " " << date.iso8601() << " day starts at " << start;
    }
  }
}

void compareInstants(const TimeZone& zone, CalendarOracle& oracle) {
  for (const std::int64_t change : oracle.changes(start2020, start2031)) {
    const std::int64_t changeDay = oracle.read(change).day;
    for (std::int64_t time = 0; time < 86400; time += 1800) {
      const std::int64_t start = startsOfDay[static_cast<std::size_t>((change + time) / 900) % 11];
      const std::int64_t named = oracle.add(changeDay, static_cast<int>(time / 1800 % 3) - 1);
      const int daysOn = start <= 43200 ? (time < start ? 1 : 0) : (time >= start ? -1 : 0);
      const Date date = day(named).dateAt(HHMMSS::fromRawValue(start).value(),
                                          HHMMSS::fromRawValue(time).value(), zone);
      ASSERT_EQ(date.secondsSince1970(), oracle.instant(named, time, daysOn))
          << zone.identifier() << " " << named << " at " << time << " day starts at " << start;
    }
  }
}

TEST(CalendarSweep, LogicalDayAndItsInverseRoundAllClockChangesOf2020To2030) {
  VirtualEnvironment environment;
  const auto zones = TimeZone::knownTimeZoneIdentifiers();
  ASSERT_GT(zones.size(), 300u);
  for (const std::string& identifier : zones) {
    const TimeZone zone = TimeZone::fromIdentifier(identifier).value();
    CalendarOracle oracle(identifier);
    compareLogicalDays(zone, oracle);
    compareInstants(zone, oracle);
    if (testing::Test::HasFatalFailure()) return;
  }
}

/// Offsets of all zones at and around every change in their history, the odd ones of the 19th
/// century and the jumps over the date line included.
TEST(CalendarSweep, OffsetsAtEveryChangeInHistory) {
  std::size_t changes = 0;
  for (const std::string& identifier : TimeZone::knownTimeZoneIdentifiers()) {
    const TimeZone zone = TimeZone::fromIdentifier(identifier).value();
    const CalendarOracle oracle(identifier);
    for (const std::int64_t change : CalendarOracle::changes(-5000000000, 2145916800)) {
      ++changes;
      for (const std::int64_t instant : {change - 1, change, change + 86400 * 11}) {
        ASSERT_EQ(zone.offsetAt(instant), CalendarOracle::read(instant).offset)
            << identifier << " " << instant;
      }
    }
  }
  EXPECT_GT(changes, 30000U);
}

}  // namespace
}  // namespace velloro
