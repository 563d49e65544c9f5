#include "Foundation/Process/VirtualEnvironment.h"
#include "Support/Fixtures.h"
#include "VelloroCore/Appearance/ColorContrast.h"
#include "VelloroCore/Appearance/PositionedTheme.h"
#include "VelloroCore/Appearance/ThemeHelper.h"

#include <functional>
#include <tuple>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using enum ColorScheme;
using Mode = Theme::Mode;
using Context = Theme::Context;
using Status = CompletionStatus::Status;

constexpr OxCodableColor white = rgb(255, 255, 255);

std::vector<Theme> everyTheme() {
  std::vector<Theme> themes;
  for (const ColorScheme scheme : allCases<ColorScheme>()) {
    for (const Mode mode : validModes(scheme)) {
      for (const bool grandSlam : {false, true}) themes.push_back({scheme, mode, grandSlam});
    }
  }
  return themes;
}

/// Hard ones among them: the ends, the middle, and colours that no mode's screen likes.
const std::vector<Theme::TaskColor> taskColors = {{},
                                                  rgb(0, 0, 0),
                                                  white,
                                                  rgb(118, 118, 118),
                                                  rgb(255, 255, 0),
                                                  rgb(0, 0, 255),
                                                  rgb(188, 60, 60)};

void forEachTask(
    const std::function<void(const PositionedTheme&, const Theme::TaskColor&, Context)>& check) {
  for (const Theme& theme : everyTheme()) {
    SCOPED_TRACE(theme.stringValue());
    for (const Context context : allCases<Context>()) {
      SCOPED_TRACE(rawValue(context));
      const auto count = static_cast<std::int64_t>(colors(theme.colorScheme, false).size());
      for (std::int64_t i = 0; i < count; ++i) check(theme.positioned({{}, i}), {}, context);
      // of the places, only a watch's faces change what a task's own colour is shown on
      if (context == Context::main || context == Context::appleWatchSiri) {
        for (const auto& color : taskColors) check(theme.positioned({}), color, context);
      }
      if (::testing::Test::HasFailure()) return;
    }
  }
}

void expectLegible(const ColorProfile& profile, const std::string& name) {
  SCOPED_TRACE(name);
  for (const OxCodableColor& open : {profile.trackBackground, profile.trackFadedBackground}) {
    if (open.a > 0) {
      EXPECT_GE(contrastRatio(profile.trackFill, open), shapeContrast);
    }
  }
  for (const OxCodableColor& center : profile.centerFill) {
    EXPECT_GE(contrastRatio(profile.bottomCaption, center), textContrast);
    EXPECT_GE(contrastRatio(profile.topCaption, center), textContrast);
    EXPECT_GE(contrastRatio(profile.imageMask, center), textContrast);
    EXPECT_GE(contrastRatio(profile.trackBackground, center), 1.2);
    EXPECT_GE(contrastRatio(profile.trackFill, center), 1.2);
    if (profile.timer.a > 0) {
      EXPECT_GE(contrastRatio(profile.timer, center), shapeContrast);
    }
  }
  if (profile.badge.a > 0) {
    EXPECT_GE(contrastRatio(profile.badgeContent, profile.badge), textContrast);
  }
}

/// What a badge lies on, and each other part of the ring, is told from its neighbours as it is
/// seen: a view lays the parts of a faded ring over each other, an image is laid over the page as a
/// whole.
void expectDistinct(const ColorProfile& profile, const OxCodableColor& page) {
  const auto over = [&](const OxCodableColor& under, const OxCodableColor& color) {
    return mixed(under, color, profile.alpha());
  };
  const OxCodableColor disc = over(page, profile.centerFill.front());
  for (const OxCodableColor& below : {disc, page}) {
    const OxCodableColor fill = over(below, profile.trackFill);
    const OxCodableColor track = over(below, profile.trackBackground);
    EXPECT_GE(contrastRatio(fill, disc), 1.2);
    EXPECT_GE(contrastRatio(track, disc), 1.2);
    EXPECT_GE(contrastRatio(fill, track), 1.2);
  }
  EXPECT_GE(contrastRatio(over(disc, profile.imageMask), disc), 1.25);
  if (profile.badge.a == 0) return;
  for (const OxCodableColor& part : {profile.trackFill, profile.trackBackground}) {
    EXPECT_GE(contrastRatio(over(page, profile.badge), over(disc, part)), 1.2);
  }
}

