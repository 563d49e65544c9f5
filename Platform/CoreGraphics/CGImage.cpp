#include "CoreGraphics/CGImage.h"

#include "CoreGraphics/DrawingBackend.h"

#include <algorithm>

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

std::optional<Data> animatedPNG(std::span<const std::shared_ptr<const CGImage>> frames,
                                std::uint16_t framesPerSecond) {
  DrawingBackend* const backend = DrawingBackend::shared();
  if (backend == nullptr || frames.empty() || frames[0]->pixels().empty()) return std::nullopt;
  const bool sameSize = std::ranges::all_of(frames, [&](const auto& frame) {
    return frame->width() == frames[0]->width() && frame->height() == frames[0]->height();
  });
  if (!sameSize) return std::nullopt;
  return Data(backend->writeAnimatedPNG(frames, framesPerSecond));
}

}  // namespace platform
