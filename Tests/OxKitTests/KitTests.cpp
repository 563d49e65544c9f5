#include "Foundation/Formatting/NSDateFormatter.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxKit/AccessibilityLabel.h"
#include "OxKit/DeviceType.h"
#include "OxKit/Localization.h"
#include "OxKit/Numbers.h"
#include "OxKit/OxAnimationCurve.h"
#include "OxKit/Platform.h"

#include <cmath>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

namespace velloro {
namespace {

TEST(AccessibilityLabel, FlattensAndLeavesOutWhatIsEmpty) {
  const auto inner = std::make_shared<AccessibilityLabel>();
  const AccessibilityLabel label({"Read", "", inner, "Done"});
  EXPECT_EQ(label.text(), "Read.\nDone");
  inner->parts = {"twice", "", "a day"};
  EXPECT_EQ(label.text(), "Read.\ntwice.\na day.\nDone");
}

TEST(DeviceType, IsToldByTheBeginningOfTheModel) {
  using Type = DeviceType;
  const std::pair<const char*, Type::Model> cases[] = {
      {"iPhone14,5", Type::IPhone::iPhone13}, {"iPhone14,55", Type::IPhone::other},
      {"Watch6,18", Type::Watch::mm49},       {"MacBookPro18,1", Type::Mac::macBookPro},
      {"iMac21,1", Type::Mac::iMac},          {"Mac16,1", Type::Mac::other}};
  for (const auto& [identifier, model] : cases) {
    EXPECT_EQ(Type::fromModelIdentifier(identifier).value().model, model) << identifier;
  }
  EXPECT_FALSE(DeviceType::fromModelIdentifier("Toaster"));

  VirtualEnvironment environment;
  environment.setDeviceModel("Mac");
  EXPECT_EQ(DeviceType::current().family(), DeviceType::Family::mac);
  EXPECT_FALSE(DeviceType::isInSimulator());
  environment.setVariable("SIMULATOR_MODEL_IDENTIFIER", "iPhone14,5");
  EXPECT_TRUE(DeviceType::isInSimulator());
}

TEST(Numbers, RoundAsTheDecimalThatIsMeantAndAddUp) {
  const std::tuple<double, int, double> cases[] = {
      {1.005, 2, 1.01},       {-1.005, 2, -1.01}, {2.5, 0, 3},
      {-2.5, 0, -3},          {0.5, 0, 1},        {0.49, 0, 0},
      {0.05, 0, 0},           {99.95, 1, 100},    {1250, -2, 1300},
      {50, -2, 100},          {49, -2, 0},        {1.2, 5, 1.2},
      {5e-7, 6, 1e-6},        {1e300, 3, 1e300},  {1.7e308, -308, 1.7e308},
      {INFINITY, 2, INFINITY}};
  for (const auto& [value, places, rounded] : cases) {
    EXPECT_EQ(roundToPlaces(value, places), rounded) << value << " to " << places;
  }
  EXPECT_EQ(total(std::vector<double>{}), 0);
  EXPECT_EQ(total(std::vector{1LL << 40, 1LL << 40}), 1LL << 41);
}

TEST(Numbers, SeeThroughBinaryRoundingAndNoFurther) {
  const double tenth = 0.1, infinity = std::numeric_limits<double>::infinity();
  double sum = 0;
  for (int i = 0; i < 1000; ++i) sum += tenth;
  EXPECT_NE(sum, 100);
  for (const auto& [value, whole] : {std::pair{0.3 / tenth, 3.0},
                                     {-0.3 / tenth, -3.0},
                                     {sum, 100.0},
                                     {1e-14, 1e-14},
                                     {2.9999999999, 2.9999999999},
                                     {infinity, infinity}}) {
    EXPECT_EQ(wholeUnlessFractional(value), whole) << value;
  }
  EXPECT_EQ(difference(tenth + 0.2, 0.3), 0);
  EXPECT_EQ(difference(1, 0.999999999), 1 - 0.999999999);
  EXPECT_EQ(difference(infinity, 5), infinity);
}

TEST(OxAnimationCurve, FollowsItsFormula) {
  using enum OxAnimationCurve;
  const std::pair<OxAnimationCurve, double> cases[] = {
      {linear, 0.25}, {easeIn, 0.015625}, {easeOut, 0.578125}, {easeInOut, 0.14644660940672624}};
  for (const auto& [curve, atQuarter] : cases) {
    EXPECT_DOUBLE_EQ(valueAt(curve, 0.25), atQuarter);
    EXPECT_DOUBLE_EQ(valueAt(curve, 1), 1);
  }
}

TEST(Localization, FollowsTheLocale) {
  VirtualEnvironment environment;
  environment.setLocale("en_US");
  EXPECT_EQ(localized("distance.steps", {1}), "1 step");
  EXPECT_FALSE(uses24HourTime(NSDateFormatter::withTemplate("H", {})));
  environment.setLocale("de_DE");
  EXPECT_TRUE(uses24HourTime(NSDateFormatter::withTemplate("h", {})));
}

}  // namespace
}  // namespace velloro
