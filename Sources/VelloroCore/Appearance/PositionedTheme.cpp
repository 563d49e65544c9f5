#include "VelloroCore/Appearance/PositionedTheme.h"

#include "VelloroCore/Appearance/ColorContrast.h"
#include "VelloroCore/Appearance/TrackTones.h"

#include <utility>

namespace velloro {
namespace {

constexpr OxCodableColor clear{.a = 0};

ColorProfile open(const RingPalette& tones) {
  return {.bottomCaption = tones.ink,
          .topCaption = tones.ink,
          .trackFill = tones.fill,
          .trackBackground = tones.track,
          .trackFadedBackground = tones.remainingTrack,
          .centerFill = {tones.center},
          .imageMask = tones.ink,
          .timer = tones.fill,
          .notch = tones.center,
          .badge = clear,
          .badgeContent = clear};
}

/// What lies behind a filled track.
ColorProfile done(const RingPalette& tones) {
  return {.bottomCaption = tones.doneInk,
          .topCaption = tones.doneInk,
          .trackFill = tones.doneFill,
          .trackBackground = tones.track,
          .trackFadedBackground = tones.remainingTrack,
          .centerFill = tones.doneCenter,
          .imageMask = tones.doneInk,
          .timer = tones.doneInk,
          .notch = tones.doneCenter.front(),
          .badge = clear,
          .badgeContent = clear};
}

ColorProfile missed(const RingPalette& tones) {
  return {.bottomCaption = tones.missedInk,
          .topCaption = tones.missedInk,
          .trackFill = tones.fill,
          .trackBackground = tones.center,
          .trackFadedBackground = tones.remainingTrack,
          .centerFill = {tones.missedCenter},
          .imageMask = tones.missedInk,
          .timer = tones.missedInk,
          .notch = tones.missedCenter,
          .badge = clear,
          .badgeContent = clear};
}

void setTrack(ColorProfile& profile, const TrackTones& tones) {
  profile.trackBackground = tones.track;
  profile.trackFadedBackground = tones.remaining;
  profile.trackFill = tones.fill;
}

RingGround groundOf(const ColorProfile& profile, const OxCodableColor& page) {
  return {.disc = profile.centerFill, .page = page, .isFaded = profile.isFaded};
}

/// Half transparent, the tones of a ring come near to each other and to the page.
ColorProfile faded(ColorProfile profile, const OxCodableColor& page) {
  profile.isFaded = true;
  const TrackTones tones{.track = profile.trackBackground,
                         .remaining = profile.trackFadedBackground,
                         .fill = profile.trackFill};
  const RingGround ground = groundOf(profile, page);
  if (!tones.areApartOn(ground)) setTrack(profile, TrackTones::on(ground, tones.fill));
  return profile;
}

/// A badge lies on the track, on the disc and on the page, and stays when the task is settled.
ColorProfile withBadge(ColorProfile profile, const OxCodableColor& color,
                       const OxCodableColor& page, const OxCodableColor& settledDisc) {
  const OxCodableColor& disc = profile.centerFill.front();
  std::vector<OxCodableColor> below{profile.trackFill, profile.trackBackground, disc, settledDisc,
                                    page};
  if (profile.isFaded) {
    const OxCodableColor seen = mixed(page, disc, profile.alpha());
    below = {mixed(seen, profile.trackFill, profile.alpha()),
             mixed(seen, profile.trackBackground, profile.alpha()), seen};
  }
  constexpr OxCodableColor white{.r = 1, .g = 1, .b = 1};
  profile.badge = badgeTone(color, below, groundOf(profile, page));
  profile.badgeContent =
      contrastRatio(white, profile.badge) >= textContrast ? white : OxCodableColor{};
  return profile;
}

/// Of a task that is done, where nothing moves any more: no notches, no timer, no badges.
ColorProfile atRest(const RingPalette& tones) {
  ColorProfile profile = done(tones);
  for (OxCodableColor* color : {&profile.trackFadedBackground, &profile.timer, &profile.notch,
                                &profile.badge, &profile.badgeContent}) {
    *color = clear;
  }
  return profile;
}

}  // namespace

ColorProfile PositionedTheme::positiveUncheckedColorProfile(const TaskColor& taskColor,
                                                            Context context, bool isFaded) const {
  const RingPalette tones = theme.palette({order, taskColor, context});
  const OxCodableColor page = theme.backgroundType(context).plainColor();
  ColorProfile profile = open(tones);
  if (isFaded) profile = faded(std::move(profile), page);
  return withBadge(std::move(profile), tones.color, page, tones.doneCenter.front());
}

ColorProfile PositionedTheme::positiveCompletedColorProfile(const TaskColor& taskColor,
                                                            Context context) const {
  const RingPalette tones = theme.palette({order, taskColor, context});
  return withBadge(done(tones), tones.color, theme.backgroundType(context).plainColor(),
                   tones.center);
}

ColorProfile PositionedTheme::negativeCompletedColorProfile(const TaskColor& taskColor,
                                                            Context context, bool isFaded,
                                                            bool willShowPeriodProgress) const {
  const RingPalette tones = theme.palette({order, taskColor, context});
  const OxCodableColor page = theme.backgroundType(context).plainColor();
  ColorProfile profile = done(tones);
  profile.isFaded = isFaded;
  setTrack(profile, TrackTones::on(groundOf(profile, page), tones.doneInk));
  if (!willShowPeriodProgress) profile.trackFadedBackground = profile.trackBackground;
  return withBadge(std::move(profile), tones.color, page, tones.missedCenter);
}

ColorProfile PositionedTheme::negativeMissedColorProfile(const TaskColor& taskColor,
                                                         Context context) const {
  const RingPalette tones = theme.palette({order, taskColor, context});
  return withBadge(missed(tones), tones.color, theme.backgroundType(context).plainColor(),
                   tones.doneCenter.front());
}

ColorProfile PositionedTheme::negativeAllowedMissColorProfile(const TaskColor& taskColor,
                                                              Context context) const {
  const RingPalette tones = theme.palette({order, taskColor, context});
  ColorProfile profile = positiveUncheckedColorProfile(taskColor, context, false);
  profile.trackFill = tones.doneFill;
  return profile;
}

ColorProfile PositionedTheme::siriShortcutsConfigurationColorProfile() const {
  return theme.withMode(Theme::Mode::normal)
      .positioned(order)
      .positiveUncheckedColorProfile({}, Context::siri, false);
}

ColorProfile PositionedTheme::siriWatchFaceColorProfile() const {
  return positiveUncheckedColorProfile({}, Context::appleWatchSiri, false);
}

ColorProfile PositionedTheme::colorProfile(const CompletionStatus::Status& status,
                                           const TaskColor& taskColor, std::int64_t numDaysInPeriod,
                                           Context context) const {
  const bool maySkip = status.skipMode == SkipMode::willSkipWithIndicator;
  switch (status.kind) {
    using enum CompletionStatus::Status::Kind;
    case positiveIncomplete:
      return positiveUncheckedColorProfile(taskColor, context, maySkip);
    case negativeComplete:
      return negativeCompletedColorProfile(taskColor, context, maySkip, numDaysInPeriod > 1);
    case positiveComplete:
      return atRest(theme.palette({order, taskColor, context}));
    case positiveSkip:
      return positiveUncheckedColorProfile(taskColor, context, true);
    case positiveMiss:
    case negativeMiss:
    case negativeAllowedMiss:
      return negativeMissedColorProfile(taskColor, context);
  }
  return ColorProfile::defaultUnchecked();
}

}  // namespace velloro
