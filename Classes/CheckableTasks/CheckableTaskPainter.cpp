#include "CheckableTasks/CheckableTaskPainter.h"

#include "CoreGraphics/CGContext.h"
#include "OxCheckableTasks/Icons/IconArtwork.h"
#include "OxCheckableTasks/Ring/CheckableTaskConstants.h"
#include "OxCheckableTasks/Ring/CheckableTaskRoundCircler.h"
#include "OxCheckableTasks/StaticImages/BadgeRenderer.h"
#include "OxCheckableTasks/StaticImages/CaptionText.h"

#include <algorithm>
#include <cmath>

namespace velloro {
namespace {

using SubProgressStyle = CheckableTaskSubProgressStyle;
using View = CheckableTaskView;

/// One for all views: its gradients are those of the last ring, and most rings look alike.
CheckableTaskRoundCircler& sharedCircler() {
  static CheckableTaskRoundCircler circler;
  return circler;
}

bool hasTrack(View::State state) {
  return state == View::State::checkable || state == View::State::checkedInner;
}

double iconSide(double length) {
  return std::ceil(length * CheckableTaskConstants::defaultIconPaddingScale);
}

/// A colour as it is seen over another one: as transparent as the two are together, and without a
/// background the colour itself.
OxCodableColor blended(const OxCodableColor& color, const OxCodableColor& background) {
  const double rest = background.a * (1 - color.a);
  const double alpha = color.a + rest;
  if (alpha == 0) return color;
  const auto mix = [&](double over, double under) {
    return (over * color.a + under * rest) / alpha;
  };
  return {.r = mix(color.r, background.r),
          .g = mix(color.g, background.g),
          .b = mix(color.b, background.b),
          .a = alpha};
}

struct SubProgress {
  SubProgressStyle style;
  double value;
  OxCodableColor color;
};

SubProgress shownSubProgress(const View& view) {
  const View::Configuration& ring = view.configuration();
  const ColorProfile& colors = ring.uncheckedColorProfile;
  const double part = view.state() == View::State::checkable ? view.subProgressCurrent() : 1;
  const double seconds = ring.subProgressTimerTotalDuration;
  switch (ring.subProgressBehaviour) {
    case View::SubProgressBehaviour::partialCompletions:
      return {SubProgressStyle::fillLinear(), part, colors.trackFill};
    case View::SubProgressBehaviour::timer:
      return {SubProgressStyle::dot(CheckableTaskDotStyle::easeOut, seconds),
              view.progressCurrent(), colors.timer};
    case View::SubProgressBehaviour::timerWithPartialCompletions:
      return {SubProgressStyle::fillEaseOut(static_cast<int>(std::lround(seconds))), part,
              colors.trackFill};
  }
  return {SubProgressStyle::fillLinear(), part, colors.trackFill};
}

}  // namespace

const ColorProfile& View::Painter::profile() const {
  return view_.state() == State::completed ? view_.configuration().completedColorProfile
                                           : view_.configuration().uncheckedColorProfile;
}

const ColorProfile& View::Painter::profileWhenChecked() const {
  return hasTrack(view_.state()) ? view_.configuration().uncheckedColorProfile
                                 : view_.configuration().completedColorProfile;
}

double View::Painter::trackWidth() const {
  return view_.bounds().size.width * view_.configuration().normalizedTrackWidth;
}

void View::Painter::draw(CGContext& context) {
  const auto& [size, scale, below, above] = still();
  const SavedGState saved(context);
  const auto show = [&](const std::shared_ptr<const CGImage>& image) {
    if (!image) return false;
    context.draw(*image, {.origin = {},
                          .size = {.width = static_cast<double>(image->width()) / scale,
                                   .height = static_cast<double>(image->height()) / scale}});
    return true;
  };
  show(below);
  context.setAlpha(profile().alpha());
  drawRing(context);
  context.setAlpha(1);
  if (show(above)) return;
  context.setAlpha(profile().alpha());
  drawAbove(context);
}

const View::Painter::Still& View::Painter::still() {
  const CGSize size = view_.bounds().size;
  const double scale = view_.contentsScale();
  if (still_ && still_->size == size && still_->scale == scale) return *still_;
  still_ = Still{
      .size = size,
      .scale = scale,
      .below = picture([&](CGContext& context) { drawDisc(context); }),
      .above = cutsThrough() ? nullptr : picture([&](CGContext& context) { drawAbove(context); })};
  return *still_;
}

bool View::Painter::cutsThrough() const {
  const Configuration& ring = view_.configuration();
  if (ring.badges.empty()) return false;
  return ring.uncheckedColorProfile.badgeContent.a == 0 || badgeCircle().a < 1;
}

template <typename Draw>
std::shared_ptr<const CGImage> View::Painter::picture(const Draw& draw) const {
  const auto pixels = [&](double points) {
    return static_cast<std::size_t>(std::max(0.0, std::ceil(points * view_.contentsScale())));
  };
  const auto [width, height] = view_.bounds().size;
  const auto context = CGContext::bitmap(pixels(width), pixels(height));
  if (!context) return nullptr;
  context->scaleBy(view_.contentsScale(), view_.contentsScale());
  context->setAlpha(profile().alpha());
  draw(*context);
  return context->makeImage();
}

void View::Painter::drawDisc(CGContext& context) const {
  const ColorProfile& colors = profileWhenChecked();
  // Below a half transparent track the disc is seen up to its edge.
  const bool isBelowTrack = hasTrack(view_.state()) && colors.alpha() == 1;
  const CGRect frame = view_.bounds();
  const double pixel = 1 / view_.contentsScale();
  sharedCircler().drawBackground(context,
                                 isBelowTrack ? discBelowTrack(frame, colors, pixel) : frame,
                                 trackWidth(), colors.centerFill);
}

void View::Painter::drawRing(CGContext& context) const {
  const Configuration& ring = view_.configuration();
  const CGRect frame = view_.bounds();
  const double notchThickness = frame.size.width * ring.normalizedNotchThickness;
  if (!hasTrack(view_.state())) {
    return sharedCircler().drawWithoutTrack(context, {.frame = frame,
                                                      .trackWidth = trackWidth(),
                                                      .numSegments = ring.numSegments,
                                                      .notchThickness = notchThickness,
                                                      .centerFillColors = {}});
  }
  const ColorProfile& colors = ring.uncheckedColorProfile;
  const SubProgress inner = shownSubProgress(view_);
  sharedCircler().drawWithTrack(context, {.frame = frame,
                                          .trackWidth = trackWidth(),
                                          .fillDirection = ring.fillDirection,
                                          .progress = view_.progressCurrent(),
                                          .subProgress = inner.value,
                                          .trackProgress = ring.trackProgress,
                                          .numSegments = ring.numSegments,
                                          .notchThickness = notchThickness,
                                          .trackBackgroundColor = colors.trackBackground,
                                          .trackFadedBackgroundColor = colors.trackFadedBackground,
                                          .trackFillColor = colors.trackFill,
                                          .subProgressStyle = inner.style,
                                          .subProgressFillColor = inner.color,
                                          .useRoundedLineCaps = ring.useRoundedLineCaps});
}

void View::Painter::drawAbove(CGContext& context) const {
  drawCaptions(context);
  drawBadges(context);
  drawIcon(context);
}

void View::Painter::drawCaptions(CGContext& context) const {
  const Configuration& ring = view_.configuration();
  const ColorProfile& colors = profileWhenChecked();
  const auto [width, height] = view_.bounds().size;
  const CaptionRing place{.frame = view_.bounds(),
                          .radius = std::min(width, height) / 2,
                          .trackWidth = trackWidth(),
                          .iconHeight = height * CheckableTaskConstants::defaultIconPaddingScale,
                          .hasDot = ring.subProgressBehaviour == SubProgressBehaviour::timer,
                          .scale = view_.contentsScale()};
  drawBottomCaption(context, line(ring.bottomCaption, colors.bottomCaption), place);
  drawTopCaption(context, line(ring.topCaption, colors.topCaption), place);
}

CaptionLine View::Painter::line(const Caption& caption, const OxCodableColor& color) const {
  if (!caption.font) return {};
  const auto inked = [&](const std::vector<CaptionIcon>& icons) {
    std::vector<CaptionLine::Icon> result;
    for (const CaptionIcon& icon : icons) {
      // The surface adds the profile's own alpha, as it does to the text.
      const CGColor ink = CGColor(color).withAlpha(icon.alpha());
      if (const auto shown = icon.visualRepresentation()) result.push_back({*shown, ink});
    }
    return result;
  };
  return {.leadingIcons = inked(caption.leadingIcons),
          .text = caption.text.value_or(""),
          .trailingIcons = inked(caption.trailingIcons),
          .attributes = {.font = *caption.font,
                         .color = color,
                         .writingDirection = view_.configuration().writingDirection}};
}

OxCodableColor View::Painter::badgeCircle() const {
  OxCodableColor circle = view_.configuration().uncheckedColorProfile.badge;
  circle.a = profile().alpha();
  return blended(circle, view_.configuration().containingBackgroundColor);
}

void View::Painter::drawBadges(CGContext& context) const {
  const Configuration& ring = view_.configuration();
  const CGRect bounds = view_.bounds();
  for (const Badge& badge : ring.badges) {
    const auto drawing =
        BadgeDrawing::of(badge, {.ring = bounds,
                                 .trackWidth = trackWidth(),
                                 .surface = bounds,
                                 .circleColor = badgeCircle(),
                                 .contentColor = ring.uncheckedColorProfile.badgeContent,
                                 .scale = view_.contentsScale()});
    context.setAlpha(1);
    // Where the page is not known the badge lets it through, but not the track.
    if (drawing.circleColor.a < 1) context.setBlendMode(CGBlendMode::copy);
    drawBadgeCircle(context, drawing);
    context.setBlendMode(CGBlendMode::normal);
    context.setAlpha(profile().alpha());
    drawBadgeContent(context, drawing);
  }
}

const std::optional<IconDisplayRepresentation>& View::Painter::shownIcon() const {
  const Configuration& ring = view_.configuration();
  switch (view_.state()) {
    case State::checkable:
      return ring.uncheckedIcon;
    case State::checkedInner:
    case State::checked:
      return ring.checkedIcon;
    case State::completed:
      return ring.uncheckedWhenCompleteIcon;
  }
  return ring.uncheckedIcon;
}

void View::Painter::drawIcon(CGContext& context) const {
  const auto& icon = shownIcon();
  if (!icon) return;
  const auto [width, height] = view_.bounds().size;
  const CGSize box{.width = iconSide(width), .height = iconSide(height)};
  const UIImage image = IconArtwork{.representation = *icon,
                                    .side = std::min(box.width, box.height),
                                    .scale = view_.contentsScale()}
                            .masked(profileWhenChecked().imageMask);
  if (!image.cgImage) return;
  const CGSize fitted = calculateImageSize(image.size(), box);
  const CGSize size{.width = std::round(fitted.width), .height = std::round(fitted.height)};
  context.draw(*image.cgImage, iconFrame(size, view_.bounds()));
}

}  // namespace velloro
