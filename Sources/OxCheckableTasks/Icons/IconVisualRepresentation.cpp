#include "OxCheckableTasks/Icons/IconVisualRepresentation.h"

#include "Foundation/Coding/Coding.h"
#include "Foundation/Text/String.h"
#include "OxCheckableTasks/Icons/IconArtwork.h"
#include "OxKit/OxCodableColor.h"

#include <memory>
#include <utility>

namespace velloro {
namespace {

using Prefix = IconVisualRepresentation::EncodingPrefix;
using Properties = IconVisualRepresentation::DisplayProperties;

std::optional<IconVisualRepresentation> iconNamed(std::string_view name) {
  const auto icon = fromRawValue<IconManagerIcon>(name);
  return icon ? std::optional(IconVisualRepresentation::icon(*icon)) : std::nullopt;
}

std::optional<IconVisualRepresentation> monogramOf(std::string rest,
                                                   const std::optional<std::string>& monogram) {
  if (monogram) return IconVisualRepresentation::monogram(*monogram);
  if (rest.empty()) return std::nullopt;
  return IconVisualRepresentation::monogram(std::move(rest));
}

std::optional<Prefix> prefixOf(std::string_view text) {
  for (const Prefix prefix : allCases<Prefix>()) {
    if (text.starts_with(rawValue(prefix))) return prefix;
  }
  return std::nullopt;
}

OxCodableColor codable(const CGColor& color) {
  return {.r = color.red, .g = color.green, .b = color.blue, .a = color.alpha};
}

/// All that the image depends on but its size.
std::string nameOf(const IconVisualRepresentation& what, const Properties& how,
                   const CGColor& color) {
  return what.storableValue() + "|" + std::to_string(rawValue(how.orientation)) + "|" +
         std::string(how.overlay ? rawValue(*how.overlay) : "") + "|" + codable(color).toHexAlpha();
}

/// A symbol that a text raises has a descent of its own, per side, so that its middle lies on the
/// middle of the capital letters.
double ownDescent(const IconVisualRepresentation& what) {
  return what.inlineTextProperties().baselineOffsetDelta > 0 ? 0.18 : 0;
}

}  // namespace

IconVisualRepresentation IconVisualRepresentation::decode(const Decoder& from) {
  if (const auto icon = from.decodeIfPresent<IconManagerIcon>("icon")) return {*icon};
  if (auto emoji = from.decodeIfPresent<Emoji>("emoji")) return {*std::move(emoji)};
  if (auto symbol = from.decodeIfPresent<OxSymbol>("sfSymbol")) return {*std::move(symbol)};
  if (auto monogram = from.decodeIfPresent<Monogram>("monogram")) return {*std::move(monogram)};
  throw from.dataCorrupted("Unable to decode enum");
}

std::optional<IconVisualRepresentation> IconVisualRepresentation::fromStorableValue(
    std::string_view text, const std::optional<std::string>& monogram) {
  if (!isUTF8(text)) return std::nullopt;  // it could be neither shown nor written
  const auto prefix = prefixOf(text);
  if (!prefix) return iconNamed(text);
  std::string rest(text.substr(rawValue(*prefix).size()));
  switch (*prefix) {
    case Prefix::icon:
      return iconNamed(rest);
    case Prefix::emoji:
      return emoji(std::move(rest));
    case Prefix::monogram:
      return monogramOf(std::move(rest), monogram);
    case Prefix::sfSymbol:
      return sfSymbol(std::move(rest));
  }
  return std::nullopt;
}

std::string IconVisualRepresentation::storableValue() const {
  return std::string(rawValue(kind())) + text();
}

std::string IconVisualRepresentation::storableValueWithAutoMonogram() const {
  return kind() == Prefix::monogram ? std::string(rawValue(Prefix::monogram)) : storableValue();
}

std::string IconVisualRepresentation::text() const {
  if (const auto* icon = std::get_if<IconManagerIcon>(&value)) return std::string(rawValue(*icon));
  if (const auto* emoji = std::get_if<Emoji>(&value)) return emoji->text;
  if (const auto* monogram = std::get_if<Monogram>(&value)) return monogram->text;
  return std::get<OxSymbol>(value).name;
}

bool IconVisualRepresentation::isDynamic() const {
  const auto* icon = std::get_if<IconManagerIcon>(&value);
  return icon != nullptr && velloro::isDynamic(*icon);
}

std::string IconVisualRepresentation::accessibilityLabel() const {
  return kind() == Prefix::emoji ? unicodeNames(text()) : text();
}

IconVisualRepresentation::InlineTextProperties IconVisualRepresentation::inlineTextProperties()
    const {
  // an hourglass is taller than it is wide, and stands on the line as the drawn icons do
  const bool isTall = kind() == Prefix::sfSymbol && text() == "hourglass";
  if (kind() == Prefix::icon || isTall) return {.textPointSizeDelta = 0.75};
  if (kind() != Prefix::sfSymbol) return {};
  return {.textPointSizeDelta = 0.82, .baselineOffsetDelta = 0.1};
}

NSAttributedString IconVisualRepresentation::inlineAttributedString(
    const UIFont& textFont, const CGColor& color, NSWritingDirection writingDirection,
    const DisplayProperties& displayProperties) const {
  const auto measures = inlineTextProperties();
  const double pointSize = textFont.pointSize * measures.textPointSizeDelta;
  const NSAttributedString::Attributes attributes{
      .font = textFont.withSize(pointSize),
      .color = color,
      .baselineOffset = textFont.pointSize * measures.baselineOffsetDelta,
      .writingDirection = writingDirection};
  if (kind() == Prefix::emoji || kind() == Prefix::monogram) return {text(), attributes};
  NSAttributedString result;
  result.append(std::make_shared<InlineIcon>(*this, displayProperties, color, pointSize),
                attributes);
  return result;
}

InlineIcon::InlineIcon(IconVisualRepresentation what, Properties how, CGColor inColor,
                       double pointSize)
    : NSTextAttachment(nameOf(what, how, inColor), {.width = pointSize, .height = pointSize},
                       ownDescent(what) * pointSize),
      visualRepresentation(std::move(what)),
      displayProperties(how),
      color(inColor) {}

std::shared_ptr<const CGImage> InlineIcon::image(double scale) const {
  const IconDisplayRepresentation shown{.visualRepresentation = visualRepresentation,
                                        .displayProperties = displayProperties};
  const IconArtwork artwork{.representation = shown, .side = size().width, .scale = scale};
  return artwork.masked(codable(color)).cgImage;
}

}  // namespace velloro
