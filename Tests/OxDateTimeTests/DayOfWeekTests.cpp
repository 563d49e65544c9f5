#include "Foundation/Text/Locale.h"
#include "OxDateTime/DayOfWeek.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

TEST(DayOfWeek, CountsRoundTheWeek) {
  EXPECT_EQ(nextDay(DayOfWeek::saturday), DayOfWeek::sunday);
  EXPECT_EQ(previousDay(DayOfWeek::sunday), DayOfWeek::saturday);
  EXPECT_EQ(add(DayOfWeek::monday, -15), DayOfWeek::sunday);
  EXPECT_EQ(add(DayOfWeek::monday, INT64_MIN), add(DayOfWeek::monday, INT64_MIN % 7));
  EXPECT_EQ(calendarDayOfWeek(DayOfWeek::saturday), CalendarDayOfWeek::saturday);
  EXPECT_EQ(dayOfWeek(CalendarDayOfWeek::sunday), DayOfWeek::sunday);
  EXPECT_EQ(everyDay(DayOfWeek::wednesday)[5], DayOfWeek::monday);
  EXPECT_EQ(everyDay().size(), 7u);
  EXPECT_EQ(defaultFirstDayOfWeek(Locale::fromIdentifier("en_US")), DayOfWeek::sunday);
  EXPECT_EQ(defaultFirstDayOfWeek(Locale::fromIdentifier("de_DE")), DayOfWeek::monday);
  EXPECT_EQ(defaultFirstDayOfWeek(Locale::fromIdentifier("ar_EG")), DayOfWeek::saturday);
}

TEST(DaysOfWeek, IsASetOfBits) {
  const DaysOfWeek weekend{DaysOfWeek::saturday, DaysOfWeek::sunday};
  EXPECT_EQ(weekend.rawValue, 65);
  EXPECT_EQ(DaysOfWeek::everyDay.subtracting(weekend).rawValue, 62);
  EXPECT_TRUE(weekend.isSubset(DaysOfWeek::everyDay));
  EXPECT_TRUE(DaysOfWeek::everyDay.isSuperset(weekend));
  EXPECT_FALSE(weekend.contains(DaysOfWeek::everyDay));
  EXPECT_TRUE(weekend.isDisjoint(DaysOfWeek::monday));
  EXPECT_EQ(weekend.union_(DaysOfWeek::monday).rawValue, 67);
  EXPECT_EQ(weekend.intersection({DaysOfWeek::sunday, DaysOfWeek::monday}), DaysOfWeek::sunday);
  EXPECT_EQ(weekend.symmetricDifference({DaysOfWeek::sunday, DaysOfWeek::monday}),
            (DaysOfWeek{DaysOfWeek::saturday, DaysOfWeek::monday}));

  DaysOfWeek days = weekend;
  EXPECT_FALSE(days.insert(DaysOfWeek::sunday));
  EXPECT_TRUE(days.insert(DaysOfWeek::friday));
  EXPECT_EQ(days.remove(DaysOfWeek::friday), DaysOfWeek::friday);
  EXPECT_EQ(days.remove(DaysOfWeek::friday), std::nullopt);
  EXPECT_EQ(days.update(DaysOfWeek::tuesday), std::nullopt);
  EXPECT_EQ(days.update(DaysOfWeek::tuesday), DaysOfWeek::tuesday);
  const EnumSet<DayOfWeek> set{DayOfWeek::sunday, DayOfWeek::wednesday};
  EXPECT_EQ(daysOfWeek(set).rawValue, 9);
  EXPECT_EQ(daysOfWeek(set).daysOfWeek(), set);
  EXPECT_EQ(DaysOfWeek(std::int16_t{-128}).daysOfWeek(), EnumSet<DayOfWeek>{}) << "bits of no day";
}

}  // namespace
}  // namespace velloro
