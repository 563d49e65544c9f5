#include "Foundation/Text/String.h"
#include "OxCheckableTasks/StaticImages/StaticImageGenerator.h"

namespace velloro::StaticImageGenerator {
namespace {

std::string real(double value) {
  return stringWithFormat("%01.6f", value);
}

DataCacheKey colorProfileKey(const ColorProfile& colors) {
  DataCacheKey key("colorprofile");
  const auto add = [&](const OxCodableColor& color, std::string_view name) {
    key.add(color.toHexAlpha(), name);
  };
  add(colors.bottomCaption, "bc");
  add(colors.topCaption, "tc");
  add(colors.trackFill, "tf");
  add(colors.trackBackground, "tb");
  add(colors.trackFadedBackground, "tfb");
  for (std::size_t i = 0; i < colors.centerFill.size(); ++i) {
    add(colors.centerFill[i], "cf_" + std::to_string(i));
  }
  add(colors.imageMask, "im");
  add(colors.timer, "ti");
  add(colors.notch, "n");
  add(colors.badge, "badge");
  add(colors.badgeContent, "badge_content");
  key.add(int{colors.isFaded}, "faded");
  return key;
}

void add(DataCacheKey& key, const std::vector<IconVisualRepresentation>& icons,
         std::string_view name) {
  for (std::size_t i = 0; i < icons.size(); ++i) {
    key.add(icons[i].storableValue(), std::string(name) + std::to_string(i));
  }
}

DataCacheKey captionKey(const Caption& caption) {
  DataCacheKey key("caption");
  if (caption.text) key.add(*caption.text, "text");
  add(key, caption.leadingIcons, "li_");
  add(key, caption.trailingIcons, "ti_");
  key.add(caption.fontName, "font");
  key.add(rawValue(caption.size), "size");
  key.add(static_cast<int>(caption.writingDirection), "wd");
  return key;
}

DataCacheKey badgeKey(const Badge& badge) {
  DataCacheKey key("badge");
  if (badge.content) {
    const auto& [representation, fontName] = *badge.content;
    key.add(representation.coreDataStringRepresentation(), "content");
    if (fontName) key.add(*fontName, "font");
  }
  key.add(rawValue(badge.position), "pos");
  key.add(real(badge.normalizedBadgeDiameter), "nbd");
  key.add(real(badge.normalizedContentDiameter), "ncd");
  key.add(badge.contentColor.toHexAlpha(), "cc");
  key.add(badge.badgeColor.toHexAlpha(), "bc");
  if (badge.shadowColor) key.add(badge.shadowColor->toHexAlpha(), "sc");
  return key;
}

DataCacheKey layoutKey(const Request::LayoutProperties& layout) {
  DataCacheKey key("lp");
  key.add(real(layout.iconPaddingScale), "ips");
  key.add(colorProfileKey(layout.colors), "cp");
  if (layout.bottomCaption) key.add(captionKey(*layout.bottomCaption), "bc");
  if (layout.topCaption) key.add(captionKey(*layout.topCaption), "tc");
  key.add(layout.numSegments, "ns");
  key.add(real(layout.normalizedNotchThickness), "nnt");
  key.add(real(layout.progress), "prog");
  key.add(real(layout.subProgress), "sprog");
  key.add(real(layout.trackProgress), "tprog");
  key.add(rawValue(layout.fillDirection), "fd");
  key.add(real(layout.normalizedTrackWidth), "ntw");
  key.add(int{layout.useRoundedLineCaps}, "urlc");
  key.add(layout.backgroundColor.toHexAlpha(), "bg");
  key.add(stringWithFormat("%01.2f", layout.inset), "in");
  for (std::size_t i = 0; i < layout.badges.size(); ++i) {
    key.add(badgeKey(layout.badges[i]), "badge_" + std::to_string(i));
  }
  return key;
}

std::string_view kindName(const IconVisualRepresentation& icon) {
  switch (icon.kind()) {
    case IconVisualRepresentation::EncodingPrefix::icon:
      return "icon";
    case IconVisualRepresentation::EncodingPrefix::emoji:
      return "emoji";
    case IconVisualRepresentation::EncodingPrefix::monogram:
      return "monogram";
    case IconVisualRepresentation::EncodingPrefix::sfSymbol:
      return "symbol";
  }
  return "icon";
}

}  // namespace

std::optional<ImageCacheKey> Request::cacheKey(std::string_view identifier) const {
  if (!useCache || !image || !image->icon) return std::nullopt;
  if (image->dynamic && image->icon->isDynamic()) return std::nullopt;
  ImageCacheKey key(identifier, size, scale);
  key.add(layoutKey(layoutProperties), "hash");
  key.add(image->icon->text(), kindName(*image->icon));
  key.add(rawValue(image->displayProperties.orientation), "or");
  if (image->displayProperties.overlay) key.add("slash", "ol");
  return key;
}

}  // namespace velloro::StaticImageGenerator
