#pragma once

#include "OxKit/Platform.h"
#include "UIKit/NSAttributedString.h"

#include <vector>

namespace velloro {

/// One line of a ring's caption: what there is of icons and text, with a narrow space between.
[[nodiscard]] NSAttributedString joinedCaption(const std::vector<NSAttributedString>& items,
                                               const NSAttributedString::Attributes& attributes);

}  // namespace velloro
