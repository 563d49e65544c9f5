#include "OxCheckableTasks/Icons/IconArtwork.h"

#include "CoreGraphics/CGContext.h"
#include "CoreGraphics/FontGlyph.h"
#include "Foundation/Text/String.h"
#include "Foundation/Values/NSCache.h"
#include "OxCheckableTasks/Icons/IconTable.h"
#include "OxCheckableTasks/Icons/SlashPath.h"
#include "UIKit/TextLayout.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <utility>

namespace velloro {
namespace {

constexpr OxCodableColor black;

using Image = std::shared_ptr<const CGImage>;
using Representation = IconVisualRepresentation;

std::size_t pixels(const IconArtwork& artwork) {
  return static_cast<std::size_t>(std::max(1.0, std::round(artwork.side * artwork.scale)));
}

CGRect square(std::size_t side) {
  const auto length = static_cast<double>(side);
  return {.origin = {}, .size = {.width = length, .height = length}};
}

char uppercased(char letter) {
  return static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
}

/// The letters with which the words of a name begin, two at most: "WG" for "water_glass".
std::string initials(std::string_view name) {
  std::string letters;
  bool isFirst = true;
  for (const char character : name) {
    const bool isLetter = std::isalnum(static_cast<unsigned char>(character)) != 0;
    if (isLetter && isFirst && letters.size() < 2) {
      letters += uppercased(character);
    }
    isFirst = !isLetter;
  }
  return letters;
}

/// Emoji, capital letters and digits have none: in UTF-8 they begin with an ASCII character up to Z
/// or with a byte from E2 on.
bool hasDescenders(std::string_view text) {
  return std::ranges::any_of(text, [](char byte) {
    const auto value = static_cast<unsigned char>(byte);
    const bool isFirst = (value & 0xC0) != 0x80;
    return isFirst && value > 'Z' && value < 0xE2;
  });
}

/// What brings the path into the middle of the box of 1 by 1, so large that its longer side, with
/// half a line at each end, fills it. What is meant to be small, a dash or a chevron, grows less,
/// lest it look coarse beside the others.
CGAffineTransform fitToUnitBox(const CGPath& path, double lineWidth, double mostGrowth) {
  const CGRect box = path.boundingBox();
  const double side = std::max(box.size.width, box.size.height) + lineWidth;
  const double factor = side > 0 ? std::min(1 / side, mostGrowth) : 1;
  return CGAffineTransform::translation(-box.origin.x - box.size.width / 2,
                                        -box.origin.y - box.size.height / 2)
      .concatenating(CGAffineTransform::scale(factor, factor))
      .concatenating(CGAffineTransform::translation(0.5, 0.5));
}

/// A mask of so many pixels a side, drawn in a box of 1 by 1.
template <typename Draw>
Image maskOfUnitBox(std::size_t side, const Draw& draw) {
  const auto context = CGContext::bitmap(side, side);
  if (!context) return nullptr;
  context->scaleBy(static_cast<double>(side), static_cast<double>(side));
  context->setLineCap(CGLineCap::round);
  draw(*context);
  return context->makeImage();
}

/// A font is opened anew for each glyph that is read, which costs more than all the drawing.
template <typename Make>
Image cached(const std::string& what, std::size_t side, const Make& make) {
  constexpr std::size_t byteLimit = 8'000'000;
  // Never destroyed: images are drawn in the background until the very end.
  static auto* images = new NSCache<std::string, Image>({.totalCost = byteLimit});
  const std::string key = std::to_string(side) + "|" + what;
  if (auto held = images->object(key)) return *std::move(held);
  Image made = make();
  if (made) images->setObject(key, made, side * side * 4);
  return made;
}

Image glyphMask(const IconTable::Glyph& glyph, std::size_t side) {
  return cached(glyph.font + "|" + glyph.name, side, [&]() -> Image {
    constexpr double mostGrowth = 1.6;
    const auto found = fontGlyph(glyph.font, glyph.name);
    if (!found) return nullptr;
    const CGPath path = found->applying(fitToUnitBox(*found, glyph.outlineWidth, mostGrowth));
    return maskOfUnitBox(side, [&](CGContext& context) {
      context.fill(path);
      context.setLineWidth(glyph.outlineWidth);
      if (glyph.outlineWidth > 0) context.stroke(path);
    });
  });
}

Image drawingMask(const std::string& pathData, std::size_t side) {
  return cached(pathData, side, [&]() -> Image {
    constexpr double lineWidth = 2;
    constexpr double mostGrowth = 1.3 / 24;
    const auto path = CGPath::fromSVG(pathData);
    if (!path) return nullptr;
    return maskOfUnitBox(side, [&](CGContext& context) {
      context.concatenate(fitToUnitBox(*path, lineWidth, mostGrowth));
      context.setLineWidth(lineWidth);
      context.stroke(*path);
    });
  });
}

/// The text in the middle of the box, as large as fits into it. A line is higher than capital
/// letters and emoji, and with these alone it may stand out of the box by a quarter.
void drawFitted(CGContext& context, std::string_view text, CGRect box, UIFont::Weight weight) {
  const auto layOut = [&](double size) {
    return TextLayout::make(
        NSAttributedString(text, {.font = UIFont::system(size, weight), .color = black}));
  };
  auto layout = layOut(box.size.height);
  if (!layout) return;
  const CGSize natural = layout->size();
  if (!(natural.width > 0)) return;
  const double overhang = hasDescenders(text) ? 1 : 1.25;
  const double factor =
      std::min(box.size.width / natural.width, box.size.height * overhang / natural.height);
  if (factor != 1) layout = layOut(box.size.height * factor);
  layout->drawCentered(context,
                       {box.origin.x + box.size.width / 2, box.origin.y + box.size.height / 2});
}

Image textImage(std::string_view text, std::size_t side, UIFont::Weight weight) {
  const std::string what = std::string(text) + "|" + std::to_string(std::to_underlying(weight));
  return cached(what, side, [&]() -> Image {
    const auto context = CGContext::bitmap(side, side);
    if (!context) return nullptr;
    drawFitted(*context, text, square(side), weight);
    return context->makeImage();
  });
}

/// A calendar's page with a number of days.
Image pageImage(const Image& page, std::string_view days, std::size_t side) {
  const auto context = CGContext::bitmap(side, side);
  if (!context) return nullptr;
  const auto length = static_cast<double>(side);
  context->draw(*page, square(side));
  drawFitted(*context, days,
             {.origin = {length * 0.2, length * 0.4}, .size = {length * 0.6, length * 0.45}},
             UIFont::Weight::bold);
  return context->makeImage();
}

Image drawn(const IconManagerIcon& icon, std::size_t side) {
  constexpr std::string_view letter = "char_";
  constexpr std::string_view page = "duration_";
  const std::string_view name = rawValue(icon);
  if (const auto glyph = IconTable::shared().icon(icon)) {
    if (auto mask = glyphMask(*glyph, side)) {
      if (!name.starts_with(page)) return mask;
      return pageImage(mask, name.substr(page.size()), side);
    }
  }
  if (const auto lines = IconTable::shared().drawing(icon)) {
    if (auto mask = drawingMask(*lines, side)) return mask;
  }
  std::string text = initials(name);
  if (name.starts_with(letter)) {
    text = name.substr(letter.size());
    std::ranges::transform(text, text.begin(), uppercased);
  }
  return textImage(text, side, UIFont::Weight::bold);
}

Image drawn(const OxSymbol& symbol, std::size_t side) {
  if (const auto glyph = IconTable::shared().symbol(symbol.name)) {
    if (auto mask = glyphMask(*glyph, side)) return mask;
  }
  return textImage(initials(symbol.name), side, UIFont::Weight::bold);
}

Image drawn(const Representation::Emoji& emoji, std::size_t side) {
  return textImage(emoji.text, side, UIFont::Weight::regular);
}

Image drawn(const Representation::Monogram& monogram, std::size_t side) {
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

void drawOutlinedSlash(CGContext& context, CGRect rect, const OxCodableColor& color) {
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
  if (properties.overlay) drawOutlinedSlash(*context, {.origin = {}, .size = size}, overlayColor);
  return {.cgImage = context->makeImage(), .scale = image.scale};
}

CGSize calculateImageSize(CGSize image, CGSize box) {
  if (image.width <= 0 || image.height <= 0) return {};
  const double factor = std::min({box.width / image.width, box.height / image.height, 1.0});
  return {.width = image.width * factor, .height = image.height * factor};
}

CGRect iconFrame(CGSize image, CGRect frame) {
  return {.origin = {.x = frame.origin.x + std::round((frame.size.width - image.width) / 2),
                     .y = frame.origin.y + std::round((frame.size.height - image.height) / 2)},
          .size = image};
}

}  // namespace velloro
