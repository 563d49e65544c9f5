#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxCheckableTasks/Ring/ColorProfile.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Appearance/Theme.h"
#include "VelloroCore/Status/CompletionStatus.h"

#include <cstdint>

namespace velloro {

/// A theme at a task's place, which gives the colours of the task's ring. A faded ring is drawn at
/// half strength.
///
///     const PositionedTheme here = Theme::hero.positioned(TaskDisplayOrder::first);
///     here.positiveUncheckedColorProfile({}, Theme::Context::notification, false);
struct PositionedTheme {
  Theme theme;
  TaskDisplayOrder order;

  using TaskColor = Theme::TaskColor;
  using Context = Theme::Context;

  bool operator==(const PositionedTheme&) const = default;
  static constexpr auto codingKeys =
      keys(key("theme", &PositionedTheme::theme), key("order", &PositionedTheme::order));

  /// Something to do that isn't done yet.
  [[nodiscard]] ColorProfile positiveUncheckedColorProfile(const TaskColor& taskColor,
                                                           Context context, bool isFaded) const;
  [[nodiscard]] ColorProfile positiveCompletedColorProfile(const TaskColor& taskColor,
                                                           Context context) const;
  /// For a habit to avoid that has been avoided so far. With `willShowPeriodProgress`, the track
  /// shows which days have passed and which are to come; otherwise all of it looks the same.
  [[nodiscard]] ColorProfile negativeCompletedColorProfile(const TaskColor& taskColor,
                                                           Context context, bool isFaded,
                                                           bool willShowPeriodProgress) const;
  [[nodiscard]] ColorProfile negativeMissedColorProfile(const TaskColor& taskColor,
                                                        Context context) const;
  /// Between open and missed.
  [[nodiscard]] ColorProfile negativeAllowedMissColorProfile(const TaskColor& taskColor,
                                                             Context context) const;
  /// On the card of a shortcut, and on the voice assistant's face of a watch.
  [[nodiscard]] ColorProfile siriShortcutsConfigurationColorProfile() const;
  [[nodiscard]] ColorProfile siriWatchFaceColorProfile() const;

  /// Depends on the status alone: faded if the period may be skipped and the status has an
  /// indicator, and if it was skipped. `numDaysInPeriod` decides whether there are days to come.
  [[nodiscard]] ColorProfile colorProfile(const CompletionStatus::Status& status,
                                          const TaskColor& taskColor, std::int64_t numDaysInPeriod,
                                          Context context) const;
};

}  // namespace velloro
