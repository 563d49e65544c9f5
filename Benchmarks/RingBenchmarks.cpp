#include "CheckableTasks/CheckableTaskView.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxCache/ImageCache.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "OxCheckableTasks/Ring/CheckableTaskConstants.h"
#include "OxCheckableTasks/StaticImages/StaticImageGenerator.h"
#include "UIKit/UIView.h"

#include <cmath>
#include <numbers>

#include <benchmark/benchmark.h>
#include <cairo.h>

namespace velloro {
namespace {

// One picture on both sides: a disc with a gradient of two colours, three segments on the way from
// 0.1 to 0.9, an icon, and a caption of two digits; at two pixels a point.

constexpr double scale = 2;
constexpr double trackPart = 0.07;
constexpr double notchPart = 0.03;
constexpr double captionPart = 0.125;
constexpr OxCodableColor from{.r = 0.1, .g = 0.3, .b = 0.6};
constexpr OxCodableColor to{.r = 0.2, .g = 0.5, .b = 0.3};
constexpr OxCodableColor white{.r = 1, .g = 1, .b = 1};
constexpr OxCodableColor open{.r = 0.5, .g = 0.6, .b = 0.7};

double progressOf(int frame) {
  return 0.1 + 0.8 * (frame % 120) / 120;
}

ColorProfile colors() {
  ColorProfile profile = ColorProfile::defaultUnchecked();
  profile.centerFill = {from, to};
  profile.trackFill = white;
  profile.trackBackground = open;
  return profile;
}

std::shared_ptr<CheckableTaskView> view(double size) {
  auto made = CheckableTaskView::make({size, size});
  made->update([&](auto& ring) {
    ring.uncheckedColorProfile = colors();
    ring.normalizedTrackWidth = trackPart;
    ring.normalizedNotchThickness = notchPart;
    ring.numSegments = 3;
    ring.uncheckedIcon =
        IconDisplayRepresentation{IconVisualRepresentation::icon(IconManagerIcon::book), {}};
    ring.bottomCaption = {.text = "12", .font = UIFont::system(size * captionPart)};
  });
  return made;
}

template <int points>
void liveView(benchmark::State& state) {
  VirtualEnvironment environment;
  UIWindow window(scale);
  const auto ring = view(points);
  window.setContentView(ring);
  int frame = 0;
  for (auto _ : state) {
    ring->setProgress(progressOf(++frame), 0, 0);
    window.displayIfNeeded();
  }
  state.SetItemsProcessed(state.iterations());  // frames
}
BENCHMARK(liveView<84>)->Name("ring_84/velloro");
BENCHMARK(liveView<300>)->Name("ring_300/velloro");

/// The same with the drawing library's own calls; the icon's mask and the font are at hand.
class BareRing {
 public:
  explicit BareRing(double size)
      : size_(size), surface_(made(size * scale)), icon_(made(std::ceil(size * 0.45) * scale)) {
    cairo_t* const cairo = cairo_create(icon_);
    const double side = std::ceil(size * 0.45) * scale;
    cairo_rectangle(cairo, side * 0.15, 0, side * 0.7, side);
    cairo_fill(cairo);
    cairo_destroy(cairo);
    cairo_ = cairo_create(surface_);
    cairo_scale(cairo_, scale, scale);
    cairo_select_font_face(cairo_, "Inter", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo_, size * captionPart);
  }
  ~BareRing() {
    cairo_destroy(cairo_);
    cairo_surface_destroy(icon_);
    cairo_surface_destroy(surface_);
  }
  BareRing(const BareRing&) = delete;
  BareRing& operator=(const BareRing&) = delete;

  void draw(double progress) {
    cairo_save(cairo_);
    cairo_set_operator(cairo_, CAIRO_OPERATOR_CLEAR);
    cairo_paint(cairo_);
    cairo_restore(cairo_);
    drawDisc(0, {0, 0.7}, from, to);
    drawDisc(size_ * trackPart, {0.3, 0.8}, to, from);
    drawTrack(progress);
    drawNotches(progress);
    drawCaptionAndIcon();
    cairo_surface_flush(surface_);
  }

 private:
  static cairo_surface_t* made(double side) {
    const int pixels = static_cast<int>(side);
    return cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels, pixels);
  }
  void setColor(const OxCodableColor& color) {
    cairo_set_source_rgba(cairo_, color.r, color.g, color.b, color.a);
  }

