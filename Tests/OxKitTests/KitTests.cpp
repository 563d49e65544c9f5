#include "Foundation/Geometry.h"
#include "Foundation/NSDateFormatter.h"
#include "Foundation/TestEnvironment.h"
#include "OxKit/AccessibilityLabel.h"
#include "OxKit/DeviceType.h"
#include "OxKit/Localization.h"
#include "OxKit/Numbers.h"
#include "OxKit/OxAnimationCurve.h"
#include "OxKit/Platform.h"
#include "OxKit/RuntimeError.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace velloro {
namespace {

TEST(AccessibilityLabel, FlattensAndLeavesOutWhatIsEmpty) {
  const auto inner = std::make_shared<AccessibilityLabel>();
  const AccessibilityLabel label({"Read", "", inner, "Done"});
  EXPECT_EQ(label.text(), "Read.\nDone");
  inner->parts = {"twice", "", "a day"};
  EXPECT_EQ(label.text(), "Read.\ntwice.\na day.\nDone");
  EXPECT_EQ(AccessibilityLabel().text(), "");
}

TEST(DeviceType, IsToldByTheBeginningOfTheModel) {
  struct Case {
    const char* identifier;
    DeviceType::Model model;
  };
  const Case cases[] = {
      {"iPhone14,5", DeviceType::IPhone::iPhone13},
      {"iPhone14,55", DeviceType::IPhone::other},
      {"iPad13,16", DeviceType::IPad::iPadAir5},
      {"AppleTV14,1", DeviceType::TV::tv4K},
      {"Watch6,18", DeviceType::Watch::mm49},
      {"Watch6,1", DeviceType::Watch::mm40},
      {"MacBookPro18,1", DeviceType::Mac::macBookPro},
      {"iMac21,1", DeviceType::Mac::iMac},
      {"Mac16,1", DeviceType::Mac::other},
      {"CarPlay", DeviceType::CarPlay::other},
  };
  for (const auto& [identifier, model] : cases) {
    const auto type = DeviceType::fromModelIdentifier(identifier);
    ASSERT_TRUE(type) << identifier;
    EXPECT_EQ(type->model, model) << identifier;
  }
  EXPECT_FALSE(DeviceType::fromModelIdentifier("Toaster"));

  TestEnvironment environment;
  environment.setDeviceModel("Mac");
  EXPECT_EQ(DeviceType::current().family(), DeviceType::Family::mac);
  EXPECT_FALSE(DeviceType::isInSimulator());
  environment.setVariable("SIMULATOR_MODEL_IDENTIFIER", "iPhone14,5");
  EXPECT_TRUE(DeviceType::isInSimulator());
}

TEST(Numbers, RoundAsTheDecimalThatIsMeant) {
  struct Case {
    double value;
    int places;
    double rounded;
  };
  const Case cases[] = {
      {1.005, 2, 1.01},
      {-1.005, 2, -1.01},
      {2.5, 0, 3},
      {-2.5, 0, -3},
      {0.5, 0, 1},
      {0.49, 0, 0},
      {0.05, 0, 0},
      {99.95, 1, 100},
      {1250, -2, 1300},
      {50, -2, 100},
      {49, -2, 0},
      {1.2, 5, 1.2},
      {1e-7, 6, 0},
      {5e-7, 6, 1e-6},
      {1e300, 3, 1e300},
      {0.1 + 0.2, 3, 0.3},
      {1.7e308, -308, 1.7e308},  // 2e308 is no double
  };
  for (const auto& [value, places, rounded] : cases) {
    EXPECT_EQ(roundToPlaces(value, places), rounded) << value << " to " << places;
  }
  EXPECT_TRUE(std::isinf(roundToPlaces(std::numeric_limits<double>::infinity(), 2)));
}

TEST(Numbers, TotalKeepsTheType) {
  EXPECT_EQ(total(std::vector<double>{}), 0);
  EXPECT_EQ(total(std::vector{1LL << 40, 1LL << 40}), 1LL << 41);
}

TEST(OxAnimationCurve, FollowsItsFormula) {
  using enum OxAnimationCurve;
  struct Case {
    OxAnimationCurve curve;
    double atQuarter;
  };
  const Case cases[] = {{linear, 0.25},
                        {easeIn, 0.015625},
                        {easeOut, 0.578125},
                        {easeInOut, (1 - std::sqrt(0.5)) / 2}};
  for (const auto& [curve, atQuarter] : cases) {
    EXPECT_DOUBLE_EQ(valueAt(curve, 0), 0);
    EXPECT_DOUBLE_EQ(valueAt(curve, 0.25), atQuarter);
    EXPECT_DOUBLE_EQ(valueAt(curve, 1), 1);
  }
}

TEST(CGPoint, IsMirroredForReadersFromTheRight) {
  const CGPoint point{.x = 10, .y = 5};
  EXPECT_EQ(point.transpose(true, 100), (CGPoint{.x = 90, .y = 5}));
  EXPECT_EQ(point.transpose(false, 100), point);
}

TEST(Localization, FollowsTheLocale) {
  TestEnvironment environment;
  environment.setLocale("en_US");
  EXPECT_EQ(localized("distance.steps", {1}), "1 step");
  EXPECT_FALSE(uses24HourTime(NSDateFormatter::withTemplate("H", {})));
  environment.setLocale("de_DE");
  EXPECT_TRUE(uses24HourTime(NSDateFormatter::withTemplate("h", {})));
}

TEST(RuntimeError, SaysItsMessage) {
  EXPECT_STREQ(RuntimeError("no such task").what(), "no such task");
}

}  // namespace
}  // namespace velloro
