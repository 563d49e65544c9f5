#pragma once

#include "CoreGraphics/CGGradient.h"
#include "OxCheckableTasks/Ring/CheckableTaskCircler.h"
#include "OxCheckableTasks/Ring/ColorProfile.h"

#include <optional>
#include <string>

namespace velloro {

/// The frame of the disc below a track: a little smaller where the track hides the disc's edge,
/// because both edges are smooth and the disc would shine through the track's as a hairline.
/// \param pixel The size of a pixel, in the units of the surface.
[[nodiscard]] CGRect discBelowTrack(CGRect frame, const ColorProfile& colors, double pixel);

/// A circler that draws nothing; what the shapes of rings have in common.
class CheckableTaskGenericCircler : public CheckableTaskCircler {
 public:
  void drawWithTrack(CGContext&, const TrackedRing&) override {}
  void drawWithoutTrack(CGContext&, const TracklessRing&) override {}

 protected:
  /// Cuts the notches out of the track, or out of the disc where there is no track.
  static void drawSegments(CGContext& context, const TrackedRing& ring);
};

/// Where a track runs, and how it is drawn.
struct Track {
  CGPoint center;
  double radius = 0;  ///< To the middle of the track.
  double width = 0;
  FillDirection fillDirection = FillDirection::clockwise;
  double progress = 0;
  double trackProgress = 1;
  OxCodableColor fillColor;
  OxCodableColor backgroundColor;
  OxCodableColor fadedBackgroundColor;
  bool useRoundedLineCaps = false;
};

/// Draws a ring as a disc and a round track. Keeps what is dear to make from one frame to the next.
class CheckableTaskRoundCircler : public CheckableTaskGenericCircler {
 public:
  using SubProgressFillProperties = velloro::SubProgressFillProperties;

  void drawWithTrack(CGContext& context, const TrackedRing& ring) override;
  void drawWithoutTrack(CGContext& context, const TracklessRing& ring) override;

  /// The disc: none for no colour or a clear one, plain for one, a gradient for several. With a
  /// track the gradient inside it runs the other way round.
  void drawBackground(CGContext& context, CGRect frame, std::optional<double> trackWidth,
                      std::span<const OxCodableColor> centerFillColors);

  static void drawTrack(CGContext& context, const Track& track);
  /// The arc of the progress within one completion, or the dot of a running timer.
  static void drawSubProgress(CGContext& context, const TrackedRing& ring);
  static void strokeSubProgress(CGContext& context, CGPoint center,
                                const SubProgressFillProperties& fill, const OxCodableColor& color);

 private:
  void updateGradients(std::span<const OxCodableColor> colors);

  std::optional<CGGradient> grandSlamGradient_;
  std::optional<CGGradient> grandSlamOutlineGradient_;
  std::optional<std::string> grandSlamCacheKey_;
};

}  // namespace velloro
