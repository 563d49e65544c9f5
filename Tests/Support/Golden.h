#pragma once

#include "CoreGraphics/CGImage.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Values/Data.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>

#include <gtest/gtest.h>

/// The greatest difference of a channel, and how many pixels differ by more than a shade.
struct Difference {
  int greatest = 0;
  int pixels = 0;
};

inline Difference difference(const platform::CGImage& left, const platform::CGImage& right) {
  constexpr int shade = 8;
  Difference result;
  for (std::size_t i = 0; i < left.pixels().size(); ++i) {
    int most = 0;
    for (unsigned shift = 0; shift < 32; shift += 8) {
      const auto channel = [&](const platform::CGImage& image) {
        return static_cast<int>(image.pixels()[i] >> shift & 0xFFU);
      };
      most = std::max(most, std::abs(channel(left) - channel(right)));
    }
    result.greatest = std::max(result.greatest, most);
    result.pixels += most > shade ? 1 : 0;
  }
  return result;
}

/// Whether a picture is that of Tests/Golden/<name>.png, but for a few pixels.
inline void expectGolden(const std::string& name,
                         const std::shared_ptr<const platform::CGImage>& drawn,
                         int allowedPixels = 12, int allowedDifference = 64) {
  ASSERT_TRUE(drawn);
  const auto file = std::string(VELLORO_GOLDEN "/").append(name).append(".png");
  const auto bytes = platform::NSFileManager::contents(file).value_or("");
  const auto golden = platform::CGImage::fromPNG(std::as_bytes(std::span(bytes)));
  const bool fits =
      golden && (*golden)->width() == drawn->width() && (*golden)->height() == drawn->height();
  const Difference found = fits ? difference(**golden, *drawn) : Difference{255, 1 << 20};
  if (found.pixels <= allowedPixels && found.greatest <= allowedDifference) return;
  const auto actual = ::testing::TempDir() + name + ".png";
  (void)platform::NSFileManager::write(drawn->pngData()->text(), actual);
  ADD_FAILURE() << file << " differs from " << actual << " in " << found.pixels
                << " pixels, by at most " << found.greatest;
}
