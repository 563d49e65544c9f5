#include "CoreGraphics/CGImage.h"

#include <numeric>
#include <string>

#include <gtest/gtest.h>

namespace platform {
namespace {

std::uint32_t bigEndianAt(const std::string& file, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(file[at + i]);
  return value;
}

/// The file's chunks: type and data.
std::vector<std::pair<std::string, std::string>> chunksOf(const std::string& file) {
  std::vector<std::pair<std::string, std::string>> chunks;
  for (std::size_t at = 8; at < file.size();) {
    const std::size_t length = bigEndianAt(file, at);
    chunks.emplace_back(file.substr(at + 4, 4), file.substr(at + 8, length));
    at += length + 12;
  }
  return chunks;
}

/// Every alpha with every colour up to it, which is all that a premultiplied channel can be.
TEST(CGImage, EveryPixelComesBackFromPNG) {
  std::vector<std::uint32_t> pixels;
  for (std::uint32_t alpha = 0; alpha < 256; ++alpha) {
    for (std::uint32_t value = 0; value <= alpha; ++value) {
      pixels.push_back(alpha << 24 | value << 16 | (alpha - value) << 8 | value / 2);
    }
  }
  const CGImage image(128, pixels.size() / 128, pixels);
  const auto again = CGImage::fromPNG(image.pngData().value().bytes());
  EXPECT_EQ(again.value()->width(), 128);
  EXPECT_TRUE(std::ranges::equal((*again)->pixels(), pixels));
  EXPECT_EQ(CGImage(0, 0, {}).pngData(), std::nullopt);
}

TEST(CGImage, PNGsOfEveryShapeComeBackAndAreSmall) {
  struct Case {
    std::size_t width, height;
    std::uint32_t (*pixel)(std::size_t x, std::size_t y);
    double most;  // bytes per pixel, behind a hundred for the frame
  };
  const auto flat = [](std::size_t, std::size_t) { return 0xFF204060U; };
  const auto slope = [](std::size_t x, std::size_t y) {
    return 0xFF000000U | static_cast<std::uint32_t>((x + y) / 3);
  };
  const auto noise = [](std::size_t x, std::size_t y) {
    return 0xFF000000U | static_cast<std::uint32_t>((x * 1000 + y) * 2654435761U >> 8);
  };
  for (const auto& [width, height, pixel, most] :
       {Case{300, 200, flat, 0.05}, Case{300, 200, slope, 0.2}, Case{64, 64, noise, 4.1},
        Case{9000, 3, slope, 1}, Case{1, 2, flat, 2}}) {
    std::vector<std::uint32_t> pixels;
    for (std::size_t i = 0; i < width * height; ++i) pixels.push_back(pixel(i % width, i / width));
    const Data file = CGImage(width, height, pixels).pngData().value();
    const auto again = CGImage::fromPNG(file.bytes());
    EXPECT_TRUE(std::ranges::equal(again.value()->pixels(), pixels)) << width;
    EXPECT_LT(file.size(), 100 + most * static_cast<double>(pixels.size())) << width;
  }
}

TEST(CGImage, DamagedPNGsFail) {
  const CGImage image(2, 2, {0xFF112233, 0x80402010, 0, 0xFFFFFFFF});
  const std::string good = image.pngData().value().text();
  const auto failureOf = [](const std::string& bytes) {
    const auto read = CGImage::fromPNG(Data(bytes).bytes());
    return read ? "" : read.error()->localizedDescription();
  };
  EXPECT_EQ(failureOf(good), "");
  EXPECT_TRUE(failureOf("GIF89a").starts_with("The image cannot be read: "));
  for (const std::size_t length : {0, 8, 20, 33, 50}) {
    EXPECT_NE(failureOf(good.substr(0, length)), "") << length;
  }
  for (const std::size_t at : {0, 13, 19, 45}) {
    std::string bad = good;
    bad[at] ^= 0x10;
    EXPECT_NE(failureOf(bad), "") << at;
  }
}

TEST(CGImage, AnimatedPNG) {
  std::vector<std::shared_ptr<const CGImage>> frames;
  for (const std::uint32_t color : {0xFFFF0000, 0xFF00FF00, 0xFF0000FF}) {
    frames.push_back(std::make_shared<CGImage>(3, 2, std::vector<std::uint32_t>(6, color)));
  }
  std::string file;
  AnimationFrame place{.count = 3};
  for (; place.index < place.count; ++place.index) {
    file += animatedPNGPiece(*frames[place.index], place).value().text();
  }
  const auto first = CGImage::fromPNG(Data(file).bytes());
  EXPECT_EQ((*first)->pixel(2, 1), 0xFFFF0000);

  std::string order;
  std::uint32_t sequence = 0;
  for (const auto& [type, data] : chunksOf(file)) {
    order += type + " ";
    const bool isFrame = type == "fcTL" || type == "fdAT";
    EXPECT_TRUE(!isFrame || bigEndianAt(data, 0) == sequence++) << type;
    EXPECT_TRUE(type != "acTL" || bigEndianAt(data, 0) == 3);
    EXPECT_TRUE(type != "fcTL" || bigEndianAt(data, 20) == (1 << 16 | 60));  // 1/60 s
  }
  EXPECT_EQ(order, "IHDR acTL fcTL IDAT fcTL fdAT fcTL fdAT IEND ");
  EXPECT_FALSE(animatedPNGPiece(*frames[0], place)) << "behind the last";
}

}  // namespace
}  // namespace platform