  void drawDisc(double inset, std::pair<double, double> stops, const OxCodableColor& first,
                const OxCodableColor& second) {
    cairo_pattern_t* const gradient = cairo_pattern_create_linear(0, 0, size_, size_);
    const auto add = [&](double stop, const OxCodableColor& color) {
      cairo_pattern_add_color_stop_rgb(gradient, stop, color.r, color.g, color.b);
    };
    add(stops.first, first);
    add(stops.second, second);
    cairo_set_source(cairo_, gradient);
    cairo_pattern_destroy(gradient);
    cairo_arc(cairo_, size_ / 2, size_ / 2, size_ / 2 - inset, 0, 2 * std::numbers::pi);
    cairo_fill(cairo_);
  }

  void drawTrack(double progress) {
    constexpr double top = -std::numbers::pi / 2;
    const double width = size_ * trackPart;
    const double middle = top + progress * 2 * std::numbers::pi;
    cairo_set_line_width(cairo_, width);
    const auto stroke = [&](double start, double end, const OxCodableColor& color) {
      setColor(color);
      cairo_arc(cairo_, size_ / 2, size_ / 2, (size_ - width) / 2, start, end);
      cairo_stroke(cairo_);
    };
    stroke(top, middle, white);
    stroke(middle, top + 2 * std::numbers::pi, open);
  }

  void drawNotches(double progress) {
    const double radius = size_ / 2;
    const double inner = radius * (1 - trackPart * 2);
    cairo_save(cairo_);
    cairo_set_operator(cairo_, CAIRO_OPERATOR_CLEAR);
    cairo_set_line_width(cairo_, size_ * notchPart);
    for (int notch = static_cast<int>(progress * 3) + 1; notch < 3; ++notch) {
      const double angle = notch * 2 * std::numbers::pi / 3;
      cairo_move_to(cairo_, radius + std::sin(angle) * radius, radius - std::cos(angle) * radius);
      cairo_line_to(cairo_, radius + std::sin(angle) * inner, radius - std::cos(angle) * inner);
      cairo_stroke(cairo_);
    }
    cairo_restore(cairo_);
  }

  void drawCaptionAndIcon() {
    setColor(white);
    cairo_text_extents_t extents;
    cairo_text_extents(cairo_, "12", &extents);
    cairo_move_to(cairo_, size_ / 2 - extents.width / 2, size_ * 0.86);
    cairo_show_text(cairo_, "12");
    const double side = std::ceil(size_ * 0.45);
    const double origin = std::round((size_ - side) / 2);
    cairo_save(cairo_);
    cairo_translate(cairo_, origin, origin);
    cairo_scale(cairo_, 1 / scale, 1 / scale);
    cairo_mask_surface(cairo_, icon_, 0, 0);
    cairo_restore(cairo_);
  }

  double size_;
  cairo_surface_t* surface_;
  cairo_surface_t* icon_;
  cairo_t* cairo_ = nullptr;
};

template <int points>
void bareCairo(benchmark::State& state) {
  BareRing ring(points);
  int frame = 0;
  for (auto _ : state) ring.draw(progressOf(++frame));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(bareCairo<84>)->Name("ring_84/cairo");
BENCHMARK(bareCairo<300>)->Name("ring_300/cairo");

StaticImageGenerator::Request request() {
  StaticImageGenerator::Request ring{.size = {84, 84}, .scale = scale};
  ring.image = {.icon = IconVisualRepresentation::icon(IconManagerIcon::book)};
  ring.layoutProperties.colors = colors();
  ring.layoutProperties.bottomCaption = StaticImageGenerator::Caption{.text = "12"};
  ring.layoutProperties.numSegments = 3;
  ring.layoutProperties.progress = 0.4;
  return ring;
}

void staticImageHit(benchmark::State& state) {
  VirtualEnvironment environment;
  const auto ring = request();
  for (auto _ : state) benchmark::DoNotOptimize(ring.createSync());
}
BENCHMARK(staticImageHit)->Name("static_image/velloro");

void staticImageRender(benchmark::State& state) {
  VirtualEnvironment environment;
  const auto ring = request();
  for (auto _ : state) benchmark::DoNotOptimize(StaticImageGenerator::createNoCache(ring));
}
BENCHMARK(staticImageRender)->Name("static_image/render");

/// Another process has drawn it before.
void staticImageFile(benchmark::State& state) {
  VirtualEnvironment environment;
  const auto ring = request();
  (void)ring.createSync();
  for (auto _ : state) {
    ImageCache::shared().staticMemoryCache.removeAllObjects();
    benchmark::DoNotOptimize(ring.createSync());
  }
}
BENCHMARK(staticImageFile)->Name("static_image/from_a_file");

}  // namespace
}  // namespace velloro
