#include "OxCheckableTasks/Ring/CheckableTaskRoundCircler.h"

#include "CoreGraphics/CGContext.h"
#include "OxCheckableTasks/Ring/CheckableTaskConstants.h"
#include "OxCheckableTasks/Ring/SegmentRenderer.h"
#include "OxCheckableTasks/Ring/TrackArcs.h"

#include <algorithm>
#include <ranges>

namespace velloro {
namespace {

using Style = CheckableTaskSubProgressStyle;

constexpr double top = 270;

double radius(CGRect frame) {
  return std::min(frame.size.width, frame.size.height) / 2;
}

CGPoint center(CGRect frame) {
  return {.x = frame.origin.x + frame.size.width / 2, .y = frame.origin.y + frame.size.height / 2};
}

CGRect inset(CGRect frame, double distance) {
  return {.origin = {.x = frame.origin.x + distance, .y = frame.origin.y + distance},
          .size = {.width = frame.size.width - 2 * distance,
                   .height = frame.size.height - 2 * distance}};
}

/// Turns the surface upside down within the frame.
void flip(CGContext& context, CGRect frame) {
  context.translateBy(0, 2 * frame.origin.y + frame.size.height);
  context.scaleBy(1, -1);
}

std::string cacheKey(std::span<const OxCodableColor> colors) {
  std::string key;
  for (const OxCodableColor& color : colors) key += color.toHexAlpha();
  return key;
}

CGGradient gradient(std::span<const OxCodableColor> colors, std::vector<double> locations) {
  return {.colors = {colors.begin(), colors.end()}, .locations = std::move(locations)};
}

CGPath arc(CGPoint middle, double radius, const ArcAngles& angles) {
  CGPath path;
  path.addArc(middle, radius, angles.startDegrees, angles.endDegrees, angles.clockwise);
  return path;
}

const OxCodableColor& colorOf(const Track& track, TrackArc::Part part) {
  switch (part) {
    case TrackArc::Part::fill:
      return track.fillColor;
    case TrackArc::Part::background:
      return track.backgroundColor;
    case TrackArc::Part::fadedBackground:
      return track.fadedBackgroundColor;
  }
  return track.fillColor;
}

}  // namespace

CGRect discBelowTrack(CGRect frame, const ColorProfile& colors, double pixel) {
  constexpr double pixels = 0.75;
  const bool isHidden = colors.trackFill.a == 1 && colors.trackBackground.a == 1;
  return isHidden ? inset(frame, pixels * pixel) : frame;
}

void CheckableTaskGenericCircler::drawSegments(CGContext& context, const TrackedRing& ring) {
  if (ring.numSegments < 2) return;
  const SavedGState saved(context);
  flip(context, ring.frame);
  SegmentRenderer::drawSegments(
      context,
      {.center = center(ring.frame),
       .trackWidth = ring.trackWidth,
       .radiusAtTrackCenter = (ring.frame.size.width - ring.trackWidth) / 2,
       .numSegments = ring.numSegments,
       .progress = ring.progress,
       .fillDirection = ring.fillDirection},
      ring.notchThickness, OxCodableColor{.a = 0});
}

void CheckableTaskRoundCircler::drawWithTrack(CGContext& context, const TrackedRing& ring) {
  drawBackground(context, ring.frame, ring.trackWidth, ring.centerFillColors);
  drawTrack(context, {.center = center(ring.frame),
                      .radius = radius(ring.frame) - ring.trackWidth / 2,
                      .width = ring.trackWidth,
                      .fillDirection = ring.fillDirection,
                      .progress = ring.progress,
                      .trackProgress = ring.trackProgress,
                      .fillColor = ring.trackFillColor,
                      .backgroundColor = ring.trackBackgroundColor,
                      .fadedBackgroundColor = ring.trackFadedBackgroundColor,
                      .useRoundedLineCaps = ring.useRoundedLineCaps});
  drawSegments(context, ring);
  drawSubProgress(context, ring);
}

void CheckableTaskRoundCircler::drawWithoutTrack(CGContext& context, const TracklessRing& ring) {
  drawBackground(context, ring.frame, ring.trackWidth, ring.centerFillColors);
  drawSegments(context, {.frame = ring.frame,
                         .trackWidth = ring.trackWidth,
                         .numSegments = ring.numSegments,
                         .notchThickness = ring.notchThickness});
}

void CheckableTaskRoundCircler::drawBackground(CGContext& context, CGRect frame,
                                               std::optional<double> trackWidth,
                                               std::span<const OxCodableColor> centerFillColors) {
  if (centerFillColors.empty()) return;
  if (centerFillColors.size() == 1) {
    if (centerFillColors.front().a == 0) return;
    context.setFillColor(centerFillColors.front());
    return context.fillEllipse(frame);
  }
  updateGradients(centerFillColors);
  const CGPoint start = frame.origin;
  const CGPoint end{.x = start.x + frame.size.width, .y = start.y + frame.size.height};
  const SavedGState saved(context);
  context.clipToEllipse(frame);
  context.drawLinearGradient(*grandSlamGradient_, start, end);
  if (!trackWidth) return;
  context.clipToEllipse(inset(frame, *trackWidth));
  context.drawLinearGradient(*grandSlamOutlineGradient_, start, end);
}

void CheckableTaskRoundCircler::updateGradients(std::span<const OxCodableColor> colors) {
  std::string key = cacheKey(colors);
  if (grandSlamCacheKey_ == key) return;
  using namespace CheckableTaskConstants;
  const std::vector<OxCodableColor> reversed(colors.rbegin(), colors.rend());
  grandSlamGradient_ = gradient(colors, gradientLocations(colors.size()));
  grandSlamOutlineGradient_ = gradient(reversed, gradientOutlineLocations(colors.size()));
  grandSlamCacheKey_ = std::move(key);
}

void CheckableTaskRoundCircler::drawTrack(CGContext& context, const Track& track) {
  const SavedGState saved(context);
  context.setLineWidth(track.width);
  auto arcs = trackArcs({.progress = track.progress, .trackProgress = track.trackProgress},
                        track.fillDirection);
  // Round caps lie over the neighbours, which would otherwise cover them.
  if (track.useRoundedLineCaps) std::ranges::reverse(arcs);
  for (const auto& [part, angles] : arcs) {
    const bool isRound = part == TrackArc::Part::fill && track.useRoundedLineCaps;
    context.setLineCap(isRound ? CGLineCap::round : CGLineCap::butt);
    context.setStrokeColor(colorOf(track, part));
    context.stroke(arc(track.center, track.radius, angles));
  }
}

void CheckableTaskRoundCircler::drawSubProgress(CGContext& context, const TrackedRing& ring) {
  const RingMeasures measures{.radius = radius(ring.frame),
                              .trackWidth = ring.trackWidth,
                              .fillDirection = ring.fillDirection};
  const CGPoint middle = center(ring.frame);
  if (const auto* dot = std::get_if<Style::Dot>(&ring.subProgressStyle.value)) {
    const SavedGState saved(context);
    flip(context, ring.frame);
    context.setFillColor(ring.subProgressFillColor);
    return context.fillEllipse(
        calculateSubProgressTimerDotFrame(*dot, ring.subProgress, middle, measures));
  }
  const auto fill =
      calculateSubProgressFillProperties(ring.subProgressStyle, ring.subProgress, measures, top);
  if (fill) strokeSubProgress(context, middle, *fill, ring.subProgressFillColor);
}

void CheckableTaskRoundCircler::strokeSubProgress(CGContext& context, CGPoint center,
                                                  const SubProgressFillProperties& fill,
                                                  const OxCodableColor& color) {
  const SavedGState saved(context);
  context.setLineCap(CGLineCap::butt);
  context.setLineWidth(fill.trackWidth);
  context.setStrokeColor(color);
  context.stroke(arc(center, fill.radius, fill.angles));
}

}  // namespace velloro
