#include "VelloroCore/Appearance/Theme.h"

#include "Foundation/Coding/Coding.h"
#include "OxKit/DeviceType.h"
#include "OxKit/Localization.h"
#include "VelloroCore/Appearance/ColorContrast.h"
#include "VelloroCore/Appearance/PositionedTheme.h"
#include "VelloroCore/Appearance/ThemeHelper.h"

#include <algorithm>
#include <cstddef>
#include <ranges>
#include <span>

namespace velloro {
namespace {

constexpr std::string_view grandSlamWord = "grandSlam";

constexpr OxCodableColor grey(double level) {
  return {.r = level, .g = level, .b = level};
}

bool hasScreen(Theme::Mode mode) {
  return mode == Theme::Mode::white || mode == Theme::Mode::black;
}

/// A colour of the scheme in the theme's form. Near black nothing gets visibly darker.
OxCodableColor inForm(const Theme& theme, const OxCodableColor& color) {
  if (!theme.grandSlam) return color;
  return theme.colorScheme == ColorScheme::black ? grey(0.3) : color.darkenBy(0.1);
}

OxCodableColor colorOf(const Theme& theme, const Theme::Place& at) {
  if (at.taskColor) return *at.taskColor;
  const auto inOrder = colors(theme.colorScheme, isOnWatch(at.context));
  const auto position = static_cast<std::size_t>(std::max<std::int64_t>(at.order.position, 0));
  const std::size_t index = position % inOrder.size();
  const bool isReversed = theme.mode == Theme::Mode::alternate;
  return inForm(theme, inOrder[isReversed ? inOrder.size() - 1 - index : index]);
}

/// The screens of settings and help are light, unless all is black.
Theme::Mode screenMode(const Theme& theme) {
  return theme.mode == Theme::Mode::black ? Theme::Mode::black : Theme::Mode::white;
}

OxCodableColor textOn(Theme::Mode mode) {
  return grey(mode == Theme::Mode::black ? 0.95 : 0.11);
}

/// The theme's colour as text on such a screen.
OxCodableColor tintOn(const Theme& theme, Theme::Mode mode) {
  return withContrast(adjustBrightness(theme.color(), mode), screenColor(mode), textContrast);
}

/// What reads best on the worst place of a background.
OxCodableColor foregroundOn(const ThemeBackgroundType& background) {
  const auto* gradient = std::get_if<ThemeGradient>(&background.value);
  if (gradient == nullptr) return foregroundColor(background.plainColor());
  const OxCodableColor white = grey(1);
  const OxCodableColor dark = grey(0);
  const auto worst = [&](const OxCodableColor& text) {
    return std::min(contrastRatio(text, gradient->from), contrastRatio(text, gradient->to));
  };
  return worst(white) >= shapeContrast || worst(white) >= worst(dark) ? white : dark;
}

}  // namespace

bool isOnWatch(ThemeContext context) {
  return context == ThemeContext::appleWatch || context == ThemeContext::appleWatchComplication ||
         context == ThemeContext::appleWatchSiri ||
         context == ThemeContext::appleWatchNotification ||
         DeviceType::current().family() == DeviceType::Family::watch;
}

bool isOnFace(ThemeContext context) {
  return context == ThemeContext::appleWatchComplication || context == ThemeContext::appleWatchSiri;
}

std::string Theme::stringValue() const {
  std::string text(rawValue(colorScheme));
  if (mode != Mode::normal || grandSlam) text += "." + std::string(rawValue(mode));
  if (grandSlam) text += "." + std::string(grandSlamWord);
  return text;
}

std::optional<Theme> Theme::fromStringValue(std::string_view text) {
  std::vector<std::string_view> words;
  for (const auto word : std::views::split(text, '.')) words.emplace_back(word.begin(), word.end());
  if (words.empty() || words.size() > 3) return std::nullopt;
  const auto scheme = fromRawValue<ColorScheme>(words[0]);
  const auto mode = words.size() > 1 ? fromRawValue<Mode>(words[1]) : Mode::normal;
  const bool grandSlam = words.size() > 2;
  if (!scheme || !mode || (grandSlam && words[2] != grandSlamWord)) return std::nullopt;
  return Theme{.colorScheme = *scheme, .mode = *mode, .grandSlam = grandSlam};
}

Theme Theme::defaultTheme(TaskPageNumber pageNumber) {
  constexpr ColorScheme schemes[] = {heroColorScheme, ColorScheme::activityGreen, ColorScheme::gold,
                                     ColorScheme::royalPurple};
  const bool hasOwn = pageNumber.value >= 0 && pageNumber.value < std::ssize(schemes);
  return {.colorScheme = schemes[hasOwn ? pageNumber.value : 0]};
}

Theme Theme::defaultTheme(const std::optional<std::string>& filter) {
  return filter ? Theme{.colorScheme = ColorScheme::blue} : hero;
}

Theme Theme::withMode(Mode other) const {
  const auto modes = validModes(colorScheme);
  Theme theme = *this;
  theme.mode = std::ranges::find(modes, other) != modes.end() ? other : Mode::normal;
  return theme;
}

PositionedTheme Theme::positioned(TaskDisplayOrder order) const {
  return {.theme = *this, .order = order};
}

std::string Theme::localizedTitle() const {
  const std::string scheme = velloro::localizedTitle(colorScheme);
  if (mode == Mode::normal) return scheme;
  return localized(titleInModeKey, {scheme, velloro::localizedTitle(mode)});
}

OxCodableColor Theme::color() const {
  const auto inOrder = colors(colorScheme, isOnWatch(Context::main));
  return inOrder.empty() ? OxCodableColor{.a = 0} : inForm(*this, inOrder.front());
}

Theme::BackgroundType Theme::backgroundType(Context context) const {
  if (isOnFace(context)) return BackgroundType::flat(screenColor(Mode::black));
  if (hasScreen(mode)) return BackgroundType::flat(screenColor(mode));
  if (colorScheme == ColorScheme::pride) return BackgroundType::pride(color(), grandSlam);
  const auto inOrder = colors(colorScheme, isOnWatch(context));
  if (inOrder.size() == 1) return BackgroundType::flat(inForm(*this, inOrder.front()));
  // from a neon page orange is left out: no text would read on it and on dark purple alike
  OxCodableColor from = inForm(*this, inOrder[inOrder.size() > 2 ? 1 : 0]);
  OxCodableColor to = inForm(*this, inOrder.back());
  if (mode == Mode::alternate) std::swap(from, to);
  return BackgroundType::gradient({.from = from, .to = to});
}

bool Theme::useRoundedLineCaps() const {
  return colorScheme == ColorScheme::activityRed || colorScheme == ColorScheme::activityGreen ||
         colorScheme == ColorScheme::activityBlue;
}

RingPalette Theme::palette(const Place& at) const {
  return RingPalette::of(isOnFace(at.context) ? Mode::black : mode, colorOf(*this, at), grandSlam);
}

OxCodableColor Theme::taskTextColor(const Place& at) const {
  if (isOnFace(at.context)) return textOn(Mode::black);
  return hasScreen(mode) ? textOn(mode) : foregroundOn(backgroundType());
}

OxCodableColor Theme::taskIconColor(const Place& at) const {
  const bool isOnScreen = hasScreen(mode) || isOnFace(at.context);
  return isOnScreen ? palette(at).ink : taskTextColor(at);
}

OxCodableColor Theme::taskQuantityTextColor(const Place& at) const {
  const bool isOnScreen = hasScreen(mode) || isOnFace(at.context);
  return isOnScreen ? mixed(taskTextColor(at), palette(at).center, 0.25) : taskTextColor(at);
}

OxCodableColor Theme::trackFillColor(const Place& at) const {
  return palette(at).fill;
}
OxCodableColor Theme::trackBackgroundColor(const Place& at) const {
  return palette(at).track;
}
OxCodableColor Theme::trackRemainingBackgroundColor(const Place& at) const {
  return palette(at).remainingTrack;
}
OxCodableColor Theme::captionColor(const Place& at) const {
  return palette(at).ink;
}
OxCodableColor Theme::topCaptionColor(const Place& at) const {
  return captionColor(at);
}
Theme::Colors Theme::centerFillColorsWhenUnchecked(const Place& at) const {
  return {palette(at).center};
}
OxCodableColor Theme::imageMaskColorWhenUnchecked(const Place& at) const {
  return palette(at).ink;
}
OxCodableColor Theme::notchColor(const Place& at) const {
  return palette(at).center;
}
OxCodableColor Theme::checkableTaskTimerColor(const Place& at, bool isNegative) const {
  return isNegative ? palette(at).doneInk : palette(at).fill;
}

OxCodableColor Theme::captionColorWhenCompleted(const Place& at) const {
  return palette(at).doneInk;
}
OxCodableColor Theme::topCaptionColorWhenCompleted(const Place& at) const {
  return captionColorWhenCompleted(at);
}
OxCodableColor Theme::trackBackgroundColorWhenCompleted(const Place& at) const {
  return trackBackgroundColor(at);
}
OxCodableColor Theme::trackRemainingBackgroundColorWhenCompleted(const Place& at) const {
  return trackRemainingBackgroundColor(at);
}
Theme::Colors Theme::centerFillColorsWhenCompleted(const Place& at) const {
  return palette(at).doneCenter;
}
OxCodableColor Theme::imageMaskColorWhenCompleted(const Place& at) const {
  return palette(at).doneInk;
}
OxCodableColor Theme::trackFillColorWhenCompletedNegative(const Place& at) const {
  return palette(at).doneFill;
}

OxCodableColor Theme::imageMaskColorWhenMissedNegative(const Place& at) const {
  return palette(at).missedInk;
}
OxCodableColor Theme::centerFillColorWhenMissedNegative(const Place& at) const {
  return palette(at).missedCenter;
}

OxCodableColor Theme::helpScreenTextColor() const {
  return textOn(screenMode(*this));
}
OxCodableColor Theme::helpScreenHeadingColor() const {
  return tintOn(*this, screenMode(*this));
}
OxCodableColor Theme::navigationBarTintColor() const {
  return tintOn(*this, screenMode(*this));
}
OxCodableColor Theme::toolbarTintColor() const {
  return withContrast(navigationBarTintColor(), toolbarBarTintColor(), textContrast);
}
OxCodableColor Theme::toolbarBarTintColor() const {
  return mixed(screenColor(screenMode(*this)), color(), 0.06);
}
OxCodableColor Theme::tableCellBackgroundColor() const {
  return mixed(screenColor(screenMode(*this)), grey(1), 0.04);  // raised a little above black
}
OxCodableColor Theme::tableCellPrimaryTextColor() const {
  return textOn(screenMode(*this));
}
OxCodableColor Theme::tableCellSecondaryTextColor() const {
  return mixed(tableCellPrimaryTextColor(), tableCellBackgroundColor(), 0.35);
}
OxCodableColor Theme::tableCellImageMaskColor(const TaskColor& taskColor) const {
  return RingPalette::of(Mode::normal, taskColor.value_or(color()), false).ink;
}
OxCodableColor Theme::tableCellImageCircleColor(const TaskColor& taskColor) const {
  return RingPalette::of(Mode::normal, taskColor.value_or(color()), false).center;
}
OxCodableColor Theme::centerFillColorForSiriConfiguration() const {
  return tableCellImageCircleColor({});
}

OxCodableColor ThemeGradient::mid() const {
  return mixed(from, to, 0.5);
}

OxCodableColor ThemeBackgroundType::plainColor() const {
  if (const auto* gradient = std::get_if<ThemeGradient>(&value)) return gradient->mid();
  if (const auto* pride = std::get_if<Pride>(&value)) return pride->color;
  return std::get<Flat>(value).color;
}

}  // namespace velloro
