#include "OxCheckableTasks/Ring/ColorProfile.h"

namespace velloro {
namespace {

constexpr OxCodableColor grey(double level, double alpha = 1) {
  return {.r = level, .g = level, .b = level, .a = alpha};
}

constexpr OxCodableColor clear = grey(0, 0);
constexpr OxCodableColor black = grey(0);
constexpr OxCodableColor white = grey(1);
constexpr OxCodableColor smoke = grey(0.2, 0.7);

}  // namespace

void ColorProfile::hash(Hasher& hasher) const {
  hasher.combine(bottomCaption, topCaption, trackFill, trackBackground, trackFadedBackground,
                 centerFill, imageMask, timer, notch, badge, badgeContent, isFaded);
}

ColorProfile ColorProfile::faded() const {
  ColorProfile copy = *this;
  copy.isFaded = true;
  return copy;
}

ColorProfile ColorProfile::unfaded() const {
  ColorProfile copy = *this;
  copy.isFaded = false;
  return copy;
}

const ColorProfile& ColorProfile::defaultUnchecked() {
  static const ColorProfile profile{.bottomCaption = white,
                                    .topCaption = white,
                                    .trackFill = white,
                                    .trackBackground = smoke,
                                    .trackFadedBackground = grey(0.2, 0.455),
                                    .centerFill = {clear},
                                    .imageMask = white,
                                    .timer = smoke,
                                    .notch = clear,
                                    .badge = smoke,
                                    .badgeContent = white};
  return profile;
}

const ColorProfile& ColorProfile::defaultCompleted() {
  static const ColorProfile profile{.bottomCaption = black,
                                    .topCaption = black,
                                    .trackFill = smoke,
                                    .trackBackground = white,
                                    .trackFadedBackground = grey(1, 0.65),
                                    .centerFill = {white},
                                    .imageMask = black,
                                    .timer = smoke,
                                    .notch = clear,
                                    .badge = white,
                                    .badgeContent = black};
  return profile;
}

}  // namespace velloro