TEST(Theme, EveryRingIsLegible) {
  VirtualEnvironment environment;
  forEachTask([](const PositionedTheme& theme, const Theme::TaskColor& color, Context context) {
    const auto page = theme.theme.backgroundType(context).plainColor();
    for (const Status& status : Status::allCases()) {
      const ColorProfile profile = theme.colorProfile(status, color, 7, context);
      expectLegible(profile, status.stringValue());
      expectDistinct(profile, page);
    }
    expectLegible(theme.positiveCompletedColorProfile(color, context), "completed");
    expectLegible(theme.negativeAllowedMissColorProfile(color, context), "allowed miss");
    expectLegible(theme.siriShortcutsConfigurationColorProfile(), "shortcuts");
    expectLegible(theme.siriWatchFaceColorProfile(), "watch face");
  });
}

TEST(Theme, TextsReadOnTheirScreens) {
  VirtualEnvironment environment;
  const TaskDisplayOrder order{{}, 1};
  for (const Theme& theme : everyTheme()) {
    SCOPED_TRACE(theme.stringValue());
    const auto background = theme.backgroundType();
    std::vector<OxCodableColor> behind{background.plainColor()};
    if (const auto* gradient = std::get_if<Theme::Gradient>(&background.value)) {
      behind.insert(behind.end(), {gradient->from, gradient->to});
    }
    const Theme::Place place{order, {}, Context::notification};
    for (const OxCodableColor& color : behind) {
      EXPECT_GE(contrastRatio(theme.taskTextColor(place), color), shapeContrast);
      EXPECT_GE(contrastRatio(theme.taskIconColor(place), color), shapeContrast);
      EXPECT_GE(contrastRatio(theme.taskQuantityTextColor(place), color), shapeContrast);
    }
    const auto cell = theme.tableCellBackgroundColor();
    EXPECT_GE(contrastRatio(theme.tableCellPrimaryTextColor(), cell), textContrast);
    EXPECT_GE(contrastRatio(theme.tableCellSecondaryTextColor(), cell), textContrast);
    EXPECT_GE(contrastRatio(theme.toolbarTintColor(), theme.toolbarBarTintColor()), textContrast);
    const auto screen = screenColor(theme.mode == Mode::black ? Mode::black : Mode::white);
    EXPECT_GE(contrastRatio(theme.navigationBarTintColor(), screen), textContrast);
    EXPECT_GE(contrastRatio(theme.helpScreenHeadingColor(), screen), textContrast);
    EXPECT_GE(contrastRatio(theme.helpScreenTextColor(), screen), textContrast);
    for (const auto& color : taskColors) {
      EXPECT_GE(contrastRatio(theme.tableCellImageMaskColor(color),
                              theme.tableCellImageCircleColor(color)),
                textContrast);
    }
  }
}

