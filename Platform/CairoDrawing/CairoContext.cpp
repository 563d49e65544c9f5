#include "CairoDrawing/CairoContext.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {
namespace {

// An ARGB32 row has no padding: four bytes a pixel are aligned as Cairo wants them.
Surface surfaceOf(const std::uint32_t* pixels, std::size_t width, std::size_t height) {
  const int columns = static_cast<int>(width);
  const auto bytes = reinterpret_cast<const unsigned char*>(pixels);
  return Surface(cairo_image_surface_create_for_data(const_cast<unsigned char*>(bytes),
                                                     CAIRO_FORMAT_ARGB32, columns,
                                                     static_cast<int>(height), columns * 4));
}

cairo_operator_t operatorOf(CGBlendMode mode) {
  switch (mode) {
    case CGBlendMode::copy:
      return CAIRO_OPERATOR_SOURCE;
    case CGBlendMode::clear:
      return CAIRO_OPERATOR_CLEAR;
    case CGBlendMode::destinationOut:
      return CAIRO_OPERATOR_DEST_OUT;
    case CGBlendMode::normal:
      break;
  }
  return CAIRO_OPERATOR_OVER;
}

}  // namespace

Surface surfaceOf(const CGImage& image) {
  return surfaceOf(image.pixels().data(), image.width(), image.height());
}

CairoContext::CairoContext(std::size_t width, std::size_t height)
    : width_(width),
      height_(height),
      pixels_(width * height),
      surface_(surfaceOf(pixels_.data(), width, height)),
      cairo_(cairo_create(surface_.get())) {
  setLineWidth(1);
}

CairoContext::CairoContext(Surface shapes, std::size_t width, std::size_t height)
    : width_(width),
      height_(height),
      surface_(std::move(shapes)),
      cairo_(cairo_create(surface_.get())) {
  setLineWidth(1);
}

void CairoContext::setSource(CGColor color) {
  cairo_set_source_rgba(cairo(), color.red, color.green, color.blue, color.alpha * state_.alpha);
}

std::shared_ptr<const CGImage> CairoContext::makeImage() {
  if (pixels_.empty()) return nullptr;
  cairo_surface_flush(surface_.get());
  return std::make_shared<const CGImage>(width_, height_, pixels_);
}

void CairoContext::clear() {
  if (pixels_.empty()) return;
  cairo_surface_flush(surface_.get());
  std::ranges::fill(pixels_, 0U);
  cairo_surface_mark_dirty(surface_.get());
}

void CairoContext::saveGState() {
  cairo_save(cairo());
  saved_.push_back(state_);
}

void CairoContext::restoreGState() {
  if (saved_.empty()) return;
  cairo_restore(cairo());
  state_ = saved_.back();
  saved_.pop_back();
}

void CairoContext::concatenate(const CGAffineTransform& t) {
  // A map that flattens everything to a line would stop the surface for good.
  if (t.a * t.d - t.b * t.c == 0) return;
  const cairo_matrix_t matrix = {t.a, t.b, t.c, t.d, t.tx, t.ty};
  cairo_transform(cairo(), &matrix);
}

void CairoContext::clip(const CGPath& path) {
  add(path);
  cairo_clip(cairo());
}

void CairoContext::setBlendMode(CGBlendMode mode) {
  cairo_set_operator(cairo(), operatorOf(mode));
}

void CairoContext::setLineWidth(double width) {
  cairo_set_line_width(cairo(), width);
}

void CairoContext::setLineCap(CGLineCap cap) {
  cairo_set_line_cap(cairo(), cap == CGLineCap::round ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
}

void CairoContext::fill(const CGPath& path) {
  add(path);
  setSource(state_.fill);
  cairo_fill(cairo());
}

void CairoContext::fill(CGRect rect) {
  cairo_rectangle(cairo(), rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
  setSource(state_.fill);
  cairo_fill(cairo());
}

void CairoContext::stroke(const CGPath& path) {
  add(path);
  setSource(state_.stroke);
  cairo_stroke(cairo());
}

void CairoContext::drawLinearGradient(const CGGradient& gradient, CGPoint start, CGPoint end) {
  const std::size_t stops = std::min(gradient.colors.size(), gradient.locations.size());
  if (stops == 0) return;
  const Pattern pattern(cairo_pattern_create_linear(start.x, start.y, end.x, end.y));
  cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
  const auto add = [&](double location, CGColor c) {
    cairo_pattern_add_color_stop_rgba(pattern.get(), location, c.red, c.green, c.blue, c.alpha);
  };
  // Beyond either end the outermost stop goes on: a clear one before the start.
  add(0, gradient.colors[0].withAlpha(0));
  add(0, gradient.colors[0]);
  for (std::size_t i = 0; i < stops; ++i) add(gradient.locations[i], gradient.colors[i]);
  cairo_set_source(cairo(), pattern.get());
  cairo_paint_with_alpha(cairo(), state_.alpha);
}

void CairoContext::draw(const CGImage& image, CGRect rect) {
  const Surface surface = surfaceOf(image);
  const Pattern pattern = imagePattern(surface.get(), image, rect);
  if (!pattern) return;
  cairo_save(cairo());
  // Not the whole clip: "copy" would also erase what lies around the image.
  cairo_rectangle(cairo(), rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
  cairo_clip(cairo());
  cairo_set_source(cairo(), pattern.get());
  cairo_paint_with_alpha(cairo(), state_.alpha);
  cairo_restore(cairo());
}

void CairoContext::fill(const CGImage& mask, CGRect rect) {
  const Surface surface = surfaceOf(mask);
  const Pattern pattern = imagePattern(surface.get(), mask, rect);
  if (!pattern) return;
  cairo_save(cairo());
  cairo_rectangle(cairo(), rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
  cairo_clip(cairo());
  setSource(state_.fill);
  cairo_mask(cairo(), pattern.get());
  cairo_restore(cairo());
}

void CairoContext::add(const CGPath& path) {
  cairo_new_path(cairo());
  for (const auto& [verb, points] : path.elements()) {
    const auto [a, b, c] = points;
    switch (verb) {
      case CGPath::Verb::move:
        cairo_move_to(cairo(), a.x, a.y);
        break;
      case CGPath::Verb::line:
        cairo_line_to(cairo(), a.x, a.y);
        break;
      case CGPath::Verb::curve:
        cairo_curve_to(cairo(), a.x, a.y, b.x, b.y, c.x, c.y);
        break;
      case CGPath::Verb::close:
        cairo_close_path(cairo());
        break;
    }
  }
}

/// The image laid out over the rectangle; null where either has no area.
Pattern CairoContext::imagePattern(cairo_surface_t* surface, const CGImage& image, CGRect rect) {
  const auto [width, height] = rect.size;
  if (image.pixels().empty() || !(width > 0) || !(height > 0)) return nullptr;
  Pattern pattern(cairo_pattern_create_for_surface(surface));
  const double x = static_cast<double>(image.width()) / width;
  const double y = static_cast<double>(image.height()) / height;
  const cairo_matrix_t toImage = {x, 0, 0, y, -rect.origin.x * x, -rect.origin.y * y};
  cairo_pattern_set_matrix(pattern.get(), &toImage);
  // At the edges a scaled image would otherwise fade into the transparency around it.
  cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
  return pattern;
}

}  // namespace platform
