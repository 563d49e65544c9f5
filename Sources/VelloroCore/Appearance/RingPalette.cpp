#include "VelloroCore/Appearance/RingPalette.h"

#include "VelloroCore/Appearance/ColorContrast.h"

#include <algorithm>
#include <optional>

namespace velloro {
namespace {

constexpr OxCodableColor black{};
constexpr OxCodableColor white{.r = 1, .g = 1, .b = 1};

/// From here on two neighbouring surfaces look different.
constexpr double visibleContrast = 1.2;
/// Of a disc to the track, which lies on it as a ring of its own.
constexpr double leastContrast = 1.2;
/// Of the track to the disc under it.
constexpr double trackContrast = 1.28;
/// Of a disc on a white or black screen: enough to tell it from the track, too.
constexpr double discContrast = 1.8;

bool isLight(const OxCodableColor& color) {
  return contrastRatio(color, black) > contrastRatio(color, white);
}

/// The way away from what is drawn on a disc.
OxCodableColor away(const OxCodableColor& ink) {
  return isLight(ink) ? black : white;
}

/// The nearest mixture with a tone that has a contrast to the colour; absent where there is none.
std::optional<OxCodableColor> mixedUntil(const OxCodableColor& color, const OxCodableColor& tone,
                                         double ratio) {
  if (contrastRatio(color, tone) < ratio) return std::nullopt;
  for (double part = 0.02; part < 1; part += 0.02) {
    const OxCodableColor tried = mixed(color, tone, part);
    if (contrastRatio(tried, color) >= ratio) return tried;
  }
  return tone;
}

/// A shade or tint of the disc: away from the ink, or a little towards it where the disc is as dark
/// or as light as colours get.
OxCodableColor trackOn(const OxCodableColor& center, const OxCodableColor& ink) {
  return mixedUntil(center, away(ink), 1.4)
      .value_or(mixedUntil(center, ink, trackContrast).value_or(center));
}

/// Whether a tone can be told from each of some neighbours.
bool isSeenOn(const OxCodableColor& tone, const std::vector<OxCodableColor>& neighbours) {
  return std::ranges::all_of(neighbours, [&](const OxCodableColor& neighbour) {
    return contrastRatio(tone, neighbour) >= visibleContrast;
  });
}

bool isFarFrom(const OxCodableColor& tone, const std::vector<OxCodableColor>& tracks) {
  return std::ranges::all_of(tracks, [&](const OxCodableColor& track) {
    return contrastRatio(tone, track) >= shapeContrast;
  });
}

/// The full track of a task that is done: it has to stand out from the open track and to be seen
/// on the disc, and is the nearest tone to the disc that does.
OxCodableColor doneFillOn(const std::vector<OxCodableColor>& disc,
                          const std::vector<OxCodableColor>& tracks, const OxCodableColor& color) {
  for (const double ratio : {1.8, 1.5, visibleContrast}) {
    for (const OxCodableColor& tone : {color, black, white}) {
      const auto tried = mixedUntil(disc.front(), tone, ratio);
      if (tried && isFarFrom(*tried, tracks) && isSeenOn(*tried, disc)) return *tried;
    }
  }
  const auto beyond = [&](OxCodableColor tone) {
    for (const OxCodableColor& track : tracks) tone = withContrast(tone, track, shapeContrast);
    return tone;
  };
  const OxCodableColor deep = beyond(color);
  return isFarFrom(deep, tracks) && isSeenOn(deep, disc) ? deep : beyond(disc.front());
}

/// White also where it stands out but little, since the disc is then a deeper tone of the colour:
/// on a saturated one black looks dirty.
OxCodableColor inkOn(const OxCodableColor& color) {
  constexpr double enoughForWhite = 2.4;
  return contrastRatio(color, white) >= enoughForWhite ? white : foregroundColor(color);
}

/// The tones of a disc and of what is drawn on it.
struct Disc {
  OxCodableColor center;
  OxCodableColor ink;

