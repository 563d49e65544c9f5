#include "VelloroCore/PositionedTheme.h"

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
          .badge = tones.ink,
          .badgeContent = tones.center};
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
          .badge = tones.ink,
          .badgeContent = tones.center};
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
          .badge = tones.ink,
          .badgeContent = tones.center};
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
  ColorProfile profile = open(theme.palette({order, taskColor, context}));
  profile.isFaded = isFaded;
  return profile;
}

ColorProfile PositionedTheme::positiveCompletedColorProfile(const TaskColor& taskColor,
                                                            Context context) const {
  return done(theme.palette({order, taskColor, context}));
}

ColorProfile PositionedTheme::negativeCompletedColorProfile(const TaskColor& taskColor,
                                                            Context context, bool isFaded,
                                                            bool willShowPeriodProgress) const {
  ColorProfile profile = done(theme.palette({order, taskColor, context}));
  if (!willShowPeriodProgress) profile.trackFadedBackground = profile.trackBackground;
  profile.isFaded = isFaded;
  return profile;
}

ColorProfile PositionedTheme::negativeMissedColorProfile(const TaskColor& taskColor,
                                                         Context context) const {
  return missed(theme.palette({order, taskColor, context}));
}

ColorProfile PositionedTheme::negativeAllowedMissColorProfile(const TaskColor& taskColor,
                                                              Context context) const {
  const RingPalette tones = theme.palette({order, taskColor, context});
  ColorProfile profile = open(tones);
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
