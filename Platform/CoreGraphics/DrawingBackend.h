#pragma once

#include "CoreGraphics/CGContext.h"
#include "CoreGraphics/CGImage.h"
#include "CoreGraphics/CGPath.h"
#include "CoreGraphics/CGVectorPicture.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace platform {

class NSAttributedString;
class TextLayout;
struct TextLayoutOptions;

/// What the drawing module does for CoreGraphics and UIKit; above these, nobody asks it. The module
/// (Platform/CairoDrawing) is loaded on first use, because its libraries cost a start milliseconds
/// that a program which draws nothing should not pay. Any thread may call.
class DrawingBackend {
 public:
  virtual ~DrawingBackend() = default;
  DrawingBackend() = default;
  DrawingBackend(const DrawingBackend&) = delete;
  DrawingBackend& operator=(const DrawingBackend&) = delete;

  /// Lies in "velloro" in the library folder beside the one of the program. Null when it cannot be
  /// loaded, which is reported once.
  [[nodiscard]] static DrawingBackend* shared();

  /// None when memory is short.
  virtual std::unique_ptr<CGContext> makeBitmap(std::size_t width, std::size_t height) = 0;
  virtual std::unique_ptr<CGVectorPicture> makeSVG(CGSize size) = 0;
  virtual std::expected<std::shared_ptr<const CGImage>, std::string> readPNG(
      std::span<const std::byte> bytes) = 0;
  virtual std::string writePNG(const CGImage& image) = 0;
  virtual std::string writeAnimatedPNGPiece(const CGImage& image, const AnimationFrame& frame) = 0;
  /// As `drawingFingerprint` has it.
  virtual std::uint64_t fingerprint() = 0;
  virtual std::optional<CGPath> fontGlyph(const std::string& family, const std::string& glyph) = 0;
  virtual std::unique_ptr<TextLayout> layOut(const NSAttributedString& text,
                                             const TextLayoutOptions& options) = 0;
};

}  // namespace platform

/// The module's one entry.
extern "C" [[gnu::visibility("default")]] platform::DrawingBackend* velloroDrawingBackend();
