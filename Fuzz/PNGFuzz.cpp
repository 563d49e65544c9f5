#include "CoreGraphics/CGImage.h"
#include "Fuzz.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace platform;

/// The checksum behind each chunk (https://www.w3.org/TR/png-3/#D-CRCAppendix).
std::uint32_t checksum(std::string_view bytes) {
  std::uint32_t sum = ~0U;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0);
  }
  return ~sum;
}

std::size_t bigEndianAt(std::string_view file, std::size_t at) {
  std::size_t value = 0;
  for (std::size_t i = 0; i < 4; ++i)
    value = value << 8U | static_cast<unsigned char>(file[at + i]);
  return value;
}

/// With every checksum put right: else it would be the only thing that is ever found wrong.
std::string mended(std::string file) {
  for (std::size_t at = 8; at + 12 <= file.size();) {
    const std::size_t length = bigEndianAt(file, at);
    if (length > file.size() - at - 12) break;
    const std::uint32_t sum = checksum(std::string_view(file).substr(at + 4, length + 4));
    for (unsigned i = 0; i < 4; ++i)
      file[at + 8 + length + i] = static_cast<char>(sum >> (24 - 8 * i));
    at += length + 12;
  }
  return file;
}

/// What could be read is written, and reads as the same again.
void check(const std::string& bytes) {
  const auto image = CGImage::fromPNG(std::as_bytes(std::span(bytes)));
  if (!image) {
    if (image.error()->localizedDescription().empty()) std::abort();
    return;
  }
  // A few bytes can stand for many pixels; most of these need not be written.
  if ((*image)->pixels().size() > 10000) return;
  const auto again = CGImage::fromPNG((*image)->pngData().value().bytes());
  if (!again || !std::ranges::equal((*again)->pixels(), (*image)->pixels())) std::abort();
}

}  // namespace

std::span<const std::string_view> fuzzSeeds() {
  static const std::string small =
      CGImage(2, 2, {0xFF112233, 0x80402010, 0, 0xFFFFFFFF}).pngData().value().text();
  static const std::string wide =
      CGImage(64, 3, std::vector<std::uint32_t>(192, 0x40302010)).pngData().value().text();
  // Sixteen grey bits and an interlaced palette, with a gamma and a transparent colour.
  using namespace std::string_literals;
  static const std::string grey = mended(
      "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x10\0\0\0\0    \0\0\0\4gAMA\0\0\xB1\x8F    "
      "\0\0\0\x0EIDAT\x78\x01\1\3\0\xFC\xFF\0\x12\x34\0\x5B\0\x47    \0\0\0\0IEND    "s);
  static const std::string palette = mended(
      "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\1\3\0\0\1    \0\0\0\6PLTE\1\2\3\4\5\6    "
      "\0\0\0\1tRNS\x7F    \0\0\0\rIDAT\x78\x01\1\2\0\xFD\xFF\0\x80\0\x82\0\x81    "
      "\0\0\0\0IEND    "s);
  static const std::array<std::string_view, 4> seeds = {small, wide, grey, palette};
  for (const std::string_view seed : seeds) {
    if (!CGImage::fromPNG(std::as_bytes(std::span(seed)))) std::abort();
  }
  return seeds;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string file(reinterpret_cast<const char*>(bytes), size);
  check(file);
  check(mended(file));
  return 0;
}
