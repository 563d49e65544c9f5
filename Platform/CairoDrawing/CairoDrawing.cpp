#include "CairoDrawing/CairoContext.h"
#include "CairoDrawing/Fonts.h"
#include "CairoDrawing/PNG.h"
#include "CairoDrawing/PangoLayout.h"
#include "CairoDrawing/SVGPicture.h"
#include "CoreGraphics/DrawingBackend.h"

#include <new>

namespace platform {
namespace {

class CairoDrawing final : public DrawingBackend {
 public:
  std::unique_ptr<CGContext> makeBitmap(std::size_t width, std::size_t height) override {
    try {
      return std::make_unique<CairoContext>(width, height);
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
  }
  std::unique_ptr<CGVectorPicture> makeSVG(CGSize size) override { return makeSVGPicture(size); }
  std::expected<std::shared_ptr<const CGImage>, std::string> readPNG(
      std::span<const std::byte> bytes) override {
    return platform::readPNG(bytes);
  }
  std::string writePNG(const CGImage& image) override { return platform::writePNG(image); }
  std::string writeAnimatedPNGPiece(const CGImage& image, const AnimationFrame& frame) override {
    return platform::writeAnimatedPNGPiece(image, frame);
  }
  std::uint64_t fingerprint() override { return platform::fontsFingerprint(); }
  std::optional<CGPath> fontGlyph(const std::string& family, const std::string& glyph) override {
    return platform::fontGlyph(family, glyph);
  }
  std::unique_ptr<TextLayout> layOut(const NSAttributedString& text,
                                     const TextLayoutOptions& options) override {
    return platform::layOut(text, options);
  }
};

}  // namespace
}  // namespace platform

platform::DrawingBackend* velloroDrawingBackend() {
  static auto* const backend = new platform::CairoDrawing;
  return backend;
}
