#include "VelloroCore/Appearance/ColorScheme.h"

#include "OxKit/Localization.h"
#include "VelloroCore/Appearance/ThemeHelper.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <optional>

namespace velloro {
namespace {

using Rings = ThemeHelper::ActivityRings;
using Neon = ThemeHelper::Neon;
using Pride = ThemeHelper::PrideColor;

constexpr OxCodableColor red = rgb(199, 48, 53);
constexpr OxCodableColor blue = rgb(0, 139, 196);
constexpr OxCodableColor yellow = rgb(217, 159, 36);
constexpr OxCodableColor green = rgb(81, 156, 61);

struct Row {
  consteval Row(ColorScheme scheme, std::initializer_list<OxCodableColor> inOrder,
                std::optional<OxCodableColor> onWatches = {})
      : value(scheme), count(inOrder.size()), onWatch(onWatches) {
    std::ranges::copy(inOrder, colors.begin());
  }

  ColorScheme value;
  std::size_t count;
  std::array<OxCodableColor, 6> colors{};
  std::optional<OxCodableColor> onWatch;
};

constexpr Row schemes[] = {
    {ColorScheme::orange, {rgb(255, 112, 76)}},
    {ColorScheme::green, {rgb(153, 192, 94)}, rgb(192, 211, 122)},
    {ColorScheme::blue, {rgb(63, 145, 204)}, rgb(67, 172, 227)},
    {ColorScheme::red, {rgb(206, 76, 76)}},
    {ColorScheme::purple, {rgb(212, 120, 185)}},
    {ColorScheme::black, {rgb(55, 55, 55)}},
    {ColorScheme::navy, {rgb(70, 93, 145)}},
    {ColorScheme::grey, {rgb(119, 119, 119)}},
    {ColorScheme::olive, {rgb(87, 84, 47)}},
    {ColorScheme::gold, {rgb(249, 170, 0)}},
    {ColorScheme::brown, {rgb(148, 99, 51)}},
    {ColorScheme::royalPurple, {rgb(156, 56, 211)}},
    {ColorScheme::activityRed, {color(Rings::energy)}},
    {ColorScheme::activityGreen, {color(Rings::exercise)}},
    {ColorScheme::activityBlue, {color(Rings::stand)}},
    {ColorScheme::pride,
     {color(Pride::blue), color(Pride::purple), color(Pride::red), color(Pride::orange),
      color(Pride::yellow), color(Pride::green)}},
    {ColorScheme::redBlue, {red, blue}},
    {ColorScheme::redYellow, {red, yellow}},
    {ColorScheme::redGreen, {red, green}},
    {ColorScheme::greenYellow, {green, yellow}},
    {ColorScheme::greenBlue, {green, blue}},
    {ColorScheme::blueYellow, {blue, yellow}},
    {ColorScheme::pink, {rgb(219, 24, 155)}},
    {ColorScheme::neon,
     {color(Neon::orange), color(Neon::pink), color(Neon::purpleLight), color(Neon::purpleDark)}},
    {ColorScheme::yellow, {rgb(253, 255, 111)}},
};

}  // namespace

std::span<const OxCodableColor> colors(ColorScheme scheme, bool onWatch) {
  const Row& row = schemes[static_cast<std::size_t>(scheme)];
  if (onWatch && row.onWatch) return {&*row.onWatch, 1};
  return {row.colors.data(), row.count};
}

std::span<const ThemeMode> validModes(ColorScheme scheme) {
  static constexpr ThemeMode without[] = {ThemeMode::normal, ThemeMode::white, ThemeMode::black};
  return supportsAlternateMode(scheme) ? allCases<ThemeMode>() : std::span(without);
}

std::string titleKey(ColorScheme scheme) {
  return "ColorScheme." + std::string(rawValue(scheme));
}

std::string titleKey(ThemeMode mode) {
  return "ThemeMode." + std::string(rawValue(mode));
}

std::string localizedTitle(ColorScheme scheme) {
  return localized(titleKey(scheme));
}

std::string localizedTitle(ThemeMode mode) {
  return localized(titleKey(mode));
}

}  // namespace velloro
