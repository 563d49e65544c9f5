#include "OxKit/OxCodableColor.h"
#include "Support/Fixtures.h"

#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

namespace velloro {
namespace {

TEST(OxCodableColor, ReadsHexadecimalText) {
  const std::pair<const char*, const char*> cases[] = {{"336699", "336699"},
                                                       {" 0x00FF7f rest", "00FF7F"},
                                                       {"FF", "0000FF"},
                                                       {"12336699", "336699"},
                                                       {"FFFFFFFFFFFFFFFFFF010203", "010203"}};
  for (const auto& [text, hex] : cases) EXPECT_EQ(OxCodableColor::fromHex(text)->toHex(), hex);
  for (const char* bad : {"#336699", "", "0x"}) EXPECT_FALSE(OxCodableColor::fromHex(bad)) << bad;
}

TEST(OxCodableColor, EveryByteComesBackAndOthersAreCut) {
  for (int k = 0; k < 256; ++k) {
    const double component = k / 255.0;
    const auto hex = OxCodableColor{0, 0, component, component + 0.0039}.toHexAlpha();
    ASSERT_EQ(std::stoi(hex, nullptr, 16), k * 256 + k);
  }
  EXPECT_EQ((OxCodableColor{1.2, -0.1, std::nan(""), 0.5}.toHexAlpha()), "FF00007F");
}

TEST(OxCodableColor, SpaceSeparatedTextIsExactAndNeverUnreadable) {
  const auto text = [](OxCodableColor color) { return color.toSpaceSeparated(); };
  EXPECT_EQ(text({0.2, 0.4, 0.6, 1}), "0.2 0.4 0.6 1");
  EXPECT_EQ(text({1.0 / 3, 0.0000005, 0.00000049, -0.0}), "0.333333 0.000001 0 0");
  EXPECT_EQ(text({-0.25, 1e20, INFINITY, NAN}), "-0.25 100000000000000000000 0 0");
  EXPECT_EQ(OxCodableColor::fromSpaceSeparated("\t0.2  0.4\n0.6 1 "),
            (OxCodableColor{0.2, 0.4, 0.6, 1}));
  for (const char* bad : {"", "0.2 0.4 0.6", "0 0 0 1 1", "0 0 zero 1", "0,2 0 0 1", "nan 0 0 1"}) {
    EXPECT_FALSE(OxCodableColor::fromSpaceSeparated(bad)) << bad;
  }
}

TEST(OxCodableColor, IsFourNumbersInJSON) {
  expectFixture("OxCodableColor", OxCodableColor{0.2, 0.4, 0.6, 0.5});
}

TEST(OxCodableColor, HSBRoundTrips) {
  for (int rgb = 0; rgb < 0x1000000; rgb += 0x0F0D0B) {
    const OxCodableColor color{(rgb >> 16) / 255.0, (rgb >> 8 & 255) / 255.0, (rgb & 255) / 255.0};
    ASSERT_EQ(OxCodableColor::fromHSB(color.toHSB()).toHex(), color.toHex());
  }
  EXPECT_DOUBLE_EQ((OxCodableColor{0.5, 0, 1}.toHSB().hue), 0.75);
  EXPECT_EQ(OxCodableColor::fromHSB({-0.25, 2, 1}).toHex(), "7F00FF");
  EXPECT_EQ((OxCodableColor{0.4, 0.4, 0.4}.toHSB()), (OxCodableColor::HSB{0, 0, 0.4}));
}

TEST(OxCodableColor, BrightnessMovesAlone) {
  const OxCodableColor color = OxCodableColor::fromHex("336699").value();
  EXPECT_EQ(color.darkenBy(0.1).toHex(), "2A557F");
  EXPECT_EQ(color.lightenBy(5).toHex(), "55AAFF");
  EXPECT_EQ(color.darkenBy(5).toHex(), "000000");
  EXPECT_EQ((OxCodableColor{0, 0, 0, 0.5}.lightenBy(1).toHexAlpha()), "FFFFFF7F");
}

TEST(OxCodableColor, WalksToATargetInWholeSteps) {
  const OxCodableColor black{}, white{1, 1, 1}, red{1, 0, 0}, grey{0.35, 0.35, 0.35};
  const std::tuple<const char*, OxCodableColor, double> cases[] = {
      {"at the target one more step", black.lightenTo(0.2), 0.25},
      {"each of many steps exact", black.lightenTo(0.9), 0.95},
      {"beyond the end", black.lightenTo(2), 1},
      {"to the end, from beside the grid of steps", grey.lightenTo(1), 1},
      {"full already", red.lightenTo(0.5), 1},
      {"down, at the target one more", white.darkenTo(0.8), 0.75},
      {"down, by what the eye finds", red.darkenTo(0.2), 0.65},
      {"white at once", white.lightenTo(1), 1},
      {"down to the end", grey.darkenTo(0), 0},
      {"dark already", grey.darkenTo(0.4), 0.35}};
  for (const auto& [what, result, brightness] : cases) {
    EXPECT_NEAR(result.toHSB().brightness, brightness, 1e-12) << what;
  }
  EXPECT_EQ(red.darkenTo(0.2).g, 0);
}

}  // namespace
}  // namespace velloro
