#include "CairoDrawing/SVGPicture.h"

#include "CairoDrawing/CairoContext.h"

#include <cmath>
#include <string>
#include <utility>

#include <cairo-svg.h>

namespace platform {
namespace {

cairo_status_t append(void* text, const unsigned char* bytes, unsigned int count) {
  static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(bytes), count);
  return CAIRO_STATUS_SUCCESS;
}

Surface surfaceInto(std::string& text, CGSize size) {
  Surface surface(cairo_svg_surface_create_for_stream(append, &text, size.width, size.height));
  cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PX);
  return surface;
}

std::size_t pixels(double points) {
  return static_cast<std::size_t>(std::ceil(points));
}

class SVGPicture final : public CGVectorPicture {
 public:
  explicit SVGPicture(CGSize size)
      : context_(surfaceInto(text_, size), pixels(size.width), pixels(size.height)) {}

  CGContext& context() override { return context_; }
  std::string finish() override {
    cairo_surface_finish(cairo_get_target(context_.cairo()));
    return std::exchange(text_, {});
  }

 private:
  std::string text_;
  CairoContext context_;
};

}  // namespace

std::unique_ptr<CGVectorPicture> makeSVGPicture(CGSize size) {
  return std::make_unique<SVGPicture>(size);
}

}  // namespace platform
