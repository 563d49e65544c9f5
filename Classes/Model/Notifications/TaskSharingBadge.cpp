#include "Notifications/TaskSharingBadge.h"

#include "OxCheckableTasks/Icons/IconManagerIconCases.h"

namespace velloro {

Badge taskSharingBadge(const std::optional<IconDisplayRepresentation>& owner,
                       const PositionedTheme& theme, const Theme::TaskColor& taskColor) {
  const ColorProfile ring =
      theme.positiveUncheckedColorProfile(taskColor, Theme::Context::notification, false);
  const IconDisplayRepresentation nobody{
      .visualRepresentation = IconVisualRepresentation::icon(IconManagerIcon::person),
      .displayProperties = {}};
  return {.content = BadgeContent{.displayRepresentation = owner.value_or(nobody)},
          .contentColor = ring.badgeContent,
          .badgeColor = ring.badge};
}

}  // namespace velloro
