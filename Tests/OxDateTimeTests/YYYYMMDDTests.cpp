#include "OxDateTime/YYYYMMDD.h"

#include <tuple>

#include <gtest/gtest.h>

namespace velloro {
namespace {

YYYYMMDD day(std::int64_t value) {
  return YYYYMMDD::fromRawValue(value).value();
}

TEST(YYYYMMDD, ReadsItsIntegerForm) {
  EXPECT_FALSE(YYYYMMDD::fromRawValue(YYYYMMDD::emptyValue));
  EXPECT_FALSE(YYYYMMDD::fromRawValue(-20240307));
  EXPECT_EQ(day(20240307).debugDescription(), "2024-03-07");
  EXPECT_EQ(day(20241345).m, 13);
  EXPECT_EQ(day(20241345).d, 45);
  EXPECT_EQ(day(20241345).intValue(), 20241345);
  EXPECT_EQ((YYYYMMDD{.y = 2024, .m = 2, .d = 107}), day(20240307)) << "equality is the integer's";
  EXPECT_LT(day(20240229), day(20240301));
}

TEST(YYYYMMDD, ReadsText) {
  for (const char* good : {"20240229", "00010101", "99991231"}) {
    EXPECT_TRUE(YYYYMMDD::fromString(good)) << good;
  }
  for (const char* bad : {"20230229", "20231301", "20230001", "20230100", "20230431", "2023021",
                          "202302111", "2023-2-1", "+2023011", " 2023011", ""}) {
    EXPECT_FALSE(YYYYMMDD::fromString(bad)) << bad;
  }
}

TEST(YYYYMMDD, CountsDays) {
  EXPECT_EQ(day(20240307).distance(day(20240307), false), 0);
  EXPECT_EQ(day(20240307).distance(day(20240307), true), 1);
  EXPECT_EQ(day(20240307).distance(day(20240305)), -2);
  EXPECT_EQ(day(20240307).distance(day(20240305), true), -1);
  EXPECT_EQ(day(20240307).add(0), day(20240307));
  EXPECT_EQ(day(20241345).add(0).intValue(), 20241345) << "nothing added, nothing normalised";
  EXPECT_EQ(day(20241345).nextDay(), day(20250215));
  EXPECT_EQ(day(20240230).previousDay(), day(20240229));
  EXPECT_EQ(day(20240230).nextDay(), day(20240302));
  EXPECT_EQ(day(99991231).nextDay().intValue(), 100000101);
  // No overflow, whatever stands in a store.
  EXPECT_GT(day(20240307).add(INT64_MAX), day(20240307));
  EXPECT_GT(day(INT64_MAX).dateAt({}, {}, TimeZone::gmt()), Date::distantFuture());
  EXPECT_NE(day(INT64_MAX).nextDay(), day(INT64_MAX));
  EXPECT_GT(YYYYMM::fromRawValue(INT64_MAX)->firstDay().nextDay().y, 9999);
}

TEST(YYYYMMDD, FindsFortnights) {
  using enum DayOfWeek;
  const std::tuple<std::int64_t, DayOfWeek, std::optional<YYYYMMDD>, std::int64_t, std::int64_t>
      cases[] = {{20000102, sunday, {}, 20000102, 20000115},
                 {20000108, sunday, {}, 19991226, 20000108},
                 {20000115, sunday, {}, 20000109, 20000122},
                 {20000101, saturday, {}, 20000101, 20000114},
                 {20000108, saturday, {}, 20000101, 20000114},
                 {20000115, saturday, {}, 20000115, 20000128},
                 // Before the anchor the remainder is negative, so no day lies in a second week.
                 {19991228, saturday, {}, 19991225, 20000107},
                 {19991220, saturday, {}, 19991218, 19991231},
                 {20240307, monday, day(20240226), 20240226, 20240310},
                 {20240307, monday, day(20240304), 20240304, 20240317}};
  for (const auto& [value, first, reference, start, end] : cases) {
    EXPECT_EQ(day(value).startOfFortnight(first, reference), day(start)) << value;
    EXPECT_EQ(day(value).endOfFortnight(first, reference), day(end)) << value;
  }
}

TEST(YYYYMMDD, CountsTheDaysThatRemain) {
  const YYYYMMDD thursday = day(20240307);
  EXPECT_EQ(thursday.numberOfDaysRemainingThisWeek(DayOfWeek::monday, false), 3);
  EXPECT_EQ(thursday.numberOfDaysRemainingThisWeek(DayOfWeek::friday, false), 0);
  EXPECT_EQ(thursday.numberOfDaysRemainingThisWeek(DayOfWeek::friday, true), 1);
  EXPECT_EQ(thursday.numberOfDaysRemainingThisFortnight(DayOfWeek::monday, false, day(20240304)),
            10);
  EXPECT_EQ(thursday.numberOfDaysRemainingThisMonth(false), 24);
  EXPECT_EQ(thursday.numberOfDaysRemainingThisMonth(true), 25);
  EXPECT_EQ(thursday.numberOfDaysRemainingThisYear(false), 299);
  EXPECT_EQ(day(20241231).numberOfDaysRemainingThisYear(true), 1);
}

}  // namespace
}  // namespace velloro
