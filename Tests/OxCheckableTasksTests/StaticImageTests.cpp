#include "CoreGraphics/CGContext.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxCache/ImageCache.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "OxCheckableTasks/StaticImages/CaptionText.h"
#include "OxCheckableTasks/StaticImages/StaticImageGenerator.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>

namespace velloro::StaticImageGenerator {
namespace {

using ::testing::HasSubstr;

Request ring() {
  return {.size = {100, 100},
          .scale = 1,
          .image = Request::Image{.icon = IconVisualRepresentation::icon(IconManagerIcon::book)}};
}

TEST(StaticImageKey, SaysAllThatTheImageDependsOn) {
  using Layout = Request::LayoutProperties;
  const std::vector<std::function<void(Layout&)>> layouts = {
      [](Layout& layout) { layout.iconPaddingScale = 0.5; },
      [](Layout& layout) { layout.colors.notch.g = 0.5; },
      [](Layout& layout) { layout.colors.centerFill.emplace_back(); },
      [](Layout& layout) { layout.colors.isFaded = true; },
      [](Layout& layout) { layout.bottomCaption = Caption{.text = "7"}; },
      [](Layout& layout) { layout.topCaption = Caption{.text = "7"}; },
      [](Layout& layout) {
        layout.topCaption = Caption{.text = "7", .size = Caption::Size::large};
      },
      [](Layout& layout) { layout.numSegments = 3; },
      [](Layout& layout) { layout.normalizedNotchThickness = 0; },
      [](Layout& layout) { layout.progress = 0.000001; },
      [](Layout& layout) { layout.subProgress = 0.5; },
      [](Layout& layout) { layout.trackProgress = 0.5; },
      [](Layout& layout) { layout.fillDirection = FillDirection::antiClockwise; },
      [](Layout& layout) { layout.normalizedTrackWidth = 0; },
      [](Layout& layout) { layout.useRoundedLineCaps = true; },
      [](Layout& layout) { layout.backgroundColor.a = 1; },
      [](Layout& layout) { layout.inset = 0.25; },
      [](Layout& layout) { layout.badges.emplace_back(); },
      [](Layout& layout) { layout.badges.resize(2); }};
  std::set<std::uint64_t> keys{ring().cacheKey("sig")->nsCacheKey()};
  for (const auto& change : layouts) {
    Request changed = ring();
    change(changed.layoutProperties);
    EXPECT_TRUE(keys.insert(changed.cacheKey("sig")->nsCacheKey()).second) << keys.size();
  }
  Request close = ring();
  close.layoutProperties.progress = 0.0000001;
  EXPECT_EQ(close.cacheKey("sig")->text(), ring().cacheKey("sig")->text());
  EXPECT_THAT(ring().cacheKey("sig")->text(),
              HasSubstr("100x100@1x,sig,hash=lp,ips=0.450000,cp=colorprofile,bc=FFFFFFFF,"));
  EXPECT_THAT(ring().cacheKey("sig")->text(), HasSubstr(",urlc=0,bg=00000000,in=0.00,icon=book"));
}

TEST(StaticImageKey, IsAbsentForWhatIsNotToBeKept) {
  Request dynamic = ring();
  dynamic.image->dynamic = true;
  EXPECT_TRUE(dynamic.cacheKey("sig")) << "a book looks the same in every state";
  dynamic.image->icon = IconVisualRepresentation::icon(IconManagerIcon::activity_rings);
  EXPECT_FALSE(dynamic.cacheKey("sig"));
  const std::function<void(Request&)> changes[] = {
      [](Request& request) { request.useCache = false; },
      [](Request& request) { request.image.reset(); },
      [](Request& request) { request.image->icon.reset(); }};
  for (const auto& change : changes) {
    Request changed = ring();
    change(changed);
    EXPECT_FALSE(changed.cacheKey("sig"));
  }
}

TEST(StaticImage, IsDrawnOnce) {
  const VirtualEnvironment environment;
  Request request = ring();
  const UIImage first = request.createSync();
  ASSERT_TRUE(first.cgImage);
  EXPECT_EQ(request.createSync().cgImage, first.cgImage);
  request.useCache = false;
  EXPECT_NE(request.createSync().cgImage, first.cgImage);
  request.size = {0, 10};
  EXPECT_FALSE(request.createSync().cgImage);
}

TEST(StaticImage, IsKeptUnderTheVersionOfTheArtwork) {
  VirtualEnvironment environment;
  const auto table = [&](const char* name, const char* json) {
    const auto folder = environment.directories().temporary / name;
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "Icons.json") << json;
    environment.setResources(folder);
    const Request request = ring();
    (void)request.createSync();
    return ImageCache::shared().imageUrl(*request.cacheKey("sig"));
  };
  const char* const empty = R"({"icons":{},"symbols":{},"drawings":{},"outlineWidths":{}})";
  const auto before = table("a", empty);
  EXPECT_EQ(table("b", empty), before) << "the same artwork";
  EXPECT_NE(
      table("c", R"({"icons":{},"symbols":{},"drawings":{"book":"M1 1h9"},"outlineWidths":{}})"),
      before);
}

/// The alpha of the pixel on the middle of the track, so many degrees clockwise from the top.
unsigned trackAlpha(const CGImage& image, double degrees) {
  const double half = static_cast<double>(image.width()) / 2;
  const double radius = half * (1 - CheckableTaskConstants::normalizedTrackWidth);
  const double angle = degrees / 180 * M_PI;
  return image.pixel(static_cast<std::size_t>(half + radius * std::sin(angle)),
                     static_cast<std::size_t>(half - radius * std::cos(angle))) >>
         24U;
}

constexpr unsigned filled = 255;
constexpr unsigned open = 179;  // 0.7

TEST(StaticImage, FillsTheTrackAndCutsItAheadOfTheFilledPart) {
  for (const auto direction : {FillDirection::clockwise, FillDirection::antiClockwise}) {
    Request request = ring();
    request.image.reset();
    request.layoutProperties.progress = 0.3;
    request.layoutProperties.numSegments = 3;
    request.layoutProperties.fillDirection = direction;
    const UIImage image = createNoCache(request);
    const double sign = direction == FillDirection::clockwise ? 1 : -1;
    for (const auto& [degrees, expected] :
         {std::tuple(4, filled), std::tuple(54, filled), std::tuple(104, filled),
          std::tuple(112, open), std::tuple(120, 0U), std::tuple(180, open), std::tuple(240, 0U),
          std::tuple(350, open)}) {
      EXPECT_NEAR(trackAlpha(*image.cgImage, sign * degrees), expected, 1) << sign * degrees;
    }
  }
}

TEST(StaticImage, LeavesNothingOfARoundEndInAnEmptyRing) {
  Request request = ring();
  request.layoutProperties.useRoundedLineCaps = true;
  EXPECT_NEAR(trackAlpha(*createNoCache(request).cgImage, -2), open, 1);
  request.layoutProperties.progress = 0.3;
  EXPECT_EQ(trackAlpha(*createNoCache(request).cgImage, -2), filled) << "over the open track";
}

TEST(StaticImage, ShowsAnImageInItsOwnPoints) {
  const auto square = std::make_shared<const CGImage>(8, 8, std::vector<std::uint32_t>(64, ~0U));
  Request request = ring();
  request.scale = 3;
  request.layoutProperties.normalizedTrackWidth = 0;
  for (const auto& [imageScale, side] : {std::tuple(1, 24), std::tuple(2, 12)}) {
    request.image = Request::Image{.image = UIImage{square, static_cast<double>(imageScale)}};
    const UIImage image = createNoCache(request);
    const auto pixels = image.cgImage->pixels();
    EXPECT_EQ(std::ranges::count(pixels, ~0U), side * side) << imageScale;
  }
}

TEST(StaticImage, IsHalfTransparentAsAWholeWhenFaded) {
  Request request = ring();
  request.layoutProperties.colors = ColorProfile::defaultCompleted().faded();
  const UIImage image = createNoCache(request);
  EXPECT_NEAR(trackAlpha(*image.cgImage, 90), 128, 1);
  EXPECT_NEAR(image.cgImage->pixel(50, 12) >> 24U, 128, 1);
}

TEST(Badge, SitsOnTheTrackOrInsideIt) {
  using enum BadgePosition;
  for (const auto& [position, x, y] :
       {std::tuple(topTrailing, 72, 72), std::tuple(bottomTrailing, 72, 8),
        std::tuple(bottomLeading, 8, 8), std::tuple(topLeading, 8, 72),
        std::tuple(topTrailingInside, 70, 70), std::tuple(bottomLeadingInside, 10, 10)}) {
    const Badge badge{.position = position, .normalizedBadgeDiameter = 0.2};
    const CGRect frame = badge.frame({.origin = {}, .size = {100, 100}}, 10);
    EXPECT_EQ(frame, (CGRect{{static_cast<double>(x), static_cast<double>(y)}, {20, 20}}))
        << rawValue(position);
  }
  EXPECT_EQ(normalizedMonogram("ABCD"), "AD");
  EXPECT_EQ(normalizedMonogram("AB"), "AB");
  EXPECT_EQ(normalizedMonogram("👩‍🚀b👨‍👩‍👧"), "👩‍🚀👨‍👩‍👧");
}

TEST(Caption, ShrinksUntilItStaysInsideTheTrack) {
  CaptionPlace place{.radius = 42, .trackWidth = 6, .distance = 27};
  EXPECT_EQ(captionFactor({10, 12}, place), 1);
  for (const auto& [isBesideDot, room] : {std::pair(false, 33.0), std::pair(true, 29.7)}) {
    place.isBesideDot = isBesideDot;
    for (const double width : {40.0, 60.0, 400.0}) {
      const double factor = captionFactor({width, 12}, place);
      EXPECT_LT(factor, 1);
      EXPECT_NEAR(std::hypot(width / 2 * factor, 27 + 0.3 * 12 * factor), room, 1e-9);
    }
  }
  EXPECT_EQ(captionFactor({40, 12}, {.radius = 42, .trackWidth = 20, .distance = 27}), 1);
}

}  // namespace
}  // namespace velloro::StaticImageGenerator
