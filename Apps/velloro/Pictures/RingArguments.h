#pragma once

#include "velloro/Pictures/RingPicture.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// A ring as the person describes it. What is absent has the default that the help gives.
struct RingArguments {
  std::optional<std::string> progress, segments, subProgress, trackProgress, timer;
  std::optional<std::string> icon, emoji, monogram;
  std::optional<std::string> theme, mode, position, status;
  std::optional<std::string> caption, topCaption;
  std::vector<std::string> signs, topSigns, badges;
  std::optional<std::string> size, scale;
  bool isGrandSlam = false;
  bool isAntiClockwise = false;
  bool hasRoundedCaps = false;
  bool hasSlash = false;
  bool isTransparent = false;

  /// \throws UsageError
  [[nodiscard]] RingPicture picture() const;

 private:
  [[nodiscard]] std::optional<IconDisplayRepresentation> chosenIcon() const;
  [[nodiscard]] Theme chosenTheme() const;
  void setProgress(RingLook& look) const;
};

}  // namespace velloro
