#pragma once

#include "CoreGraphics/CGContext.h"
#include "OxKit/Platform.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Appearance/ThemeTypes.h"

#include <optional>

namespace velloro {

/// Which page of tasks a background is for.
struct TaskPageContext {
  TaskPageNumber pageNumber;
  std::optional<UniqueID> userProfileID = {};

  bool operator==(const TaskPageContext&) const = default;
};

/// Fills the rectangle with what lies behind a page: a colour, a gradient from the left upper to
/// the right lower corner, or bars, which lean to the right on the first page and to the other side
/// on each next one.
void paintBackground(CGContext& context, CGRect rect, const ThemeBackgroundType& background,
                     const TaskPageContext& page);

}  // namespace velloro
