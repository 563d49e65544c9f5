#include "CoreGraphics/CGVectorPicture.h"

#include "CoreGraphics/DrawingBackend.h"

namespace platform {

std::unique_ptr<CGVectorPicture> CGVectorPicture::svg(CGSize size) {
  DrawingBackend* const backend =
      size.width > 0 && size.height > 0 ? DrawingBackend::shared() : nullptr;
  return backend != nullptr ? backend->makeSVG(size) : nullptr;
}

}  // namespace platform
