#pragma once

#include "UIKit/TextLayout.h"

#include <memory>

namespace platform {

/// As `TextLayout::make` has it.
std::unique_ptr<TextLayout> layOut(const NSAttributedString& text,
                                   const TextLayoutOptions& options);

}  // namespace platform
