// Times of day, and the days that begin at one of them.

#include "OxDateTime/DateExtensions.h"
#include "OxDateTime/ThreadCalendar.h"

#include <array>
#include <cmath>
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

constexpr std::optional<HHMMSS> absent;

TEST(HHMMSS, ReadsSeconds) {
  EXPECT_FALSE(HHMMSS::fromRawValue(-1));
  EXPECT_FALSE(HHMMSS::fromRawValue(86400));
  EXPECT_EQ(HHMMSS::fromRawValue(86399)->debugDescription(), "23:59:59");
  EXPECT_TRUE(HHMMSS::fromRawValue(0)->isMidnight());
}

TEST(HHMMSS, Adds) {
  EXPECT_EQ(time(23, 30).add(time(1), false), absent);
  EXPECT_EQ(time(23, 30).add(time(1), true), time(0, 30));
  EXPECT_EQ(time(0, 30).add(time(-1), true), time(23, 30));
  EXPECT_EQ(time(0, 30).add(time(-49), true), time(23, 30));
  EXPECT_EQ(time(0, 30).add(-1801.0, false), absent);
  EXPECT_EQ(time(0, 30).add(-1800.9, false), time(0)) << "the fraction is cut off";
  EXPECT_EQ(time(1).add(std::nan(""), true), time(1));
  // Fields that were read from elsewhere can be any numbers.
  const HHMMSS latest{.s = INT64_MAX}, earliest{.s = INT64_MIN};
  EXPECT_EQ(latest.add(latest, false), absent);
  EXPECT_EQ(latest.add(latest, true), time(7, 0, 14));
  EXPECT_FALSE(latest.isWithin(1e9, earliest, true));
  EXPECT_EQ(median(std::array{latest, latest}), latest);
  EXPECT_EQ(earliest.occurrences(Date(), Date() + 86400, TimeZone::gmt()).size(), 1U);
  EXPECT_TRUE(time(10).isWithin(2, time(12), true));
  EXPECT_FALSE(time(10).isWithin(2, time(12), false));
  EXPECT_FALSE(time(23).isWithin(2, time(0), true)) << "the way past midnight does not count";
}

TEST(HHMMSS, RoundsToAnInterval) {
  const std::tuple<HHMMSS, double, HHMMSS> cases[] = {
      {time(10, 7, 29), 900, time(10)},       {time(10, 7, 30), 900, time(10, 15)},
      {time(23, 59), 900, time(23, 45)},      {time(10, 15), 900, time(10, 15)},
      {time(23, 59, 59), 1e9, time(0)},       {time(10, 7, 29), 1, time(10, 7, 29)},
      {time(10, 7, 29), 0.5, time(10, 7, 29)}};
  for (const auto& [from, interval, to] : cases) {
    EXPECT_EQ(from.roundToNearestInterval(interval), to) << interval;
  }
}

TEST(HHMMSS, ComesBeforeOthersInADayThatBeginsLate) {
  EXPECT_TRUE(time(23).isBefore(time(3), time(4)) && time(5).isBefore(time(5), time(4)));
  EXPECT_TRUE(time(1).isBefore(time(2), time(4)) && time(4).isBefore(time(3), time(4)));
  EXPECT_FALSE(time(3).isBefore(time(23), time(4)) || time(6).isBefore(time(5), time(4)));
  const HHMMSS three[] = {time(9), time(23), time(7)};
  const HHMMSS even[] = {time(9), time(7, 0, 1)};
  EXPECT_EQ(median(three), time(9));
  EXPECT_EQ(median(even), time(8)) << "half a second is cut off";
  EXPECT_EQ(median({}), absent);
}

TEST(HHMMSS, FindsItsNextOccurrence) {
  const TimeZone berlin = zone("Europe/Berlin");
  const std::tuple<HHMMSS, const char*, const char*> cases[] = {
      {time(9), "2024-03-07T08:00:00Z", "2024-03-07T08:00:00Z"},
      {time(9), "2024-03-07T08:00:01Z", "2024-03-08T08:00:00Z"},
      {time(9), "2024-03-30T12:00:00Z", "2024-03-31T07:00:00Z"},
      {time(2, 30), "2024-03-31T00:00:00Z", "2024-03-31T01:30:00Z"},
      {time(2, 30), "2024-03-31T02:00:00Z", "2024-04-01T00:30:00Z"},  // back in its place
      {time(2, 30), "2024-10-27T00:45:00Z", "2024-10-28T01:30:00Z"},  // the second pass is none
  };
  for (const auto& [clock, from, next] : cases) {
    EXPECT_EQ(clock.nextOccurrence(at(from), berlin).iso8601(), next) << from;
  }
}

