#include "CoreGraphics/CGContext.h"

#include "CoreGraphics/DrawingBackend.h"
#include "CoreGraphics/FontGlyph.h"

namespace platform {

std::unique_ptr<CGContext> CGContext::bitmap(std::size_t width, std::size_t height) {
  constexpr std::size_t longestSide = 32767;
  if (width == 0 || height == 0 || width > longestSide || height > longestSide) return nullptr;
  DrawingBackend* const backend = DrawingBackend::shared();
  return backend != nullptr ? backend->makeBitmap(width, height) : nullptr;
}

std::optional<CGPath> fontGlyph(std::string_view family, std::string_view glyph) {
  DrawingBackend* const backend = DrawingBackend::shared();
  if (backend == nullptr) return std::nullopt;
  return backend->fontGlyph(std::string(family), std::string(glyph));
}

std::uint64_t drawingFingerprint() {
  DrawingBackend* const backend = DrawingBackend::shared();
  return backend != nullptr ? backend->fingerprint() : 0;
}

std::shared_ptr<const CGImage> maskOfUnitPath(const CGPath& path, std::size_t pixels) {
  const auto context = CGContext::bitmap(pixels, pixels);
  if (!context) return nullptr;
  const auto side = static_cast<double>(pixels);
  context->scaleBy(side, side);
  context->fill(path);
  return context->makeImage();
}

std::shared_ptr<const CGImage> iconGlyph(std::string_view family, std::string_view glyph,
                                         std::size_t pixels) {
  const auto path = fontGlyph(family, glyph);
  return path ? maskOfUnitPath(*path, pixels) : nullptr;
}

}  // namespace platform
