#include "Foundation/TestEnvironment.h"
#include "OxDateTime/DateExtensions.h"
#include "OxDateTime/ThreadCalendar.h"

#include <tuple>

#include <gtest/gtest.h>

namespace velloro {
namespace {

Date at(const char* text) {
  return Date::fromISO8601(text).value();
}

TimeZone zone(const char* identifier) {
  return TimeZone::fromIdentifier(identifier).value();
}

HHMMSS time(std::int64_t hour, std::int64_t minute = 0, std::int64_t second = 0) {
  return {.h = hour, .m = minute, .s = second};
}

TEST(LogicalDay, OfAnInstant) {
  const std::tuple<HHMMSS, const char*, const char*, std::int64_t> cases[] = {
      {time(3), "2024-03-07T01:59:59Z", "Europe/Berlin", 20240306},
      {time(3), "2024-03-07T02:00:00Z", "Europe/Berlin", 20240307},
      {time(12), "2024-03-07T11:59:59Z", "GMT", 20240306},
      {time(12), "2024-03-07T12:00:00Z", "GMT", 20240307},
      {time(12, 0, 1), "2024-03-07T12:00:00Z", "GMT", 20240307},
      {time(12, 0, 1), "2024-03-07T12:00:01Z", "GMT", 20240308},
      {time(0), "2024-03-06T18:14:59Z", "Asia/Kathmandu", 20240306},
      {time(0), "2024-03-06T18:15:00Z", "Asia/Kathmandu", 20240307},
      // Far from the years that have an index.
      {time(0), "1492-10-12T12:00:00Z", "GMT", 14921012},
      {time(0), "2400-07-01T22:00:00Z", "Europe/Berlin", 24000702}};
  for (const auto& [startOfDay, instant, name, day] : cases) {
    EXPECT_EQ(YYYYMMDD::fromDate(startOfDay, at(instant), zone(name)).intValue(), day) << instant;
  }
}

TEST(LogicalDay, InstantOfATime) {
  const std::tuple<std::int64_t, HHMMSS, HHMMSS, const char*, const char*> cases[] = {
      {20240306, time(3), time(2), "GMT", "2024-03-07T02:00:00Z"},
      {20240307, time(18), time(19), "GMT", "2024-03-06T19:00:00Z"},
      {20240307, time(18), time(17), "GMT", "2024-03-07T17:00:00Z"},
      {20240306, time(0), time(30), "GMT",
       "2024-03-07T06:00:00Z"},  // no time of day: it carries on
      {25000101, time(0), time(0), "America/New_York", "2500-01-01T05:00:00Z"},
      {15000101, time(0), time(12), "GMT", "1500-01-01T12:00:00Z"}};
  for (const auto& [day, startOfDay, clock, name, instant] : cases) {
    const Date date = YYYYMMDD::fromRawValue(day)->dateAt(startOfDay, clock, zone(name));
    EXPECT_EQ(date.iso8601(), instant) << day;
  }
}

TEST(LogicalDay, LastsAsLongAsTheClockMakesIt) {
  const std::tuple<const char*, double> cases[] = {
      {"2024-03-30T20:00:00Z", 23}, {"2024-10-26T20:00:00Z", 25}, {"2024-06-01T20:00:00Z", 24}};
  for (const auto& [instant, hours] : cases) {
    const Date begin = startOfDay(at(instant), time(3), zone("Europe/Berlin"));
    const Date end = startOfNextDay(at(instant), time(3), zone("Europe/Berlin"));
    EXPECT_EQ(end.timeIntervalSince(begin), hours * 3600) << instant;
  }
}

TEST(LogicalDay, GoesByTheEnvironmentWhereNoZoneIsGiven) {
  TestEnvironment environment;
  environment.setTimeZone(zone("America/New_York"));
  environment.setNow(at("2024-03-08T06:30:00Z"));
  EXPECT_EQ(YYYYMMDD::today(time(2)).intValue(), 20240307);
  EXPECT_TRUE(isToday(at("2024-03-07T08:00:00Z"), time(2)));
  EXPECT_FALSE(isToday(at("2024-03-07T06:59:59Z"), time(2)));
  EXPECT_TRUE(isSameDayAs(at("2024-03-07T08:00:00Z"), time(2), at("2024-03-08T06:59:59Z")));
  EXPECT_EQ(YYYYMM::thisMonth(time(2)).intValue(), 202403);
  EXPECT_EQ(hhmmss(Date::now()), time(1, 30));
  EXPECT_EQ(dayOfWeek(Date::now(), currentThreadCalendar()), DayOfWeek::friday);
}

/// Samoa crossed the date line at the end of 29 December 2011: its 30th never was.
TEST(LogicalDay, FollowsAZoneThatSkippedADay) {
  TestEnvironment environment;
  environment.setTimeZone(zone("Pacific/Apia"));
  const YYYYMMDD before{.y = 2011, .m = 12, .d = 29};
  const YYYYMMDD after{.y = 2011, .m = 12, .d = 31};
  EXPECT_EQ(before.nextDay(), after);
  EXPECT_EQ(after.previousDay(), before);
  EXPECT_EQ(before.add(1), after);
  EXPECT_EQ(before.add(2).intValue(), 20120101);
  EXPECT_EQ(after.add(-1), before);
  EXPECT_EQ(before.distance(after), 1);
  EXPECT_EQ(after.distance(before), -1);
  EXPECT_EQ(before.dayOfWeek(), DayOfWeek::thursday);
  EXPECT_EQ(after.dayOfWeek(), DayOfWeek::saturday);
  // 01:00 on the 31st belongs to the logical day before, which is the 29th.
  EXPECT_EQ(YYYYMMDD::fromDate(time(3), at("2011-12-30T11:00:00Z")), before);
  EXPECT_EQ(before.dateAt(time(3), time(1)).iso8601(), "2011-12-30T11:00:00Z");
  environment.setTimeZone(zone("America/Juneau"));  // had 18 October 1867 twice
  YYYYMMDD day{.y = 1867, .m = 10, .d = 15};
  for (int i = 0; i < 6; ++i) day = day.nextDay();
  EXPECT_GE(day.intValue(), 18671020) << "a walk goes on";
}

}  // namespace
}  // namespace velloro
