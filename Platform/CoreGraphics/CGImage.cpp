#include "CoreGraphics/CGImage.h"

#include "CoreGraphics/DrawingBackend.h"

namespace platform {

Result<std::shared_ptr<const CGImage>> CGImage::fromPNG(std::span<const std::byte> bytes) {
  const auto failed = [](int code, const std::string& reason) {
    return failure<Error>("velloro.png", code, "The image cannot be read: " + reason);
  };
  DrawingBackend* const backend = DrawingBackend::shared();
  if (backend == nullptr) return failed(1, "the drawing module is missing");
  auto image = backend->readPNG(bytes);
  if (!image) return failed(2, image.error());
  return *std::move(image);
}

std::optional<Data> CGImage::pngData() const {
  DrawingBackend* const backend = DrawingBackend::shared();
  if (backend == nullptr || pixels_.empty()) return std::nullopt;
  return Data(backend->writePNG(*this));
}

std::optional<Data> animatedPNGPiece(const CGImage& image, const AnimationFrame& frame) {
  DrawingBackend* const backend = DrawingBackend::shared();
  if (backend == nullptr || image.pixels().empty() || frame.index >= frame.count) {
    return std::nullopt;
  }
  return Data(backend->writeAnimatedPNGPiece(image, frame));
}

}  // namespace platform
