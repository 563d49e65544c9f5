#pragma once

#include "Foundation/Values/Hasher.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/Platform.h"

#include <vector>

namespace velloro {

/// The colours of one ring.
///
///     const ColorProfile open = ColorProfile::defaultUnchecked();
///     open.faded().alpha();    // 0.5
struct ColorProfile {
  OxCodableColor bottomCaption;
  OxCodableColor topCaption;
  OxCodableColor trackFill;                ///< The filled part of the track.
  OxCodableColor trackBackground;          ///< The open part, up to where the track is solid.
  OxCodableColor trackFadedBackground;     ///< The rest of the track.
  std::vector<OxCodableColor> centerFill;  ///< None draws nothing, several are a gradient.
  OxCodableColor imageMask;                ///< The icon's colour; clear cuts it out.
  OxCodableColor timer;
  OxCodableColor notch;  ///< Between segments; clear cuts them out.
  OxCodableColor badge;
  OxCodableColor badgeContent;
  bool isFaded = false;

  bool operator==(const ColorProfile&) const = default;
  void hash(Hasher& hasher) const;

  [[nodiscard]] double alpha() const { return isFaded ? 0.5 : 1.0; }
  [[nodiscard]] ColorProfile faded() const;
  [[nodiscard]] ColorProfile unfaded() const;

  /// White on transparent, for a ring that is open.
  [[nodiscard]] static const ColorProfile& defaultUnchecked();
  /// Black on white, for a ring that is done.
  [[nodiscard]] static const ColorProfile& defaultCompleted();
};

}  // namespace velloro
