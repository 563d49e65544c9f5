#pragma once

#include "OxCheckableTasks/StaticImages/Badge.h"
#include "VelloroCore/Appearance/PositionedTheme.h"

#include <optional>

namespace velloro {

/// The badge that tells whose task it is, in the colours of the ring that it sits on. An owner
/// without a picture is shown as a person.
[[nodiscard]] Badge taskSharingBadge(const std::optional<IconDisplayRepresentation>& owner,
                                     const PositionedTheme& theme,
                                     const Theme::TaskColor& taskColor);

}  // namespace velloro
