#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Values/Hasher.h"
#include "OxCheckableTasks/Icons/IconManagerIcon.h"
#include "OxCheckableTasks/Icons/OxImageOrientation.h"
#include "OxCheckableTasks/Icons/OxSymbol.h"
#include "OxKit/Platform.h"
#include "UIKit/NSAttributedString.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace velloro {

/// What a task shows in its ring: one of the program's own icons, an emoji, a few letters or a
/// system symbol. In JSON an object of one key: {"icon":"water_glass"}, {"emoji":"🚲"},
/// {"monogram":"JD"}, {"sfSymbol":{"name":"star"}}.
///
///     const auto bicycle = IconVisualRepresentation::fromStorableValue("em_🚲").value();
///     bicycle.storableValue();                     // "em_🚲"
///     bicycle.accessibilityLabel();                // "BICYCLE"
struct IconVisualRepresentation {
  struct Emoji {
    std::string text;
    bool operator==(const Emoji&) const = default;
    static constexpr auto codingValue = &Emoji::text;
  };
  struct Monogram {
    std::string text;
    bool operator==(const Monogram&) const = default;
    static constexpr auto codingValue = &Monogram::text;
  };

  /// The kinds, each with the beginning of its stored text.
  enum class EncodingPrefix : std::uint8_t { icon, emoji, monogram, sfSymbol };

  /// Drawn over an icon.
  enum class Overlay : std::uint8_t { slash };

  /// How it is turned, and what lies over it.
  struct DisplayProperties {
    OxImageOrientation orientation = defaultOrientation;
    std::optional<Overlay> overlay;

    bool operator==(const DisplayProperties&) const = default;
    static constexpr auto codingKeys =
        keys(key("orientation", &DisplayProperties::orientation, initialWhenUnknown),
             key("overlay", &DisplayProperties::overlay));
  };

  /// Its measures in a line of text, as parts of the font's point size.
  struct InlineTextProperties {
    double textPointSizeDelta = 1;   ///< How high it is.
    double baselineOffsetDelta = 0;  ///< How far it is raised above the line.

    bool operator==(const InlineTextProperties&) const = default;
  };

  std::variant<IconManagerIcon, Emoji, Monogram, OxSymbol> value;

  bool operator==(const IconVisualRepresentation&) const = default;
  static constexpr auto codingCases =
      cases(&IconVisualRepresentation::value, payload("icon"), payload("emoji"),
            payload("monogram"), payload("sfSymbol"));
  /// \throws DecodingError "Unable to decode enum" when there is none of the keys.
  static IconVisualRepresentation decode(const Decoder& from);

  [[nodiscard]] static IconVisualRepresentation icon(IconManagerIcon icon) { return {icon}; }
  [[nodiscard]] static IconVisualRepresentation emoji(std::string text) {
    return {Emoji{std::move(text)}};
  }
  [[nodiscard]] static IconVisualRepresentation monogram(std::string text) {
    return {Monogram{std::move(text)}};
  }
  [[nodiscard]] static IconVisualRepresentation sfSymbol(std::string name) {
    return {OxSymbol{std::move(name)}};
  }

  /// Reads a stored text: a prefix and the payload, or, as older ones are, an icon's bare name.
  /// Where a monogram is stored, `monogram` comes before it, since the title that it was derived
  /// from may have changed. Absent for an icon that is not known, a monogram of no letters, and
  /// bytes that are no UTF-8.
  ///
  ///     IconVisualRepresentation::fromStorableValue("mg_", "JD")->text();     // "JD"
  ///     IconVisualRepresentation::fromStorableValue("ic_no_such_icon");       // absent
  [[nodiscard]] static std::optional<IconVisualRepresentation> fromStorableValue(
      std::string_view text, const std::optional<std::string>& monogram = {});
  /// "ic_water_glass".
  [[nodiscard]] std::string storableValue() const;
  /// The same, but of a monogram "mg_" alone: it is to be derived again when it is read.
  [[nodiscard]] std::string storableValueWithAutoMonogram() const;

  [[nodiscard]] EncodingPrefix kind() const { return static_cast<EncodingPrefix>(value.index()); }
  /// The icon's or the symbol's name, the emoji, the letters.
  [[nodiscard]] std::string text() const;
  /// Whether the image changes with a task's state.
  [[nodiscard]] bool isDynamic() const;
  /// For a person who listens: an emoji is spelt out by the names that Unicode gives its scalars.
  [[nodiscard]] std::string accessibilityLabel() const;

  [[nodiscard]] InlineTextProperties inlineTextProperties() const;
  /// A piece of a line of text: letters in a fitting size, or an image (`InlineIcon`).
  [[nodiscard]] NSAttributedString inlineAttributedString(
      const UIFont& textFont, const CGColor& color, NSWritingDirection writingDirection,
      const DisplayProperties& displayProperties) const;
};

constexpr auto rawValues(std::type_identity<IconVisualRepresentation::EncodingPrefix>) {
  using enum IconVisualRepresentation::EncodingPrefix;
  return rawTexts<IconVisualRepresentation::EncodingPrefix>(
      {{icon, "ic_"}, {emoji, "em_"}, {monogram, "mg_"}, {sfSymbol, "sf_"}});
}

constexpr auto rawValues(std::type_identity<IconVisualRepresentation::Overlay>) {
  return caseNames<IconVisualRepresentation::Overlay::slash>();
}

/// An icon or a symbol in the place of a letter, drawn in the text's colour (`IconArtwork`).
class InlineIcon final : public NSTextAttachment {
 public:
  InlineIcon(IconVisualRepresentation visualRepresentation,
             IconVisualRepresentation::DisplayProperties displayProperties, CGColor color,
             double pointSize);

  const IconVisualRepresentation visualRepresentation;
  const IconVisualRepresentation::DisplayProperties displayProperties;
  const CGColor color;

  [[nodiscard]] std::shared_ptr<const CGImage> image(double scale) const override;
};

}  // namespace velloro
