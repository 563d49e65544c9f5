#include "CheckableTasks/CheckableTaskView.h"
#include "CoreGraphics/CGImage.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "OxCheckableTasks/Ring/CheckableTaskConstants.h"
#include "OxCheckableTasks/StaticImages/StaticImageGenerator.h"
#include "Support/Golden.h"

#include <functional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using View = CheckableTaskView;
using Picture = std::shared_ptr<const CGImage>;

/// Draws views of 48 by 48 points; the window is kept, as it is from frame to frame.
struct RingPictureTest : ::testing::Test {
  Picture draw(const std::function<void(View::Configuration&)>& look, double progress = 0.3,
               double subProgress = 0, View::State state = View::State::checkable) {
    view->update(look);
    view->setProgress(progress, subProgress, 0);
    view->setState(state);
    window.setContentView(view);
    window.displayIfNeeded();
    return window.snapshot();
  }

  VirtualEnvironment environment;
  UIWindow window{1};
  std::shared_ptr<View> view = View::make({48, 48});
};

void threeSegments(View::Configuration& ring) {
  ring.numSegments = 3;
  ring.uncheckedColorProfile.centerFill = {{.r = 0.1, .g = 0.3, .b = 0.6}};
  ring.normalizedTrackWidth = 0.12;
}

TEST_F(RingPictureTest, ThreeSegments) {
  expectGolden("three-segments", draw(threeSegments));
  expectGolden("three-segments-anticlockwise",
               draw([](auto& ring) { ring.fillDirection = FillDirection::antiClockwise; }));
  expectGolden("three-segments-completed", draw([](auto&) {}, 1, 0, View::State::completed));
}

TEST_F(RingPictureTest, SubProgressAndRoundEnds) {
  expectGolden("sub-progress", draw(threeSegments, 1.0 / 3, 0.6));
  expectGolden("round-ends", draw([](auto& ring) {
                 ring.numSegments = 1;
                 ring.useRoundedLineCaps = true;
                 ring.trackProgress = 0.6;
               }));
}

TEST_F(RingPictureTest, TimerDot) {
  expectGolden("timer-dot", draw(
                                [](auto& ring) {
                                  threeSegments(ring);
                                  ring.uncheckedColorProfile.timer = {.r = 1, .g = 1, .b = 1};
                                  ring.subProgressBehaviour = View::SubProgressBehaviour::timer;
                                  ring.subProgressTimerTotalDuration = 90;
                                },
                                0.5));
}

TEST_F(RingPictureTest, GradientAndBadges) {
  const auto gradient = [](View::Configuration& ring) {
    threeSegments(ring);
    ring.uncheckedColorProfile.centerFill = {{.r = 1}, {.b = 1}};
  };
  expectGolden("gradient", draw(gradient));
  expectGolden("faded-badges", draw([](auto& ring) {
                 ring.uncheckedColorProfile.isFaded = true;
                 ring.containingBackgroundColor = {.r = 1, .g = 1, .b = 1};
                 for (const BadgePosition position :
                      {BadgePosition::topTrailing, BadgePosition::bottomLeadingInside}) {
                   ring.badges.push_back({.position = position});
                 }
               }));
}

TEST_F(RingPictureTest, AClearIconIsCutOutOfBadgeAndTrack) {
  const auto heart = IconVisualRepresentation::icon(IconManagerIcon::heart);
  const Picture drawn = draw([&](auto& ring) {
    threeSegments(ring);
    ring.uncheckedColorProfile.badgeContent = {.a = 0};
    ring.badges = {{.content = BadgeContent{.displayRepresentation = {heart, {}}}}};
  });
  EXPECT_EQ(drawn->pixel(39, 9), 0U) << "the middle of the badge";
  EXPECT_EQ(drawn->pixel(39, 4) >> 24U, 255U);
}

TEST_F(RingPictureTest, AFadedBadgeKeepsItsColorWithoutABackground) {
  const Picture drawn = draw([&](auto& ring) {
    ring.uncheckedColorProfile.isFaded = true;
    ring.uncheckedColorProfile.badge = {.r = 1, .g = 1, .b = 1};
    ring.badges = {{.position = BadgePosition::topTrailing}};
  });
  for (unsigned shift = 0; shift < 32; shift += 8) {
    EXPECT_NEAR(drawn->pixel(39, 9) >> shift & 0xFFU, 128, 1) << "no track shines through";
  }
}

