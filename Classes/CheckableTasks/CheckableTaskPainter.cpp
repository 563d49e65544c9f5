#include "CheckableTasks/CheckableTaskPainter.h"

#include "CoreGraphics/CGContext.h"
#include "OxCheckableTasks/BadgeRenderer.h"
#include "OxCheckableTasks/CaptionText.h"
#include "OxCheckableTasks/CheckableTaskConstants.h"
#include "OxCheckableTasks/CheckableTaskRoundCircler.h"
#include "OxCheckableTasks/IconArtwork.h"

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

/// A colour as it is seen over another one, without transparency.
OxCodableColor blended(const OxCodableColor& color, const OxCodableColor& background) {
  const auto mix = [&](double over, double under) {
    return over * color.a + under * (1 - color.a);
  };
  return {.r = mix(color.r, background.r),
          .g = mix(color.g, background.g),
          .b = mix(color.b, background.b),
          .a = std::max(color.a, background.a)};
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

void View::Painter::dropImages() {
  maskedImage_.reset();
  bottomCaption_.reset();
  topCaption_.reset();
  captionsAreLaidOut_ = false;
}

const ColorProfile& View::Painter::profile() const {
  return view_.state() == State::completed ? view_.configuration().completedColorProfile
                                           : view_.configuration().uncheckedColorProfile;
}

const ColorProfile& View::Painter::profileWhenChecked() const {
  return hasTrack(view_.state()) ? view_.configuration().uncheckedColorProfile
                                 : view_.configuration().completedColorProfile;
}

void View::Painter::draw(CGContext& context) {
  const SavedGState saved(context);
  context.setAlpha(profile().alpha());
  drawRing(context);
  drawCaptions(context);
  drawBadges(context);
  drawIcon(context);
}

void View::Painter::drawRing(CGContext& context) const {
  const Configuration& ring = view_.configuration();
  const CGRect frame = view_.bounds();
  const double trackWidth = frame.size.width * ring.normalizedTrackWidth;
  const double notchThickness = frame.size.width * ring.normalizedNotchThickness;
  if (!hasTrack(view_.state())) {
    return sharedCircler().drawWithoutTrack(
        context, {.frame = frame,
                  .trackWidth = trackWidth,
                  .numSegments = ring.numSegments,
                  .notchThickness = notchThickness,
                  .centerFillColors = ring.completedColorProfile.centerFill});
  }
  const ColorProfile& colors = ring.uncheckedColorProfile;
  const SubProgress inner = shownSubProgress(view_);
  sharedCircler().drawWithTrack(context, {.frame = frame,
                                          .trackWidth = trackWidth,
                                          .fillDirection = ring.fillDirection,
                                          .progress = view_.progressCurrent(),
                                          .subProgress = inner.value,
                                          .trackProgress = ring.trackProgress,
                                          .numSegments = ring.numSegments,
                                          .notchThickness = notchThickness,
                                          .trackBackgroundColor = colors.trackBackground,
                                          .trackFadedBackgroundColor = colors.trackFadedBackground,
                                          .trackFillColor = colors.trackFill,
                                          .centerFillColors = colors.centerFill,
                                          .subProgressStyle = inner.style,
                                          .subProgressFillColor = inner.color,
                                          .useRoundedLineCaps = ring.useRoundedLineCaps});
}

void View::Painter::drawCaptions(CGContext& context) {
  const Configuration& ring = view_.configuration();
  if (!captionsAreLaidOut_) {
    bottomCaption_ = layOut(ring.bottomCaption, profileWhenChecked().bottomCaption);
    topCaption_ = layOut(ring.topCaption, profileWhenChecked().topCaption);
    captionsAreLaidOut_ = true;
  }
  const auto [width, height] = view_.bounds().size;
  const double track = width * ring.normalizedTrackWidth;
  const double icon = height * CheckableTaskConstants::defaultIconPaddingScale;
  if (bottomCaption_) {
    bottomCaption_->drawCentered(context,
                                 {width / 2, ((height - track) + (height + icon) / 2) / 2});
  }
  if (topCaption_) {
    topCaption_->drawCentered(context, {width / 2, (track + (height - icon) / 2) / 2});
  }
}

std::shared_ptr<TextLayout> View::Painter::layOut(const Caption& caption,
                                                  const OxCodableColor& color) const {
  if (!caption.font) return nullptr;
  const NSWritingDirection direction = view_.configuration().writingDirection;
  const NSAttributedString::Attributes attributes{
      .font = *caption.font, .color = color, .writingDirection = direction};
  std::vector<NSAttributedString> items;
  const auto addIcons = [&](const std::vector<CaptionIcon>& icons) {
    for (const CaptionIcon& icon : icons) {
      const auto shown = icon.visualRepresentation();
      const double alpha = color.a * profile().alpha() * icon.alpha();
      if (shown) {
        items.push_back(shown->inlineAttributedString(
            *caption.font, CGColor(color).withAlpha(alpha), direction, {}));
      }
    }
  };
  addIcons(caption.leadingIcons);
  if (!caption.text.value_or("").empty()) items.emplace_back(*caption.text, attributes);
  addIcons(caption.trailingIcons);
  if (items.empty()) return nullptr;
  return TextLayout::make(joinedCaption(items, attributes), {.scale = view_.contentsScale()});
}

void View::Painter::drawBadges(CGContext& context) const {
  const Configuration& ring = view_.configuration();
  const CGRect bounds = view_.bounds();
  for (const Badge& badge : ring.badges) {
    CGRect frame = badge.frame(bounds, bounds.size.width * ring.normalizedTrackWidth);
    frame.origin.y = bounds.size.height - frame.origin.y - frame.size.height;
    OxCodableColor circle = ring.uncheckedColorProfile.badge;
    circle.a *= profile().alpha();
    const BadgeDrawing drawing{
        .badge = badge,
        .frame = frame,
        .circleColor = blended(circle, ring.containingBackgroundColor),
        .contentColor = ring.uncheckedColorProfile.badgeContent,
        .contentDiameter = frame.size.width * std::min(badge.normalizedContentDiameter, 1.0),
        .scale = view_.contentsScale()};
    context.setAlpha(1);
    drawBadgeCircle(context, drawing);
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

void View::Painter::drawIcon(CGContext& context) {
  const auto [width, height] = view_.bounds().size;
  const CGSize box{.width = iconSide(width), .height = iconSide(height)};
  if (!maskedImage_) {
    const auto& icon = shownIcon();
    maskedImage_ = UIImage{};
    if (icon) {
      maskedImage_ = IconArtwork{.representation = *icon,
                                 .side = std::min(box.width, box.height),
                                 .scale = view_.contentsScale()}
                         .masked(profileWhenChecked().imageMask);
    }
  }
  if (!maskedImage_->cgImage) return;
  const CGSize fitted = calculateImageSize(maskedImage_->size(), box);
  const CGSize size{.width = std::round(fitted.width), .height = std::round(fitted.height)};
  context.draw(*maskedImage_->cgImage, {.origin = {.x = std::round((width - size.width) / 2),
                                                   .y = std::round((height - size.height) / 2)},
                                        .size = size});
}

}  // namespace velloro
