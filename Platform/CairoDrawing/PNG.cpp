// Reading is libpng's, which checks bytes from outside. It writes no animations, so pictures are
// written as chunks of their own around rows that libdeflate compresses.

#include "CairoDrawing/PNG.h"

#include "CairoDrawing/Free.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

#include <libdeflate.h>
#include <png.h>

namespace platform {
namespace {

/// 255 / alpha in 16.16 fixed point, rounded up: the quotient that follows is exact.
constexpr auto inverseAlphas = [] {
  std::array<std::uint32_t, 256> inverses = {};
  for (std::uint32_t alpha = 1; alpha < 256; ++alpha) {
    inverses[alpha] = ((255U << 16U) + alpha - 1) / alpha;
  }
  return inverses;
}();

/// One pixel as R, G, B, A with the colour freed of its alpha.
std::uint32_t straight(std::uint32_t argb) {
  const std::uint32_t alpha = argb >> 24U;
  if (alpha == 0) return 0;
  const auto channel = [&](unsigned shift) { return (argb >> shift) & 0xFFU; };
  std::uint32_t red = channel(16);
  std::uint32_t green = channel(8);
  std::uint32_t blue = channel(0);
  if (alpha != 255) {
    const auto divided = [&](std::uint32_t value) {
      return std::min<std::uint32_t>(255, (value * inverseAlphas[alpha] + 0x8000U) >> 16U);
    };
    red = divided(red);
    green = divided(green);
    blue = divided(blue);
  }
  return red | green << 8U | blue << 16U | alpha << 24U;
}

std::uint32_t premultiplied(std::uint32_t bgra) {
  const std::uint32_t alpha = bgra >> 24U;
  if (alpha == 255) return bgra;
  const auto times = [&](unsigned shift) {
    return ((((bgra >> shift) & 0xFFU) * alpha + 127) / 255) << shift;
  };
  return times(0) | times(8) | times(16) | alpha << 24U;
}

std::string bigEndian(std::uint32_t value) {
  std::string bytes(4, '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(value >> 24U);
    value <<= 8U;
  }
  return bytes;
}

std::string bigEndian16(std::uint16_t value) {
  return {static_cast<char>(value >> 8U), static_cast<char>(value & 0xFFU)};
}

void appendChunk(std::string& file, const std::string& typeAndData) {
  const std::uint32_t sum = libdeflate_crc32(0, typeAndData.data(), typeAndData.size());
  file += bigEndian(static_cast<std::uint32_t>(typeAndData.size() - 4));
  file += typeAndData;
  file += bigEndian(sum);
}

/// Rows of straight pixels, each behind the byte that says "no filter". Drawn pictures repeat whole
/// pixels, which a filter would hide from the compressor.
std::string rowsOf(const CGImage& image) {
  std::string rows;
  const std::size_t rowBytes = 1 + image.width() * 4;
  rows.resize_and_overwrite(rowBytes * image.height(), [&](char* out, std::size_t size) {
    const std::uint32_t* pixel = image.pixels().data();
    std::uint32_t lastPixel = 0;  // the next one is mostly the same
    std::uint32_t lastStraight = 0;
    for (std::size_t y = 0; y < image.height(); ++y) {
      *out++ = 0;
      for (std::size_t x = 0; x < image.width(); ++x, ++pixel, out += 4) {
        if (*pixel != lastPixel) {
          lastPixel = *pixel;
          lastStraight = straight(lastPixel);
        }
        std::memcpy(out, &lastStraight, 4);
      }
    }
    return size;
  });
  return rows;
}

/// The compressed rows behind `prefix`.
std::string compressed(const CGImage& image, std::string prefix) {
  // On rings, level 4 takes about as long as level 1 and makes half the bytes.
  constexpr int level = 4;
  const std::unique_ptr<libdeflate_compressor, Free<libdeflate_free_compressor>> compressor(
      libdeflate_alloc_compressor(level));
  if (!compressor) throw std::bad_alloc();
  const std::string rows = rowsOf(image);
  const std::size_t before = prefix.size();
  const std::size_t bound = libdeflate_zlib_compress_bound(compressor.get(), rows.size());
  prefix.resize_and_overwrite(before + bound, [&](char* out, std::size_t) {
    return before + libdeflate_zlib_compress(compressor.get(), rows.data(), rows.size(),
                                             out + before, bound);
  });
  return prefix;
}

std::string sizeOf(const CGImage& image) {
  return bigEndian(static_cast<std::uint32_t>(image.width())) +
         bigEndian(static_cast<std::uint32_t>(image.height()));
}

std::string header(const CGImage& image) {
  std::string file = "\x89PNG\r\n\x1A\n";
  const std::string eightBitRGBA("\x08\x06\0\0\0", 5);
  appendChunk(file, "IHDR" + sizeOf(image) + eightBitRGBA);
  return file;
}

}  // namespace

std::expected<std::shared_ptr<const CGImage>, std::string> readPNG(
    std::span<const std::byte> bytes) {
  png_image png = {};
  png.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&png, bytes.data(), bytes.size()) == 0) {
    return std::unexpected(png.message);
  }
  if (std::size_t{png.width} * png.height > CGImage::maximumPixels) {
    png_image_free(&png);
    return std::unexpected("it has too many pixels");
  }
  // B, G, R, A in memory is 0xAARRGGBB in a register.
  png.format = PNG_FORMAT_BGRA;
  std::vector<std::uint32_t> pixels(std::size_t{png.width} * png.height);
  if (png_image_finish_read(&png, nullptr, pixels.data(), 0, nullptr) == 0) {
    return std::unexpected(png.message);
  }
  for (std::uint32_t& pixel : pixels) pixel = premultiplied(pixel);
  return std::make_shared<const CGImage>(png.width, png.height, std::move(pixels));
}

std::string writePNG(const CGImage& image) {
  std::string file = header(image);
  appendChunk(file, compressed(image, "IDAT"));
  appendChunk(file, "IEND");
  return file;
}

std::string writeAnimatedPNGPiece(const CGImage& image, const AnimationFrame& frame) {
  const auto [index, count, framesPerSecond] = frame;
  const bool isFirst = index == 0;
  std::string piece;
  if (isFirst) {
    const std::uint32_t forEver = 0;
    piece = header(image);
    appendChunk(piece, "acTL" + bigEndian(count) + bigEndian(forEver));
  }
  // The chunks of the animation are numbered: one for the first frame, two for each other.
  const std::uint32_t sequence = isFirst ? 0 : 2 * index - 1;
  const std::string offset(8, '\0');
  const std::string replaceAll(2, '\0');  // dispose: none, blend: source
  appendChunk(piece, "fcTL" + bigEndian(sequence) + sizeOf(image) + offset + bigEndian16(1) +
                         bigEndian16(framesPerSecond) + replaceAll);
  appendChunk(piece, compressed(image, isFirst ? "IDAT" : "fdAT" + bigEndian(sequence + 1)));
  if (index + 1 == count) appendChunk(piece, "IEND");
  return piece;
}

}  // namespace platform
