#include "VelloroPictures/PicturePainter.h"

#include "CoreGraphics/CGImage.h"
#include "CoreGraphics/CGVectorPicture.h"
#include "Foundation/Text/String.h"
#include "Foundation/Values/Data.h"
#include "OxCheckableTasks/Icons/IconArtwork.h"
#include "OxCheckableTasks/Ring/CheckableTaskConstants.h"
#include "OxKit/RuntimeError.h"
#include "UIKit/TextLayout.h"
#include "VelloroCore/Appearance/ColorContrast.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace velloro {
namespace {

constexpr double top = 270;
constexpr double ringWidth = 0.13;  // per diameter
constexpr double iconScale = 3;     // pixels per point

/// In the direction of its own letters: a title may be in another language than the program.
std::shared_ptr<TextLayout> layoutOf(const std::string& text, const PicturePainter::Text& look) {
  return TextLayout::make(NSAttributedString(
      text, {.font = UIFont::system(look.fontSize, look.weight), .color = look.color}));
}

/// As much of the text as fits.
std::shared_ptr<TextLayout> fitted(std::string_view text, double width,
                                   const PicturePainter::Text& look) {
  auto layout = layoutOf(std::string(text), look);
  if (!layout || layout->size().width <= width) return layout;
  const auto characters = graphemes(text);
  const auto shortened = [&](std::size_t count) {
    std::string part;
    for (std::size_t i = 0; i < count; ++i) part += characters[i];
    return layoutOf(part + "…", look);
  };
  std::size_t fits = 0, tooLong = characters.size();
  while (fits + 1 < tooLong) {
    const std::size_t middle = (fits + tooLong) / 2;
    (shortened(middle)->size().width <= width ? fits : tooLong) = middle;
  }
  return shortened(fits);
}

RuntimeError impossible(CGSize size) {
  return RuntimeError(
      stringWithFormat("a picture of %.0f by %.0f points can't be made", size.width, size.height));
}

}  // namespace

std::string Picture::png(const PictureStyle& style, double scale) const {
  const auto pixels = [&](double points) {
    return static_cast<std::size_t>(std::ceil(points * scale));
  };
  const auto context = CGContext::bitmap(pixels(size().width), pixels(size().height));
  if (!context) throw impossible(size());
  context->scaleBy(scale, scale);
  draw(*context, style);
  const auto bytes = context->makeImage()->pngData();
  if (!bytes) throw impossible(size());
  return std::string(bytes->text());
}

std::string Picture::svg(const PictureStyle& style) const {
  const auto picture = CGVectorPicture::svg(size());
  if (!picture) throw impossible(size());
  draw(picture->context(), style);
  return picture->finish();
}

CGRect PicturePainter::placed(CGRect rect) const {
  if (style_.isRightToLeft()) rect.origin.x = width_ - rect.origin.x - rect.size.width;
  return rect;
}

void PicturePainter::fillBackground(CGSize size) {
  context_.setFillColor(style_.background);
  context_.fill(CGRect{{}, size});
}

void PicturePainter::fill(CGRect rect, const OxCodableColor& color, double radius) {
  context_.setFillColor(color);
  context_.fill(CGPath::roundedRect(placed(rect), radius));
}

void PicturePainter::stroke(CGRect rect, const OxCodableColor& color, double lineWidth,
                            double radius) {
  context_.setStrokeColor(color);
  context_.setLineWidth(lineWidth);
  context_.stroke(CGPath::roundedRect(placed(rect), radius));
}

void PicturePainter::fill(const CGPath& path, CGPoint origin, double width,
                          const OxCodableColor& color) {
  const CGPoint at = placed({origin, {width, 0}}).origin;
  context_.setFillColor(color);
  context_.fill(path.applying(CGAffineTransform::translation(at.x, at.y)));
}

void PicturePainter::stroke(const CGPath& path, CGPoint origin, double width,
                            const OxCodableColor& color, double lineWidth) {
  const CGPoint at = placed({origin, {width, 0}}).origin;
  context_.setStrokeColor(color);
  context_.setLineWidth(lineWidth);
  context_.setLineCap(CGLineCap::round);
  context_.stroke(path.applying(CGAffineTransform::translation(at.x, at.y)));
}

void PicturePainter::ring(CGPoint center, double diameter, double share,
                          const std::shared_ptr<const IconDisplayRepresentation>& icon) {
  const CGPoint middle = center.transpose(style_.isRightToLeft(), width_);
  const double line = diameter * ringWidth;
  const double radius = (diameter - line) / 2;
  const auto arc = [&](double part, const OxCodableColor& color) {
    CGPath path;
    path.addArc(middle, radius, top, top + 360 * part, false);
    context_.setStrokeColor(color);
    context_.stroke(path);
  };
  const double done = std::clamp(share, 0.0, 1.0);
  context_.setLineWidth(line);
  context_.setLineCap(CGLineCap::round);
  arc(1, mixed(style_.background, style_.accent, 0.22));
  if (done > 0) arc(done, style_.accent);
  if (icon) {
    this->icon(*icon, middle, diameter * CheckableTaskConstants::defaultIconPaddingScale);
  } else if (done == 1) {
    checkMark(middle, diameter);
  }
}

void PicturePainter::checkMark(CGPoint middle, double diameter) {
  CGPath mark;
  mark.move({middle.x - diameter * 0.15, middle.y + diameter * 0.01});
  mark.addLine({middle.x - diameter * 0.04, middle.y + diameter * 0.12});
  mark.addLine({middle.x + diameter * 0.17, middle.y - diameter * 0.12});
  context_.setLineWidth(diameter * ringWidth * 0.7);
  context_.stroke(mark);
}

void PicturePainter::icon(const IconDisplayRepresentation& icon, CGPoint middle, double side) {
  const UIImage image =
      IconArtwork{.representation = icon, .side = side, .scale = iconScale}.masked(style_.accent);
  if (!image.cgImage) return;
  context_.draw(*image.cgImage, {{middle.x - side / 2, middle.y - side / 2}, {side, side}});
}

void PicturePainter::write(std::string_view text, CGRect rect, const Text& look) {
  if (text.empty()) return;
  const auto layout = fitted(text, rect.size.width, look);
  if (!layout) return;
  const auto [width, height] = layout->size();
  double x = rect.origin.x;
  if (look.alignment == Alignment::center) x += (rect.size.width - width) / 2;
  if (look.alignment == Alignment::trailing) x += rect.size.width - width;
  const double y = rect.origin.y + (rect.size.height - height) / 2;
  layout->draw(context_, placed({{x, y}, {width, height}}).origin);
}

}  // namespace velloro