TEST(Theme, RingsLookByTheirStatus) {
  VirtualEnvironment environment;
  const PositionedTheme theme = Theme{blue}.positioned(TaskDisplayOrder::first);
  const auto context = Context::notification;
  using enum SkipMode;
  for (const SkipMode mode : allCases<SkipMode>()) {
    const bool faded = mode == willSkipWithIndicator;
    EXPECT_EQ(theme.colorProfile(Status::positiveIncomplete(mode), {}, 7, context),
              theme.positiveUncheckedColorProfile({}, context, faded));
    for (const std::int64_t days : {1, 2}) {
      EXPECT_EQ(theme.colorProfile(Status::negativeComplete(mode), {}, days, context),
                theme.negativeCompletedColorProfile({}, context, faded, days > 1));
    }
  }
  EXPECT_EQ(theme.colorProfile(Status::positiveSkip, {}, 7, context),
            theme.positiveUncheckedColorProfile({}, context, true));
  for (const Status& status :
       {Status::positiveMiss, Status::negativeMiss, Status::negativeAllowedMiss}) {
    EXPECT_EQ(theme.colorProfile(status, {}, 7, context),
              theme.negativeMissedColorProfile({}, context));
  }
  EXPECT_NE(theme.negativeCompletedColorProfile({}, context, false, true),
            theme.negativeCompletedColorProfile({}, context, false, false));

  const Theme::Place place{theme.order, {}, context};
  const auto done = theme.colorProfile(Status::positiveComplete, {}, 7, context);
  EXPECT_EQ(done.bottomCaption, theme.theme.captionColorWhenCompleted(place));
  EXPECT_EQ(done.trackFill, theme.theme.trackFillColorWhenCompletedNegative(place));
  EXPECT_EQ(done.trackBackground, theme.theme.trackBackgroundColor(place));
  EXPECT_EQ(done.centerFill, theme.theme.centerFillColorsWhenCompleted(place));
  EXPECT_EQ(done.imageMask, theme.theme.imageMaskColorWhenCompleted(place));
  for (const auto& color : {done.trackFadedBackground, done.timer, done.notch, done.badge}) {
    EXPECT_EQ(color.a, 0);
  }
}

TEST(Theme, ColorsAreTheSchemes) {
  VirtualEnvironment environment;
  const std::tuple<Theme, const char*> first[] = {
      {{orange}, "FF704C"},
      {{green}, "99C05E"},
      {{neon}, "FF704C"},
      {{redBlue, Mode::alternate}, "C73035"},
      {{yellow, Mode::black}, "FDFF6F"},
      {{gold, Mode::normal, true}, "DF9800"},  // brightness 249/255 less a tenth
      {{black, Mode::normal, true}, "4C4C4C"}};
  for (const auto& [theme, hex] : first) EXPECT_EQ(theme.color().toHex(), hex) << hex;

  const auto inOrder = colors(neon, false);
  EXPECT_THAT(inOrder, ElementsAre(rgb(255, 112, 76), rgb(234, 63, 138), rgb(169, 68, 128),
                                   rgb(77, 43, 145)));
  EXPECT_EQ(colors(pride, false).size(), allCases<ThemeHelper::PrideColor>().size());
  environment.setDeviceModel("Watch6,1");
  EXPECT_EQ(Theme{green}.color(), rgb(192, 211, 122));
  EXPECT_EQ(Theme{blue}.color(), rgb(67, 172, 227));
}

TEST(Theme, ModesOfASchemeOfTwoColorsCanBeReversed) {
  VirtualEnvironment environment;
  EXPECT_THAT(validModes(pink), ElementsAre(Mode::normal, Mode::white, Mode::black));
  EXPECT_THAT(validModes(neon), ElementsAreArray(allCases<Mode>()));
  std::vector<int> reversible;
  for (const ColorScheme scheme : allCases<ColorScheme>()) {
    if (supportsAlternateMode(scheme)) reversible.push_back(static_cast<int>(scheme));
  }
  EXPECT_THAT(reversible, ElementsAre(16, 17, 18, 19, 20, 21, 23));

  const Theme theme{redBlue};
  const auto fillAt = [](const Theme& at, std::int64_t position) {
    return at.trackFillColor({{{}, position}, {}, Context::main});
  };
  EXPECT_EQ(fillAt(theme, 0), fillAt(theme.withMode(Mode::alternate), 1));
  EXPECT_EQ(theme.withMode(Mode::alternate).mode, Mode::alternate);
  EXPECT_EQ(Theme{pink}.withMode(Mode::alternate).mode, Mode::normal);
  const auto gradient = std::get<Theme::Gradient>(theme.backgroundType().value);
  const auto reversed =
      std::get<Theme::Gradient>(theme.withMode(Mode::alternate).backgroundType().value);
  EXPECT_EQ(gradient.from, reversed.to);
  EXPECT_EQ(gradient.mid(), reversed.mid());
}