  [[nodiscard]] static Disc of(const OxCodableColor& color, const OxCodableColor& ink) {
    return {.center = withContrast(color, ink, textContrast), .ink = ink};
  }
};

/// A little further away from the ink.
OxCodableColor shadeOff(const OxCodableColor& disc, const OxCodableColor& ink) {
  return mixed(disc, away(ink), 0.12);
}

RingPalette onColor(const OxCodableColor& color) {
  const auto [disc, ink] = Disc::of(color, inkOn(color));
  RingPalette palette;
  palette.center = isSeenOn(disc, {color}) ? disc : shadeOff(disc, ink);
  palette.ink = ink;
  palette.fill = ink;
  palette.track = trackOn(palette.center, ink);
  const bool whiteIsSeen =
      contrastRatio(white, color) >= 1.5 && contrastRatio(white, palette.track) >= leastContrast;
  const OxCodableColor& done = whiteIsSeen ? white : ink;
  palette.doneCenter = {done};
  palette.doneInk = withContrast(color, done, textContrast);
  palette.missedCenter =
      isLight(ink) || !whiteIsSeen ? palette.track : shadeOff(palette.doneInk, white);
  return palette;
}

RingPalette onScreen(ThemeMode mode, const OxCodableColor& color) {
  const OxCodableColor screen = screenColor(mode);
  const OxCodableColor adjusted = adjustBrightness(color, mode);
  const OxCodableColor seen = withContrast(adjusted, screen, discContrast);
  // a black screen shows through what is dark, and colours may shine on it
  const auto [disc, ink] =
      Disc::of(seen, mode == ThemeMode::black ? foregroundColor(seen) : inkOn(seen));
  RingPalette palette;
  palette.center = screen;
  palette.ink = withContrast(adjusted, screen, textContrast);
  palette.fill = withContrast(adjusted, screen, shapeContrast * trackContrast * 1.06);
  palette.track = mixedUntil(screen, palette.fill, trackContrast).value_or(screen);
  palette.missedCenter = palette.track;
  palette.doneCenter = {disc};
  palette.doneInk = ink;
  return palette;
}

/// The second tone of a disc: a deeper one, or, where there is none, one with something of the
/// task's colour; either way not too near to the track.
OxCodableColor secondTone(const RingPalette& palette, const OxCodableColor& color) {
  const OxCodableColor disc = palette.doneCenter.front();
  for (const double ratio : {1.15, 1.08}) {
    for (const OxCodableColor& tone : {away(palette.doneInk), color}) {
      const auto tried = mixedUntil(disc, tone, ratio);
      if (tried && contrastRatio(*tried, palette.track) >= leastContrast) return *tried;
    }
  }
  return disc;
}

/// The disc of a task that is done is a gradient.
void makeGrandSlam(RingPalette& palette, const OxCodableColor& color) {
  const OxCodableColor second = secondTone(palette, color);
  palette.doneCenter.push_back(second);
  palette.doneInk = withContrast(palette.doneInk, second, textContrast);
}

}  // namespace

RingPalette RingPalette::of(ThemeMode mode, const OxCodableColor& color, bool grandSlam) {
  const bool hasScreen = mode == ThemeMode::white || mode == ThemeMode::black;
  RingPalette palette = hasScreen ? onScreen(mode, color) : onColor(color);
  palette.color = color;
  palette.remainingTrack = mixed(palette.track, palette.center, 0.5);
  palette.missedInk = withContrast(inkOn(palette.missedCenter), palette.missedCenter, textContrast);
  if (grandSlam) makeGrandSlam(palette, color);
  palette.doneFill = doneFillOn(palette.doneCenter, {palette.track, palette.remainingTrack}, color);
  return palette;
}

OxCodableColor screenColor(ThemeMode mode) {
  return mode == ThemeMode::black ? OxCodableColor{.r = 0.07, .g = 0.07, .b = 0.08} : white;
}

}  // namespace velloro
