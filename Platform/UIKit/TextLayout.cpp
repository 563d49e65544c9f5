#include "UIKit/TextLayout.h"

#include "CoreGraphics/DrawingBackend.h"

namespace platform {

std::shared_ptr<TextLayout> TextLayout::make(const NSAttributedString& text,
                                             const TextLayoutOptions& options) {
  DrawingBackend* const backend = DrawingBackend::shared();
  return backend != nullptr ? backend->layOut(text, options) : nullptr;
}

}  // namespace platform
