#include "OxCheckableTasks/IconArtwork.h"

#include "CoreGraphics/CGContext.h"
#include "CoreGraphics/FontGlyph.h"
#include "Foundation/String.h"
#include "OxCheckableTasks/IconTable.h"
#include "OxCheckableTasks/SlashPath.h"
#include "UIKit/TextLayout.h"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace velloro {
namespace {

constexpr OxCodableColor black;

using Representation = IconVisualRepresentation;

std::size_t pixels(const IconArtwork& artwork) {
  return static_cast<std::size_t>(std::max(1.0, std::round(artwork.side * artwork.scale)));
}

CGRect square(std::size_t side) {
  const auto length = static_cast<double>(side);
  return {.origin = {}, .size = {.width = length, .height = length}};
}

/// The letters with which the words of a name begin, two at most: "WG" for "water_glass".
std::string initials(std::string_view name) {
  std::string letters;
  bool isFirst = true;
  for (const char character : name) {
    const bool isLetter = std::isalnum(static_cast<unsigned char>(character)) != 0;
    if (isLetter && isFirst && letters.size() < 2) {
      letters += static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    }
    isFirst = !isLetter;
  }
  return letters;
}

/// The path, moved and scaled so that its longer side fills the box of 1 by 1, in the middle.
CGPath fittedToUnitBox(const CGPath& path) {
  const CGRect box = path.boundingBox();
  const double side = std::max(box.size.width, box.size.height);
  if (!(side > 0)) return path;
  return path.applying(CGAffineTransform::translation(-box.origin.x - box.size.width / 2,
                                                      -box.origin.y - box.size.height / 2)
                           .concatenating(CGAffineTransform::scale(1 / side, 1 / side))
                           .concatenating(CGAffineTransform::translation(0.5, 0.5)));
}

std::shared_ptr<const CGImage> glyphMask(const IconTable::Glyph& glyph, std::size_t side) {
  const auto path = fontGlyph(glyph.font, glyph.name);
  return path ? maskOfUnitPath(fittedToUnitBox(*path), side) : nullptr;
}

/// The text as large as fits into the square.
std::shared_ptr<const CGImage> textImage(std::string_view text, std::size_t side,
                                         UIFont::Weight weight) {
  const auto context = CGContext::bitmap(side, side);
  if (!context) return nullptr;
  const auto length = static_cast<double>(side);
  const auto layOut = [&](double size) {
    return TextLayout::make(
        NSAttributedString(text, {.font = UIFont::system(size, weight), .color = black}));
  };
  auto layout = layOut(length);
  if (!layout) return nullptr;
  const CGSize natural = layout->size();
  const double factor = std::min(length / natural.width, length * 1.25 / natural.height);
  if (factor < 1) layout = layOut(length * factor);
  if (layout) layout->drawCentered(*context, {length / 2, length / 2});
  return context->makeImage();
}

std::shared_ptr<const CGImage> drawn(const IconManagerIcon& icon, std::size_t side) {
  if (const auto glyph = IconTable::shared().icon(icon)) {
    if (auto mask = glyphMask(*glyph, side)) return mask;
  }
  return textImage(initials(rawValue(icon)), side, UIFont::Weight::bold);
}

std::shared_ptr<const CGImage> drawn(const OxSymbol& symbol, std::size_t side) {
  if (const auto glyph = IconTable::shared().symbol(symbol.name)) {
    if (auto mask = glyphMask(*glyph, side)) return mask;
  }
  return textImage(initials(symbol.name), side, UIFont::Weight::bold);
}

std::shared_ptr<const CGImage> drawn(const Representation::Emoji& emoji, std::size_t side) {
  return textImage(emoji.text, side, UIFont::Weight::regular);
}

std::shared_ptr<const CGImage> drawn(const Representation::Monogram& monogram, std::size_t side) {
  return textImage(monogram.text, side, UIFont::Weight::bold);
}

/// Quarter turns to the right, behind a mirroring from left to right.
struct Turn {
  int quarters;
  bool isMirrored;
};

Turn turn(OxImageOrientation orientation) {
  switch (orientation) {
    case OxImageOrientation::up:
      return {0, false};
    case OxImageOrientation::down:
      return {2, false};
    case OxImageOrientation::left:
      return {3, false};
    case OxImageOrientation::right:
      return {1, false};
    case OxImageOrientation::upMirrored:
      return {0, true};
    case OxImageOrientation::downMirrored:
      return {2, true};
    case OxImageOrientation::leftMirrored:
      return {3, true};
    case OxImageOrientation::rightMirrored:
      return {1, true};
  }
  return {0, false};
}

void drawSlash(CGContext& context, CGRect rect, const OxCodableColor& color) {
  context.setBlendMode(CGBlendMode::clear);
  context.fill(slashOutline(rect));
  context.setBlendMode(color.a == 0 ? CGBlendMode::clear : CGBlendMode::normal);
  context.setFillColor(color);
  context.fill(slash(rect));
  context.setBlendMode(CGBlendMode::normal);
}

}  // namespace

UIImage IconArtwork::image() const {
  const std::size_t length = pixels(*this);
  const UIImage upright{
      .cgImage = std::visit([length](const auto& what) { return drawn(what, length); },
                            representation.visualRepresentation.value),
      .scale = scale};
  return applyOrientationAndOverlay(upright, representation.displayProperties, black);
}

UIImage IconArtwork::masked(const OxCodableColor& color) const {
  const UIImage mask = image();
  if (!mask.cgImage) return {};
  const auto context = CGContext::bitmap(mask.cgImage->width(), mask.cgImage->height());
  if (!context) return {};
  const CGRect rect = square(mask.cgImage->width());
  if (representation.visualRepresentation.kind() == Representation::EncodingPrefix::emoji) {
    context->setAlpha(color.a);
    context->draw(*mask.cgImage, rect);
  } else {
    context->setFillColor(color);
    context->fill(*mask.cgImage, rect);
  }
  return {.cgImage = context->makeImage(), .scale = scale};
}

UIImage applyOrientationAndOverlay(const UIImage& image,
                                   const Representation::DisplayProperties& properties,
                                   const OxCodableColor& overlayColor) {
  const bool isPlain = properties.orientation == OxImageOrientation::up && !properties.overlay;
  if (isPlain || !image.cgImage) return image;
  const auto width = static_cast<double>(image.cgImage->width());
  const auto height = static_cast<double>(image.cgImage->height());
  const auto [quarters, isMirrored] = turn(properties.orientation);
  const bool isLying = quarters % 2 != 0;
  const CGSize size{.width = isLying ? height : width, .height = isLying ? width : height};
  const auto context = CGContext::bitmap(static_cast<std::size_t>(size.width),
                                         static_cast<std::size_t>(size.height));
  if (!context) return image;
  context->saveGState();
  context->translateBy(size.width / 2, size.height / 2);
  context->rotateBy(90.0 * quarters);
  context->scaleBy(isMirrored ? -1 : 1, 1);
  context->draw(*image.cgImage, {.origin = {-width / 2, -height / 2}, .size = {width, height}});
  context->restoreGState();
  if (properties.overlay) drawSlash(*context, {.origin = {}, .size = size}, overlayColor);
  return {.cgImage = context->makeImage(), .scale = image.scale};
}

CGSize calculateImageSize(CGSize image, CGSize box) {
  if (image.width <= 0 || image.height <= 0) return {};
  const double factor = std::min({box.width / image.width, box.height / image.height, 1.0});
  return {.width = image.width * factor, .height = image.height * factor};
}

}  // namespace velloro
