#include "OxCheckableTasks/Ring/SubProgress.h"

#include "OxKit/Numbers.h"

#include <cmath>
#include <numbers>

namespace velloro {
namespace {

using Style = CheckableTaskSubProgressStyle;

constexpr double turn = 360;
constexpr double secondsPerRound = 60;
constexpr double fillWidthPerTrackWidth = 0.35;
constexpr double fillGap = 1.1;
constexpr double dotWidthPerTrackWidth = 0.7;
constexpr double dotGap = 1.3;

/// Fast at first: 1 − (1 − t)⁶.
double easeOutSixth(double t) {
  return 1 - std::pow(1 - t, 6);
}

struct Fill {
  double pct;
  bool isReversed = false;
};

Fill fillOf(const Style::FillEaseOut& style, double s) {
  if (style.steps < 1) return {s};
  const double steps = style.steps;
  const double done = std::floor(wholeUnlessFractional(s * steps));
  return {(done + easeOutSixth(difference(s * steps, done))) / steps};
}

Fill fillOf(const Style::FillUnfillLinear&, double s) {
  return s < 0.5 ? Fill{2 * s} : Fill{1 - 2 * (s - 0.5), true};
}

Fill fillOf(const Style::FillLinear&, double s) {
  return {s};
}
Fill fillOf(const Style::Dot&, double) {
  return {0};
}

double endDegrees(const Fill& fill, FillDirection direction, double angleOffset) {
  const bool isForward = (direction == FillDirection::clockwise) != fill.isReversed;
  if (isForward) return angleOffset + fill.pct * turn;
  const double end = turn - fill.pct * turn + angleOffset;
  return end == 0 ? turn : end;
}

bool isSameAngle(double left, double right) {
  return std::abs(std::remainder(left - right, turn)) < 1e-9;
}

ArcAngles fillAngles(const Fill& fill, FillDirection direction, double angleOffset) {
  const double end = endDegrees(fill, direction, angleOffset);
  // An arc of next to nothing ends where it begins, too.
  if (fill.pct > 0.5 && isSameAngle(end, angleOffset)) return ArcAngles::fullCircle();
  return {.startDegrees = angleOffset,
          .endDegrees = end,
          .clockwise = direction == FillDirection::antiClockwise};
}

double wrappedSeconds(double seconds) {
  const double rest = std::fmod(seconds, secondsPerRound);
  return rest < 0 ? rest + secondsPerRound : rest;
}

/// The share of the way to the next second's place after the share `b` of the second.
double dotEasing(CheckableTaskDotStyle style, double b) {
  switch (style) {
    case CheckableTaskDotStyle::linear:
      return b;
    case CheckableTaskDotStyle::easeIn:
      return std::pow(b, 6);
    case CheckableTaskDotStyle::easeInOut:
      return (1 - std::cos(b * std::numbers::pi)) / 2;
    case CheckableTaskDotStyle::easeOut:
      return easeOutSixth(b);
    case CheckableTaskDotStyle::discrete:
      return 0;
  }
  return b;
}

double dotDegrees(const Style::Dot& dot, double progress, FillDirection direction) {
  const double seconds = wrappedSeconds(dot.totalDuration * progress);
  const double whole = std::floor(wholeUnlessFractional(seconds));
  const double eased = whole + dotEasing(dot.style, difference(seconds, whole));
  const double degrees = eased / secondsPerRound * turn;
  if (direction == FillDirection::clockwise) return degrees;
  return degrees == turn ? turn : turn - degrees;
}

}  // namespace

std::optional<SubProgressFillProperties> calculateSubProgressFillProperties(
    const Style& style, double subProgress, const RingMeasures& ring, double angleOffset) {
  if (!(subProgress > 0) || std::holds_alternative<Style::Dot>(style.value)) return std::nullopt;
  const Fill fill =
      std::visit([&](const auto& form) { return fillOf(form, subProgress); }, style.value);
  const double width = fillWidthPerTrackWidth * ring.trackWidth;
  return SubProgressFillProperties{
      .angles = fillAngles(fill, ring.fillDirection, angleOffset),
      .radius = ring.radius - ring.trackWidth / 2 - (width + ring.trackWidth) / 2 * fillGap,
      .trackWidth = width};
}

CGRect calculateSubProgressTimerDotFrame(const Style::Dot& dot, double progress, CGPoint center,
                                         const RingMeasures& ring) {
  const double angle = dotDegrees(dot, progress, ring.fillDirection) / 180 * std::numbers::pi;
  const double diameter = dotWidthPerTrackWidth * ring.trackWidth;
  const double distance =
      ring.radius - ring.trackWidth / 2 - (diameter + ring.trackWidth) / 2 * dotGap;
  return {.origin = {.x = distance * std::sin(angle) + center.x - diameter / 2,
                     .y = distance * std::cos(angle) + center.y - diameter / 2},
          .size = {.width = diameter, .height = diameter}};
}

}  // namespace velloro
