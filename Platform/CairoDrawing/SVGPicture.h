#pragma once

#include "CoreGraphics/CGVectorPicture.h"

#include <memory>

namespace platform {

/// See `CGVectorPicture::svg`.
std::unique_ptr<CGVectorPicture> makeSVGPicture(CGSize size);

}  // namespace platform