TEST_F(RingPictureTest, SignsAreAsFadedAsTheCaption) {
  const auto mostOpaque = [&](bool isSign) {
    const Picture drawn = draw([&](auto& ring) {
      ring.uncheckedColorProfile.isFaded = true;
      ring.bottomCaption = {.text = isSign ? "" : "▇▇", .font = UIFont::system(12)};
      if (isSign) ring.bottomCaption.leadingIcons = {{CaptionIcon::Kind::bestStreak}};
    });
    unsigned most = 0;
    for (std::size_t x = 16; x < 32; ++x) {
      for (std::size_t y = 34; y < 43; ++y) most = std::max(most, drawn->pixel(x, y) >> 24U);
    }
    return most;
  };
  EXPECT_NEAR(mostOpaque(true), mostOpaque(false), 20);
}

TEST_F(RingPictureTest, TheDiscDoesNotShineThroughTheEdgeOfTheTrack) {
  const Picture drawn = draw(
      [](auto& ring) {
        ring.uncheckedColorProfile.trackFill = {};  // black on white
        ring.uncheckedColorProfile.trackBackground = {};
        ring.uncheckedColorProfile.centerFill = {{.r = 1, .g = 1, .b = 1}};
      },
      1);
  for (std::size_t y = 0; y < 24; ++y) {
    std::size_t x = 0;
    while (x < 24 && drawn->pixel(x, y) == 0) ++x;
    EXPECT_TRUE(x == 24 || (drawn->pixel(x, y) & 0xFFU) <= 8) << x << ", " << y;
  }
}

TEST_F(RingPictureTest, AViewAndAStaticImageAreAlike) {
  StaticImageGenerator::Request request{.size = {48, 48}};
  auto& layout = request.layoutProperties;
  layout.numSegments = 4;
  layout.progress = 0.3;
  layout.trackProgress = 0.6;
  layout.colors.centerFill = {{.r = 1}, {.b = 1}};
  const Picture drawn = draw([&](auto& ring) {
    ring.normalizedTrackWidth = CheckableTaskConstants::normalizedTrackWidth;
    ring.numSegments = layout.numSegments;
    ring.trackProgress = layout.trackProgress;
    ring.uncheckedColorProfile = layout.colors;
  });
  EXPECT_LE(difference(*drawn, *StaticImageGenerator::createNoCache(request).cgImage).greatest, 2);
}

TEST_F(RingPictureTest, AFrameShowsTheViewAsItIsNow) {
  const auto fresh = [](const View& other) {
    UIWindow clean(other.contentsScale());
    const auto copy = View::make(other.bounds().size);
    copy->configure(other.configuration());
    copy->setProgress(other.progress(), 0, 0);
    copy->setState(other.state());
    clean.setContentView(copy);
    clean.displayIfNeeded();
    return clean.snapshot();
  };
  const auto expectFresh = [&](const Picture& drawn, const char* after) {
    const Picture expected = fresh(*view);
    ASSERT_EQ(drawn->pixels().size(), expected->pixels().size()) << after;
    EXPECT_EQ(difference(*drawn, *expected).greatest, 0) << after;
  };
  expectFresh(draw(threeSegments), "the first frame");
  expectFresh(draw([](auto&) {}, 0.8), "progress");
  expectFresh(draw([](auto& ring) { ring.badges.emplace_back(); }), "a badge");
  expectFresh(draw([](auto& ring) { ring.uncheckedColorProfile.centerFill[0].g = 1; }), "a colour");
  expectFresh(draw([](auto&) {}, 0.8, 0, View::State::completed), "a state");
  view->setSize({60, 60});
  expectFresh(draw([](auto&) {}), "a size");
  view->setContentsScale(2);
  expectFresh(draw([](auto&) {}), "a scale");
}

}  // namespace
}  // namespace velloro
