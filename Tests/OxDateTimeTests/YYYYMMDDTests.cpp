#include "Foundation/Text/Locale.h"
#include "OxDateTime/YYYYMM.h"
#include "OxDateTime/YYYYMMDD.h"
#include "Support/Fixtures.h"

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
  EXPECT_EQ(day(20240307).distance(day(20240307), true, {}), 1);
  EXPECT_EQ(day(20240307).distance(day(20240305)), -2);
  EXPECT_EQ(day(20240307).distance(day(20240305), true, {}), -1);
  EXPECT_EQ(day(20240307).add(0, {}), day(20240307));
  EXPECT_EQ(day(20241345).add(0, {}).intValue(), 20241345) << "nothing added, nothing normalised";
  EXPECT_EQ(day(20241345).nextDay({}), day(20250215));
  EXPECT_EQ(day(20240230).previousDay({}), day(20240229));
  EXPECT_EQ(day(20240230).nextDay({}), day(20240302));
  EXPECT_EQ(day(99991231).nextDay({}).intValue(), 100000101);
  // No overflow, whatever stands in a store.
  EXPECT_GT(day(20240307).add(INT64_MAX, {}), day(20240307));
  EXPECT_GT(day(INT64_MAX).dateAt({}, {}, TimeZone::gmt()), Date::distantFuture());
  EXPECT_NE(day(INT64_MAX).nextDay({}), day(INT64_MAX));
  EXPECT_GT(YYYYMM::fromRawValue(INT64_MAX)->firstDay().nextDay({}).y, 9999);
}

TEST(YYYYMMDD, FindsFortnights) {
  using enum DayOfWeek;
  const std::tuple<std::int64_t, DayOfWeek, std::optional<YYYYMMDD>, std::int64_t, std::int64_t>
      cases[] = {{20000102, sunday, {}, 20000102, 20000115},
                 {20000108, sunday, {}, 19991226, 20000108},
                 {20000115, sunday, {}, 20000109, 20000122},
                 {20000108, saturday, {}, 20000101, 20000114},
                 {20000115, saturday, {}, 20000115, 20000128},
                 // Before the anchor the remainder is negative, so no day lies in a second week.
                 {19991228, saturday, {}, 19991225, 20000107},
                 {20240307, monday, day(20240226), 20240226, 20240310},
                 {20240307, monday, day(20240304), 20240304, 20240317}};
  for (const auto& [value, first, reference, start, end] : cases) {
    EXPECT_EQ(day(value).startOfFortnight(first, reference, {}), day(start)) << value;
    EXPECT_EQ(day(value).endOfFortnight(first, reference, {}), day(end)) << value;
  }
}

TEST(YYYYMMDD, CountsTheDaysThatRemain) {
  const YYYYMMDD thursday = day(20240307);
  EXPECT_EQ(thursday.numberOfDaysRemainingThisWeek(DayOfWeek::monday, false, {}), 3);
  EXPECT_EQ(thursday.numberOfDaysRemainingThisWeek(DayOfWeek::friday, false, {}), 0);
  EXPECT_EQ(
      thursday.numberOfDaysRemainingThisFortnight(DayOfWeek::monday, false, day(20240304), {}), 10);
  EXPECT_EQ(thursday.numberOfDaysRemainingThisMonth(false, {}), 24);
  EXPECT_EQ(thursday.numberOfDaysRemainingThisYear(false, {}), 299);
  EXPECT_EQ(day(20241231).numberOfDaysRemainingThisYear(true, {}), 1);
}

YYYYMM month(std::int64_t value) {
  return YYYYMM::fromRawValue(value).value();
}

TEST(YYYYMM, ReadsItsForms) {
  EXPECT_FALSE(YYYYMM::fromRawValue(0));
  EXPECT_EQ(month(202403).debugDescription(), "2024-03");
  EXPECT_EQ(YYYYMM::fromString("202413")->m, 13) << "the month's range is not tested";
  for (const char* bad : {"20240", "2024031", "2024-3", "20240x"}) {
    EXPECT_FALSE(YYYYMM::fromString(bad)) << bad;
  }
}

