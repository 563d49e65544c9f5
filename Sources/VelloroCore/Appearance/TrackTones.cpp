#include "VelloroCore/Appearance/TrackTones.h"

#include "VelloroCore/Appearance/ColorContrast.h"

#include <algorithm>
#include <optional>

namespace velloro {
namespace {

using Color = OxCodableColor;

constexpr Color black{};
constexpr Color white{.r = 1, .g = 1, .b = 1};

/// Between the surfaces of a ring as it is, and of a faded one as it is seen.
constexpr double surfaceContrast = 1.28;
constexpr double fadedContrast = 1.25;

Color half(const Color& under, const Color& over) {
  return mixed(under, over, 0.5);
}

bool differFaded(const Color& a, const Color& b) {
  return contrastRatio(a, b) >= fadedContrast;
}

/// A view lays the parts of a faded ring half transparently over each other, an image is laid over
/// the page with all its parts at once: both are looked at.
bool isSeenOnDisc(const Color& tone, const RingGround& ground) {
  return std::ranges::all_of(ground.disc, [&](const Color& disc) {
    if (contrastRatio(tone, disc) < surfaceContrast) return false;
    if (!ground.isFaded) return true;
    const Color seen = half(ground.page, disc);
    return differFaded(half(seen, tone), seen) && differFaded(half(ground.page, tone), seen);
  });
}

bool isSeenOnTrack(const Color& fill, const Color& track, const RingGround& ground) {
  if (contrastRatio(fill, track) < shapeContrast) return false;
  if (!ground.isFaded) return true;
  return differFaded(half(ground.page, fill), half(ground.page, track)) &&
         std::ranges::all_of(ground.disc, [&](const Color& disc) {
           const Color seen = half(ground.page, disc);
           return differFaded(half(seen, fill), half(seen, track));
         });
}

/// A fill in the page's own tone would look like a gap in the ring.
bool isSeenOnPage(const Color& fill, const RingGround& ground) {
  constexpr double pageContrast = 1.5;
  if (contrastRatio(fill, ground.page) < pageContrast) return false;
  return !ground.isFaded || std::ranges::all_of(ground.disc, [&](const Color& disc) {
    return differFaded(half(half(ground.page, disc), fill), ground.page);
  });
}

bool isLighter(const Color& color, const Color& other) {
  return relativeLuminance(color) > relativeLuminance(other);
}

/// Fills from the best one on: the ink and what lies beyond it, seen from the disc; tones on the
/// other side of the disc; and the ink nearer to the disc.
std::vector<Color> fillsFor(const Color& ink, const Color& disc) {
  const bool isLight = isLighter(ink, disc);
  std::vector<Color> fills;
  for (const double part : {0.0, 0.2, 0.4, 0.6, 0.8, 1.0}) {
    fills.push_back(mixed(ink, isLight ? white : black, part));
  }
  for (const double part : {0.8, 1.0}) fills.push_back(mixed(disc, isLight ? black : white, part));
  for (const double part : {0.2, 0.4, 0.6}) fills.push_back(mixed(ink, disc, part));
  return fills;
}

/// With the softest track for the fill, on the far side of the disc if that is possible.
std::optional<TrackTones> tonesWith(const Color& fill, const RingGround& ground) {
  const Color& disc = ground.disc.front();
  const Color away = isLighter(fill, disc) ? black : white;
  for (const Color& tone : {away, fill}) {
    for (double part = 0.04; part < 1; part += 0.04) {
      const Color track = mixed(disc, tone, part);
      if (!isSeenOnDisc(track, ground)) continue;
      const TrackTones tones{.track = track, .remaining = half(track, disc), .fill = fill};
      if (tones.areApartOn(ground)) return tones;
    }
  }
  return std::nullopt;
}

}  // namespace

TrackTones TrackTones::on(const RingGround& ground, const OxCodableColor& ink) {
  const Color& disc = ground.disc.front();
  const auto fills = fillsFor(ink, disc);
  for (const bool mindsPage : {true, false}) {
    for (const Color& fill : fills) {
      if (!isSeenOnDisc(fill, ground) || (mindsPage && !isSeenOnPage(fill, ground))) continue;
      if (const auto tones = tonesWith(fill, ground)) return *tones;
    }
  }
  const Color track = mixed(disc, ink, 0.2);
  return {.track = track, .remaining = half(track, disc), .fill = ink};
}

bool TrackTones::areApartOn(const RingGround& ground) const {
  return isSeenOnDisc(track, ground) && isSeenOnDisc(fill, ground) &&
         isSeenOnTrack(fill, track, ground) && contrastRatio(fill, remaining) >= shapeContrast;
}

OxCodableColor badgeTone(const OxCodableColor& color, const std::vector<OxCodableColor>& below,
                         const RingGround& ground) {
  const auto seen = [&](const Color& tone) {
    return ground.isFaded ? half(ground.page, tone) : tone;
  };
  const double enough = ground.isFaded ? fadedContrast * fadedContrast : 2;
  Color best = color;
  double greatest = 0;
  for (double part = 0; part < 1.025; part += 0.05) {
    for (const Color& end : {black, white}) {
      const Color tone = mixed(color, end, std::min(part, 1.0));
      double least = contrastRatio(black, white);
      for (const Color& other : below) least = std::min(least, contrastRatio(seen(tone), other));
      if (least >= enough) return tone;
      if (least > greatest) {
        greatest = least;
        best = tone;
      }
    }
  }
  return best;
}

}  // namespace velloro
