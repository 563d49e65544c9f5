#pragma once

#include "CoreGraphics/CGColor.h"
#include "Foundation/Coding/CodingKeys.h"
#include "OxKit/Platform.h"

#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// A colour as red, green, blue and alpha, reals in 0..1 (a wide-gamut component may lie outside),
/// with the arithmetic that the house does on colours.
///
///     const auto color = OxCodableColor::fromHex("336699").value();
///     color.toHexAlpha();                  // "336699FF"
///     color.toSpaceSeparated();            // "0.2 0.4 0.6 1"
///     color.darkenBy(0.1).toHex();         // "2A557F"
struct OxCodableColor {
  double r = 0;
  double g = 0;
  double b = 0;
  double a = 1;

  bool operator==(const OxCodableColor&) const = default;
  static constexpr auto codingKeys =
      keys(key("r", &OxCodableColor::r), key("g", &OxCodableColor::g), key("b", &OxCodableColor::b),
           key("a", &OxCodableColor::a));

  /// To draw with.
  operator CGColor() const { return {.red = r, .green = g, .blue = b, .alpha = a}; }

  /// Reads the hexadecimal digits at the front, behind white space and "0x" if there are any; the
  /// low 24 bits are red, green and blue. Alpha is 1. Absent when there is no such digit.
  [[nodiscard]] static std::optional<OxCodableColor> fromHex(std::string_view hex);
  /// "RRGGBB". A component counts as the real number meant: 51/255 gives 33 whatever its last bit
  /// says. What lies outside 0..1 is held at 00 or FF.
  [[nodiscard]] std::string toHex() const;
  /// "RRGGBBAA".
  [[nodiscard]] std::string toHexAlpha() const;

  /// Reads the four components between white space: "0.2 0.4 0.6 1". Absent when they are not
  /// four, or one is no finite decimal number.
  [[nodiscard]] static std::optional<OxCodableColor> fromSpaceSeparated(std::string_view text);
  /// The stored form: red, green, blue, alpha with at most six decimal places, whatever the
  /// locale. A component that is not finite is written as 0.
  [[nodiscard]] std::string toSpaceSeparated() const;

  /// Hue (0..<1, red at 0, green at a third), saturation and brightness, all in 0..1. A grey has
  /// hue and saturation 0.
  struct HSB {
    double hue = 0;
    double saturation = 0;
    double brightness = 0;

    bool operator==(const HSB&) const = default;
  };
  /// Components outside 0..1 count as the nearer end.
  [[nodiscard]] HSB toHSB() const;
  /// The hue goes round the circle; saturation and brightness are held in 0..1.
  [[nodiscard]] static OxCodableColor fromHSB(const HSB& hsb, double alpha = 1);

  /// How bright the eye finds it: (299 r + 587 g + 114 b) ÷ 1000.
  [[nodiscard]] double perceivedBrightness() const;

  /// Adds to the brightness, or takes from it, and holds it in 0..1. Hue, saturation and alpha
  /// stay.
  [[nodiscard]] OxCodableColor lightenBy(double amount) const;
  [[nodiscard]] OxCodableColor darkenBy(double amount) const;
  /// Raises the brightness in steps of 0.05 while the perceived brightness is at or below
  /// `target`, at most up to a brightness of 1.
  [[nodiscard]] OxCodableColor lightenTo(double target) const;
  /// Lowers the brightness in steps of 0.05 while the perceived brightness is at or above `target`,
  /// at most down to 0.
  [[nodiscard]] OxCodableColor darkenTo(double target) const;
};

}  // namespace velloro