TEST(YYYYMM, AddsMonths) {
  const std::tuple<std::int64_t, std::int64_t, std::int64_t> cases[] = {
      {202401, -1, 202312},  {202312, 1, 202401},   {202403, 0, 202403},  {202403, 22, 202601},
      {202403, -27, 202112}, {202403, 120, 203403}, {202412, -12, 202312}};
  for (const auto& [from, count, to] : cases) {
    EXPECT_EQ(month(from).add(count), month(to)) << from << " " << count;
    EXPECT_EQ(month(from).distance(month(to)), count);
  }
  EXPECT_EQ(month(202403).distance(month(202401), true), -1);
  EXPECT_EQ(month(202403).lastMonthOfYear(), month(202412));
  EXPECT_EQ(month(202402).lastDay().intValue(), 20240229);
  EXPECT_EQ(month(190002).lastDay().intValue(), 19000228);
  EXPECT_EQ(month(200002).numberOfDays(), 29);
  EXPECT_EQ(month(202414).numberOfDays(), 28) << "month 14 is the next February";
}

TEST(YYYYMM, NamesItselfInALocale) {
  const std::tuple<const char*, const char*, const char*, const char*, const char*, const char*>
      cases[] = {{"en_US", "March", "March 2024", "Mar 2024", "2024", "Wednesday"},
                 {"de_DE", "März", "März 2024", "März 2024", "2024", "Mittwoch"},
                 {"ja_JP", "3月", "2024年3月", "2024年3月", "2024年", "水曜日"}};
  for (const auto& [name, title, withYear, shortWithYear, year, weekday] : cases) {
    const Locale locale = Locale::fromIdentifier(name);
    EXPECT_EQ(month(202403).localizedTitle(locale), title);
    EXPECT_EQ(month(202403).localizedTitleWithYear(locale), withYear);
    EXPECT_EQ(month(202403).localizedShortTitleWithYear(locale), shortWithYear);
    EXPECT_EQ(month(202403).localizedYear(locale), year);
    EXPECT_EQ(localizedTitle(DayOfWeek::wednesday, locale), weekday);
  }
}

TEST(YYYYMM, CountsTheBlanksOfItsGrid) {
  using enum DayOfWeek;
  const std::tuple<std::int64_t, DayOfWeek, std::int64_t, std::int64_t> cases[] = {
      {202403, sunday, 5, 6},  // Friday 1 to Sunday 31
      {202403, monday, 4, 0},
      {202403, friday, 0, 4},
      {202406, sunday, 6, 6},  // Saturday 1 to Sunday 30
  };
  for (const auto& [value, first, before, after] : cases) {
    EXPECT_EQ(month(value).numberOfDaysInWeekBeforeMonthStarts(first), before) << value;
    EXPECT_EQ(month(value).numberOfDaysInWeekAfterMonthEnds(first), after) << value;
  }
}

template <typename T>
void expectForm(const T& value, const char* json) {
  EXPECT_EQ(JSONEncoder{}.encode(value), json);
  EXPECT_EQ(JSONDecoder{}.decode<T>(json), value);
}

TEST(Serialization, KeepsTheFormsOfTheStore) {
  expectForm(std::vector<HHMMSS>{{.h = 9}, {.h = 23, .m = 59, .s = 59}}, "[32400,86399]");
  expectForm(YYYYMMDD::Range::from({.y = 2024, .m = 3, .d = 7}), R"({"minDate":20240307})");
  expectForm(DaysOfWeek{DaysOfWeek::monday, DaysOfWeek::friday}, "34");
  expectForm(EnumSet<DayOfWeek>{DayOfWeek::saturday, DayOfWeek::sunday}, "[0,6]");
  const auto time = JSONDecoder{}.decode<HHMMSS>(R"({"h":25,"m":1,"s":2})");
  EXPECT_EQ(time.intValue(), 90062) << "the fields are taken as they stand";
}

TEST(Serialization, NamesWhatIsWrongAndWhere) {
  EXPECT_EQ(decodingFailure<std::vector<YYYYMMDD>>("[20240307,-5]"),
            "[1]: Unable to create YYYYMMDD from -5");
  EXPECT_EQ(decodingFailure<std::vector<YYYYMM>>("[0]"), "[0]: Unable to create YYYYMM");
  EXPECT_EQ(decodingFailure<std::vector<HHMMSS>>("[86400]"), "[0]: Unable to create HHMMSS");
  EXPECT_NE(decodingFailure<std::vector<DayOfWeek>>("[7]"), "none");
  EXPECT_NE(decodingFailure<std::vector<CalendarDayOfWeek>>("[0]"), "none");
  EXPECT_NE(decodingFailure<std::vector<DaysOfWeek>>("[40000]"), "none");
}

}  // namespace
}  // namespace velloro