TEST(Theme, HasStoredForms) {
  expectFixture("PositionedTheme", PositionedTheme{{royalPurple, Mode::white, true}, {{2}, 5}});
  expectFixture("ColorScheme", everyCase<ColorScheme>());
  expectRawValues<Mode>({"normal", "alternate", "white", "black"});
  for (const Theme& theme : everyTheme()) {
    EXPECT_EQ(Theme::fromStringValue(theme.stringValue()), theme);
  }
  EXPECT_EQ(Theme::fromStringValue("orange.normal"), Theme::hero);
  for (const char* text :
       {"", "ochre", "orange.grey", "orange.white.slam", "orange.white.grandSlam.", "."}) {
    EXPECT_FALSE(Theme::fromStringValue(text)) << text;
  }
}

TEST(Theme, HasDefaultsAndTitles) {
  VirtualEnvironment environment;
  const std::tuple<std::int64_t, ColorScheme> pages[] = {
      {0, orange}, {1, activityGreen}, {2, gold}, {3, royalPurple}, {4, orange}, {-1, orange}};
  for (const auto& [page, scheme] : pages) {
    EXPECT_EQ(Theme::defaultTheme(TaskPageNumber{page}), Theme{scheme}) << page;
  }
  EXPECT_EQ(Theme::defaultTheme(std::nullopt), Theme::hero);
  EXPECT_EQ((Theme{royalPurple, Mode::black}.localizedTitle()), "Royal purple (Black)");
  for (const ColorScheme scheme : allCases<ColorScheme>()) {
    EXPECT_THAT(localizedTitle(scheme), testing::Not(testing::HasSubstr("."))) << rawValue(scheme);
  }
}

TEST(ColorContrast, IsThatOfTheGuidelines) {
  EXPECT_DOUBLE_EQ(contrastRatio({}, white), 21);
  EXPECT_NEAR(contrastRatio(white, rgb(118, 118, 118)), 4.54, 0.005);
  EXPECT_NEAR(contrastRatio(rgb(255, 0, 0), white), 3.998, 0.001);
  EXPECT_EQ(withContrast(rgb(0, 0, 128), white, textContrast), rgb(0, 0, 128));
  const auto ochre = withContrast(rgb(255, 255, 0), white, shapeContrast);
  EXPECT_NEAR(contrastRatio(ochre, white), shapeContrast, 0.02);
  EXPECT_NEAR(ochre.toHSB().hue, 1 / 6.0, 1e-9);
  EXPECT_EQ(foregroundColor(rgb(206, 76, 76)), white);
  EXPECT_LT(relativeLuminance(foregroundColor(rgb(249, 170, 0))), 0.02);

  const OxCodableColor light = rgb(253, 255, 111);
  EXPECT_EQ(adjustBrightness(light, Mode::normal), light);
  EXPECT_EQ(adjustBrightness(light, Mode::alternate), light);
  EXPECT_LT(adjustBrightness(light, Mode::white).perceivedBrightness(), 0.8);
  EXPECT_GT(adjustBrightness({}, Mode::black).perceivedBrightness(), 0.2);
}

TEST(TaskDisplayOrder, IsOneStoredNumber) {
  const std::tuple<std::int64_t, TaskDisplayOrder> cases[] = {
      {1, TaskDisplayOrder::first}, {103, {{1}, 2}}, {199, {{1}, 98}}, {301, {{3}, 0}}};
  for (const auto& [value, order] : cases) {
    EXPECT_EQ(order.displayOrderValue(), value);
    EXPECT_EQ(TaskDisplayOrder::fromDisplayOrderValue(value), order);
    const auto range = TaskDisplayOrder::valueRange(order.pageNumber);
    EXPECT_TRUE(range.lower <= value && value < range.upper);
  }
  EXPECT_EQ(TaskDisplayOrder::fromDisplayOrderValue(200), (TaskDisplayOrder{{2}, 0}));
  EXPECT_EQ(TaskDisplayOrder::fromDisplayOrderValue(0), TaskDisplayOrder::first);
  EXPECT_EQ((TaskDisplayOrder{{2}, -3}).displayOrderValue(), 201);
}

}  // namespace
}  // namespace velloro
