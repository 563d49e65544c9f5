#pragma once

#include "OxCheckableTasks/Icons/IconManagerIcon.h"
#include "OxCheckableTasks/StaticImages/Badge.h"
#include "VelloroCore/Appearance/PositionedTheme.h"

#include <optional>

namespace velloro {

/// Who is shown as the owner of a shared task when there is no picture of them.
inline constexpr IconManagerIcon defaultParticipantImage = IconManagerIcon::person;

/// The badge that tells whose task it is, in the colours of the ring that it sits on.
[[nodiscard]] inline Badge taskSharingBadge(const std::optional<IconDisplayRepresentation>& owner,
                                            const PositionedTheme& theme,
                                            const Theme::TaskColor& taskColor) {
  const ColorProfile ring =
      theme.positiveUncheckedColorProfile(taskColor, Theme::Context::notification, false);
  const IconDisplayRepresentation nobody{
      .visualRepresentation = IconVisualRepresentation::icon(defaultParticipantImage),
      .displayProperties = {}};
  return {.content = BadgeContent{.displayRepresentation = owner.value_or(nobody)},
          .contentColor = ring.badgeContent,
          .badgeColor = ring.badge};
}

}  // namespace velloro
