#include "OxCheckableTasks/Ring/SegmentNotches.h"
#include "OxCheckableTasks/Ring/SubProgress.h"
#include "OxCheckableTasks/Ring/TrackArcs.h"

#include <cmath>
#include <string>
#include <tuple>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using ::testing::ElementsAre;
using Style = CheckableTaskSubProgressStyle;

constexpr auto clockwise = FillDirection::clockwise;
constexpr auto antiClockwise = FillDirection::antiClockwise;

TrackArc arc(TrackArc::Part part, double start, double end, bool flag = false) {
  return {part, {start, end, flag}};
}

TEST(TrackArcs, ShareTheTrackFromTheTopOnwards) {
  using enum TrackArc::Part;
  EXPECT_THAT(trackArcs({0, 1}, clockwise), ElementsAre(arc(background, 0, 360)));
  EXPECT_THAT(trackArcs({0, 0}, clockwise), ElementsAre(arc(fadedBackground, 0, 360)));
  for (const double full : {1.0, 1.5}) {
    EXPECT_THAT(trackArcs({full, 1}, antiClockwise), ElementsAre(arc(fill, 0, 360)));
  }
  EXPECT_THAT(
      trackArcs({0.25, 0.5}, clockwise),
      ElementsAre(arc(fill, 270, 0), arc(background, 0, 90), arc(fadedBackground, 90, 270)));
  EXPECT_THAT(trackArcs({0.25, 0.5}, antiClockwise),
              ElementsAre(arc(fill, 270, 180, true), arc(background, 180, 90, true),
                          arc(fadedBackground, 90, 270, true)));
  EXPECT_THAT(trackArcs({0.75, 0.5}, clockwise),
              ElementsAre(arc(fill, 270, 180), arc(fadedBackground, 180, 270)));
  // No sliver is left over where 1 - 0.3 - 0.7 is not quite nothing.
  EXPECT_EQ(trackArcs({0.3, 1}, clockwise).size(), 2U);
  EXPECT_EQ(trackArcs({0.000000001, 1}, clockwise).size(), 1U);
}

std::string cutNotches(int segments, double progress, FillDirection direction = clockwise) {
  std::string places;
  for (const SegmentNotch& notch : segmentNotches({.center = {},
                                   .trackWidth = 20,
                                   .radiusAtTrackCenter = 90,
                                   .numSegments = segments,
                                   .progress = progress,
                                   .fillDirection = direction})) {
    EXPECT_NEAR(std::hypot(notch.outer.x, notch.outer.y), 100, 1e-9);
    EXPECT_NEAR(std::hypot(notch.inner.x, notch.inner.y), 100 * (1 - 20.0 / 90), 1e-9);
    const double degrees = std::atan2(notch.outer.x, notch.outer.y) * 180 / M_PI;
    places += std::to_string(std::lround(degrees < -1e-9 ? degrees + 360 : degrees)) + " ";
  }
  return places;
}

TEST(SegmentNotches, AreCutAheadOfTheFilledPart) {
  const std::tuple<int, double, const char*> cases[] = {
      {4, 0, "0 90 180 270 "},
      {4, 0.1, "90 180 270 "},
      {4, 0.25, "180 270 "},
      {4, 0.5, "270 "},
      {4, 1, ""},
      {3, 1.0 / 3, "240 "},
      {3, 0.3, "120 240 "},
      {10, 0.3, "144 180 216 252 288 324 "},
      {10, 0.1 + 0.2, "144 180 216 252 288 324 "}};
  for (const auto& [segments, progress, places] : cases) {
    EXPECT_EQ(cutNotches(segments, progress), places) << segments << " at " << progress;
  }
  EXPECT_EQ(cutNotches(3, 0.1, antiClockwise), "240 120 ");
}

constexpr RingMeasures ring(FillDirection direction) {
  return {.radius = 50, .trackWidth = 10, .fillDirection = direction};
}

