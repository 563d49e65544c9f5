#include "OxKit/OxCodableColor.h"

#include "Foundation/Text/String.h"
#include "OxKit/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace velloro {
namespace {

constexpr std::string_view whiteSpace = " \t\n\v\f\r";
/// Two reals that are closer than this differ by binary rounding only: far above what a few
/// operations on components lose, far below a step that anyone sees.
constexpr double closeness = 1e-9;

std::string_view withoutLeadingSpace(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(whiteSpace), text.size()));
}

/// 0..1; what is not a number counts as 0.
double unit(double component) {
  return component > 0 ? std::min(component, 1.0) : 0.0;
}

unsigned byteOf(double component) {
  return static_cast<unsigned>(std::floor(unit(component) * 255 + closeness));
}

std::optional<double> finiteNumber(std::string_view text) {
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || stop != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::string decimalText(double component) {
  const double rounded = std::isfinite(component) ? roundToPlaces(component, 6) : 0;
  char buffer[512];  // a double has at most 309 digits before its point
  const auto printed = std::to_chars(buffer, std::end(buffer), rounded + 0.0,  // no "-0"
                                     std::chars_format::fixed);
  return {buffer, printed.ptr};
}

/// Walks from `color` in steps of 0.05 of brightness to the first colour that is `farEnough`, at
/// most to the brightness `end`. Each step counts from the start: as a running sum of binary 0.05s
/// the walk would miss ends and targets that it meets exactly.
template <typename FarEnough>
OxCodableColor walkBrightness(const OxCodableColor& color, double end, FarEnough farEnough) {
  constexpr double stepsPerUnit = 20;
  const auto start = color.toHSB();
  const double direction = start.brightness < end ? 1 : -1;
  double way = std::abs(end - start.brightness);
  OxCodableColor reached = color;
  for (int step = 1; way > closeness && !farEnough(reached); ++step) {
    const double brightness = start.brightness + direction * step / stepsPerUnit;
    way = direction * (end - brightness);
    reached = OxCodableColor::fromHSB(
        {start.hue, start.saturation, way > closeness ? brightness : end}, color.a);
  }
  return reached;
}

}  // namespace

std::optional<OxCodableColor> OxCodableColor::fromHex(std::string_view hex) {
  hex = withoutLeadingSpace(hex);
  if (hex.starts_with("0x") || hex.starts_with("0X")) hex.remove_prefix(2);
  const std::size_t digits = std::min(hex.find_first_not_of("0123456789abcdefABCDEF"), hex.size());
  if (digits == 0) return std::nullopt;
  // Six digits are the low 24 bits, however long the number.
  hex = hex.substr(0, digits);
  if (digits > 6) hex.remove_prefix(digits - 6);
  std::uint32_t bits = 0;
  std::from_chars(hex.data(), hex.data() + hex.size(), bits, 16);
  return OxCodableColor{
      .r = (bits >> 16) / 255.0, .g = (bits >> 8 & 0xFF) / 255.0, .b = (bits & 0xFF) / 255.0};
}

std::string OxCodableColor::toHex() const {
  return stringWithFormat("%02X%02X%02X", byteOf(r), byteOf(g), byteOf(b));
}

std::string OxCodableColor::toHexAlpha() const {
  return stringWithFormat("%02X%02X%02X%02X", byteOf(r), byteOf(g), byteOf(b), byteOf(a));
}

std::optional<OxCodableColor> OxCodableColor::fromSpaceSeparated(std::string_view text) {
  OxCodableColor color;
  for (double* component : {&color.r, &color.g, &color.b, &color.a}) {
    text = withoutLeadingSpace(text);
    const std::size_t length = std::min(text.find_first_of(whiteSpace), text.size());
    const auto number = finiteNumber(text.substr(0, length));
    if (!number) return std::nullopt;
    *component = *number;
    text.remove_prefix(length);
  }
  if (!withoutLeadingSpace(text).empty()) return std::nullopt;
  return color;
}

std::string OxCodableColor::toSpaceSeparated() const {
  return decimalText(r) + " " + decimalText(g) + " " + decimalText(b) + " " + decimalText(a);
}

OxCodableColor::HSB OxCodableColor::toHSB() const {
  const double red = unit(r), green = unit(g), blue = unit(b);
  const double most = std::max({red, green, blue});
  const double spread = most - std::min({red, green, blue});
  if (spread == 0) return {.brightness = most};
  double sixths = 0;
  if (most == red) {
    sixths = (green - blue) / spread + (green < blue ? 6 : 0);
  } else if (most == green) {
    sixths = (blue - red) / spread + 2;
  } else {
    sixths = (red - green) / spread + 4;
  }
  return {.hue = sixths / 6, .saturation = spread / most, .brightness = most};
}

OxCodableColor OxCodableColor::fromHSB(const HSB& hsb, double alpha) {
  const double most = unit(hsb.brightness);
  const double spread = most * unit(hsb.saturation);
  const double sixths = (hsb.hue - std::floor(hsb.hue)) * 6;
  // Round the circle of six, a component lacks the whole spread for two sixths, nothing for two,
  // and part of it in the sixths between; each of the three starts at another place.
  const auto component = [&](double start) {
    const double at = std::fmod(start + sixths, 6);
    return most - spread * std::clamp(std::min(at, 4 - at), 0.0, 1.0);
  };
  return {.r = component(5), .g = component(3), .b = component(1), .a = alpha};
}

double OxCodableColor::perceivedBrightness() const {
  return (299 * r + 587 * g + 114 * b) / 1000;
}

OxCodableColor OxCodableColor::lightenBy(double amount) const {
  HSB hsb = toHSB();
  hsb.brightness += amount;
  return fromHSB(hsb, a);
}

OxCodableColor OxCodableColor::darkenBy(double amount) const {
  return lightenBy(-amount);
}

OxCodableColor OxCodableColor::lightenTo(double target) const {
  return walkBrightness(*this, 1, [target](const OxCodableColor& color) {
    return !(color.perceivedBrightness() <= target + closeness);
  });
}

OxCodableColor OxCodableColor::darkenTo(double target) const {
  return walkBrightness(*this, 0, [target](const OxCodableColor& color) {
    return !(color.perceivedBrightness() >= target - closeness);
  });
}

}  // namespace velloro
