#include "Foundation/TestEnvironment.h"
#include "OxDateTime/YYYYMM.h"
#include "OxDateTime/YYYYMMDD.h"

#include <tuple>

#include <gtest/gtest.h>

namespace velloro {
namespace {

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
}

TEST(YYYYMM, KnowsItsDays) {
  EXPECT_EQ(month(202402).lastDay().intValue(), 20240229);
  EXPECT_EQ(month(190002).lastDay().intValue(), 19000228);
  EXPECT_EQ(month(200002).numberOfDays(), 29);
  EXPECT_EQ(month(202414).numberOfDays(), 28) << "month 14 is the next February";
}

TEST(YYYYMM, NamesItselfInTheDevicesLocale) {
  const std::tuple<const char*, const char*, const char*, const char*, const char*, const char*>
      cases[] = {{"en_US", "March", "March 2024", "Mar 2024", "2024", "Wednesday"},
                 {"de_DE", "März", "März 2024", "März 2024", "2024", "Mittwoch"},
                 {"ja_JP", "3月", "2024年3月", "2024年3月", "2024年", "水曜日"}};
  TestEnvironment environment;
  for (const auto& [locale, title, withYear, shortWithYear, year, weekday] : cases) {
    environment.setLocale(locale);
    EXPECT_EQ(month(202403).localizedTitle(), title);
    EXPECT_EQ(month(202403).localizedTitleWithYear(), withYear);
    EXPECT_EQ(month(202403).localizedShortTitleWithYear(), shortWithYear);
    EXPECT_EQ(month(202403).localizedYear(), year);
    EXPECT_EQ(localizedTitle(DayOfWeek::wednesday), weekday);
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

}  // namespace
}  // namespace velloro