TEST(HHMMSS, ListsItsOccurrences) {
  const TimeZone berlin = zone("Europe/Berlin");
  std::vector<std::string> texts;
  const Date to = at("2024-04-02T00:30:00Z");
  for (const Date date : time(2, 30).occurrences(at("2024-03-30T00:00:00Z"), to, berlin)) {
    texts.push_back(date.iso8601());
  }
  // The skipped one moves on by the gap and the next is in its place again; the end is left out.
  EXPECT_EQ(texts, (std::vector<std::string>{"2024-03-30T01:30:00Z", "2024-03-31T01:30:00Z",
                                             "2024-04-01T00:30:00Z"}));
  EXPECT_TRUE(time(9).occurrences(to, to, berlin).empty());
  const Date far = Date::sinceReferenceDate(1e300);
  EXPECT_GT(time(9).nextOccurrence(far, berlin), Date::distantFuture()) << "and comes to an end";
  EXPECT_TRUE(time(9).occurrences(Date::distantFuture(), far, berlin).empty());
}

TEST(LogicalDay, OfAnInstant) {
  const std::tuple<HHMMSS, const char*, const char*, std::int64_t> cases[] = {
      {time(3), "2024-03-07T01:59:59Z", "Europe/Berlin", 20240306},
      {time(3), "2024-03-07T02:00:00Z", "Europe/Berlin", 20240307},
      {time(12), "2024-03-07T11:59:59Z", "GMT", 20240306},
      {time(12), "2024-03-07T12:00:00Z", "GMT", 20240307},
      {time(12, 0, 1), "2024-03-07T12:00:00Z", "GMT", 20240307},
      {time(12, 0, 1), "2024-03-07T12:00:01Z", "GMT", 20240308},
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

TEST(LogicalDay, IsTodayByTheGivenInstantAndZone) {
  const TimeZone newYork = zone("America/New_York");
  const Date now = at("2024-03-08T06:30:00Z");
  EXPECT_EQ(YYYYMMDD::today(time(2), newYork, now).intValue(), 20240307);
  EXPECT_TRUE(isToday(at("2024-03-07T08:00:00Z"), time(2), newYork, now));
  EXPECT_FALSE(isToday(at("2024-03-07T06:59:59Z"), time(2), newYork, now));
  EXPECT_EQ(YYYYMM::thisMonth(time(2), newYork, now).intValue(), 202403);
  EXPECT_EQ(HHMMSS::now(newYork, now), time(1, 30));
  EXPECT_EQ(dayOfWeek(now, currentThreadCalendar(newYork)), DayOfWeek::friday);
}

/// Samoa crossed the date line at the end of 29 December 2011: its 30th never was.
TEST(LogicalDay, FollowsAZoneThatSkippedADay) {
  const TimeZone apia = zone("Pacific/Apia");
  const YYYYMMDD before{.y = 2011, .m = 12, .d = 29};
  const YYYYMMDD after{.y = 2011, .m = 12, .d = 31};
  EXPECT_EQ(before.nextDay(apia), after);
  EXPECT_EQ(after.previousDay(apia), before);
  EXPECT_EQ(before.add(1, apia), after);
  EXPECT_EQ(before.add(2, apia).intValue(), 20120101);
  EXPECT_EQ(after.add(-1, apia), before);
  EXPECT_EQ(before.distance(after, false, apia), 1);
  EXPECT_EQ(after.distance(before, false, apia), -1);
  EXPECT_EQ(before.dayOfWeek(apia), DayOfWeek::thursday);
  EXPECT_EQ(after.dayOfWeek(apia), DayOfWeek::saturday);
  // 01:00 on the 31st belongs to the logical day before, which is the 29th.
  EXPECT_EQ(YYYYMMDD::fromDate(time(3), at("2011-12-30T11:00:00Z"), apia), before);
  EXPECT_EQ(before.dateAt(time(3), time(1), apia).iso8601(), "2011-12-30T11:00:00Z");
  const TimeZone juneau = zone("America/Juneau");  // had 18 October 1867 twice
  YYYYMMDD day{.y = 1867, .m = 10, .d = 15};
  for (int i = 0; i < 6; ++i) day = day.nextDay(juneau);
  EXPECT_GE(day.intValue(), 18671020) << "a walk goes on";
}

}  // namespace
}  // namespace velloro
