#include "CoreGraphics/CGContext.h"

#include <string>

#include <benchmark/benchmark.h>
#include <cairo.h>

namespace platform {
namespace {

/// A ring of 300 points at two pixels a point, three quarters full on a blended disc.
std::shared_ptr<const CGImage> ring() {
  const auto context = CGContext::bitmap(600, 600);
  context->clipToEllipse({{0, 0}, {600, 600}});
  const CGGradient gradient{
      .colors = {{.red = 0.1, .green = 0.5, .blue = 0.9}, {.red = 0.2, .green = 0.9, .blue = 0.5}},
      .locations = {0, 0.7}};
  context->drawLinearGradient(gradient, {0, 0}, {600, 600});
  CGPath arc;
  arc.addArc({300, 300}, 280, 270, 180, false);
  context->setLineWidth(36);
  context->setStrokeColor({.red = 1, .green = 1, .blue = 1});
  context->stroke(arc);
  return context->makeImage();
}

/// The same pixels as a surface of the peer.
cairo_surface_t* surfaceOf(const CGImage& image) {
  const auto* pixels = reinterpret_cast<const unsigned char*>(image.pixels().data());
  const int width = static_cast<int>(image.width());
  return cairo_image_surface_create_for_data(const_cast<unsigned char*>(pixels),
                                             CAIRO_FORMAT_ARGB32, width,
                                             static_cast<int>(image.height()), width * 4);
}

cairo_status_t append(void* file, const unsigned char* bytes, unsigned length) {
  static_cast<std::string*>(file)->append(reinterpret_cast<const char*>(bytes), length);
  return CAIRO_STATUS_SUCCESS;
}

void pngWrite(benchmark::State& state) {
  const auto image = ring();
  std::size_t size = 0;
  for (auto _ : state) size = image->pngData()->size();
  state.counters["bytes"] = static_cast<double>(size);
}
BENCHMARK(pngWrite)->Name("png_write/velloro");

void pngWriteByCairo(benchmark::State& state) {
  const auto image = ring();
  cairo_surface_t* const surface = surfaceOf(*image);
  std::string file;
  for (auto _ : state) {
    file.clear();
    cairo_surface_write_to_png_stream(surface, append, &file);
  }
  cairo_surface_destroy(surface);
  state.counters["bytes"] = static_cast<double>(file.size());
}
BENCHMARK(pngWriteByCairo)->Name("png_write/cairo");

void pngRead(benchmark::State& state) {
  const Data file = ring()->pngData().value();
  for (auto _ : state) benchmark::DoNotOptimize(CGImage::fromPNG(file.bytes()));
}
BENCHMARK(pngRead)->Name("png_read/velloro");

struct Source {
  const std::string& file;
  std::size_t at = 0;
};

cairo_status_t take(void* source, unsigned char* bytes, unsigned length) {
  auto& [file, at] = *static_cast<Source*>(source);
  at += file.copy(reinterpret_cast<char*>(bytes), length, at);
  return CAIRO_STATUS_SUCCESS;
}

void pngReadByCairo(benchmark::State& state) {
  const Data file = ring()->pngData().value();
  for (auto _ : state) {
    Source source{.file = file.text()};
    cairo_surface_destroy(cairo_image_surface_create_from_png_stream(take, &source));
  }
}
BENCHMARK(pngReadByCairo)->Name("png_read/cairo");

}  // namespace
}  // namespace platform
