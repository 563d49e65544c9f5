#include "OxDateTime/HHMMSS.h"

#include <array>
#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

namespace velloro {
namespace {

constexpr std::optional<HHMMSS> absent;

HHMMSS time(std::int64_t hour, std::int64_t minute = 0, std::int64_t second = 0) {
  return {.h = hour, .m = minute, .s = second};
}

Date at(const char* text) {
  return Date::fromISO8601(text).value();
}

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
}

TEST(HHMMSS, IsWithinHoursOnTheSameDial) {
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
}

TEST(HHMMSS, HasAMedian) {
  const HHMMSS three[] = {time(9), time(23), time(7)};
  const HHMMSS even[] = {time(9), time(7, 0, 1)};
  EXPECT_EQ(median(three), time(9));
  EXPECT_EQ(median(even), time(8)) << "half a second is cut off";
  EXPECT_EQ(median({}), absent);
}

TEST(HHMMSS, FindsItsNextOccurrence) {
  const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();
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
  const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();
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

}  // namespace
}  // namespace velloro
