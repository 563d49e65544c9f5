#include "OxHealthKit/OxHKWorkoutActivityType.h"
#include "Support/Fixtures.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::ElementsAre;
using enum OxHKWorkoutActivityType;

TEST(OxHKWorkoutActivityType, KeepsItsRawValues) {
  expectFixture("OxHKWorkoutActivityType", everyCase<OxHKWorkoutActivityType>());
  EXPECT_EQ(allCases<OxHKWorkoutActivityType>().size(), 86);
  EXPECT_FALSE(fromRawValue<OxHKWorkoutActivityType>("swimmingIndoor"));
  EXPECT_EQ(titleKey(runningIndoor), "healthcategory.subcategory.runningIndoor");
}

TEST(OxHKWorkoutActivityType, SixSayWhere) {
  for (const auto type : allCases<OxHKWorkoutActivityType>()) {
    const auto name = rawValue(type);
    const auto place = name.ends_with("Indoor")    ? std::optional(OxHKWorkoutLocation::indoor)
                       : name.ends_with("Outdoor") ? std::optional(OxHKWorkoutLocation::outdoor)
                                                   : std::nullopt;
    EXPECT_EQ(location(type), place) << name;
    const auto activity = rawValue(withoutLocation(type));
    EXPECT_TRUE(place ? name.starts_with(activity) && activity.ends_with("ing") : name == activity)
        << name << " is " << activity;
  }
}

TEST(OxHKWorkoutActivityType, MinimalListFoldsThePairs) {
  EXPECT_THAT(minimalWorkoutTypeList({yoga, runningOutdoor, runningIndoor, walkingIndoor, walking}),
              ElementsAre(running, walking, yoga, walkingIndoor));
  EXPECT_THAT(minimalWorkoutTypeList({cyclingIndoor, walkingOutdoor}),
              ElementsAre(cyclingIndoor, walkingOutdoor));
  const auto all = everyCase<OxHKWorkoutActivityType>();
  EXPECT_EQ(minimalWorkoutTypeList({all.begin(), all.end()}).size(), 80);
}

}  // namespace
}  // namespace velloro