TEST(SubProgress, RunsInsideTheTrack) {
  const auto fill =
      calculateSubProgressFillProperties(Style::fillLinear(), 0.25, ring(clockwise), 270).value();
  EXPECT_NEAR(fill.trackWidth, 3.5, 1e-9);
  EXPECT_NEAR(fill.radius, 50 - 5 - 7.425, 1e-9);
  for (const double none : {0.0, -1.0}) {
    EXPECT_FALSE(
        calculateSubProgressFillProperties(Style::fillLinear(), none, ring(clockwise), 270));
  }
}

TEST(SubProgress, EndsWhereItsStyleSays) {
  constexpr double early = 1.0 - 1.0 / 64;  // 1 − (1 − ½)⁶
  const std::tuple<Style, double, FillDirection, ArcAngles> cases[] = {
      {Style::fillLinear(), 0.25, clockwise, {270, 360, false}},
      {Style::fillLinear(), 0.25, antiClockwise, {270, 540, true}},
      {Style::fillLinear(), 1, clockwise, ArcAngles::fullCircle()},
      {Style::fillLinear(), 1, antiClockwise, ArcAngles::fullCircle()},
      {Style::fillLinear(), 1e-15, clockwise, {270, 270, false}},
      {Style::fillUnfillLinear(), 0.25, clockwise, {270, 450, false}},
      {Style::fillUnfillLinear(), 0.5, clockwise, ArcAngles::fullCircle()},
      {Style::fillUnfillLinear(), 0.75, clockwise, {270, 450, false}},
      {Style::fillUnfillLinear(), 0.875, antiClockwise, {270, 360, true}},
      {Style::fillEaseOut(10), 0.05, clockwise, {270, 270 + 36 * early, false}},
      {Style::fillEaseOut(10), 0.1 + 0.2, clockwise, {270, 378, false}},
      {Style::fillEaseOut(10), 1, clockwise, ArcAngles::fullCircle()},
      {Style::fillEaseOut(0), 0.5, clockwise, {270, 450, false}},
  };
  for (const auto& [style, subProgress, direction, angles] : cases) {
    const auto fill =
        calculateSubProgressFillProperties(style, subProgress, ring(direction), 270).value();
    EXPECT_EQ(fill.angles.startDegrees, angles.startDegrees) << subProgress;
    EXPECT_NEAR(fill.angles.endDegrees, angles.endDegrees, 1e-6) << subProgress;
    EXPECT_EQ(fill.angles.clockwise, angles.clockwise) << subProgress;
  }
}

/// Where the dot stands, in seconds of its round.
double dotSeconds(CheckableTaskDotStyle style, double duration, double progress,
                  FillDirection direction) {
  const CGRect frame =
      calculateSubProgressTimerDotFrame({style, duration}, progress, {100, 100}, ring(direction));
  EXPECT_NEAR(frame.size.width, 7, 1e-9);
  const double x = frame.origin.x + 3.5 - 100;
  const double y = frame.origin.y + 3.5 - 100;
  EXPECT_NEAR(std::hypot(x, y), 50 - 5 - 17.0 / 2 * 1.3, 1e-9);
  const double seconds = std::atan2(x, y) / M_PI * 30;
  return seconds < -1e-9 ? seconds + 60 : seconds;
}

TEST(SubProgress, DotGoesRoundOnceAMinuteAndTicks) {
  using enum CheckableTaskDotStyle;
  const std::tuple<CheckableTaskDotStyle, double, double, double> cases[] = {
      {easeOut, 90, 0.5, 45},
      {linear, 90, 0.25, 22.5},
      {linear, 600, 0.55, 30},
      {discrete, 60, 0.175, 10},
      {easeIn, 60, 0.175, 10 + 1.0 / 64},
      {easeOut, 60, 0.175, 11 - 1.0 / 64},
      {easeInOut, 60, 0.175, 10.5},
      {easeOut, 60, 1, 0},
      {easeOut, 100, 0.07, 7}};
  for (const auto& [style, duration, progress, seconds] : cases) {
    EXPECT_NEAR(dotSeconds(style, duration, progress, clockwise), seconds, 1e-6) << seconds;
    EXPECT_NEAR(dotSeconds(style, duration, progress, antiClockwise),
                seconds == 0 ? 0 : 60 - seconds, 1e-6)
        << seconds;
  }
}

}  // namespace
}  // namespace velloro
