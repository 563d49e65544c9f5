#include "CoreGraphics/FontGlyph.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxCheckableTasks/Icons/IconArtwork.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "OxCheckableTasks/Icons/IconTable.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using Icon = IconManagerIcon;
using Visual = IconVisualRepresentation;

/// Not empty, and within what its font calls a line, or nearly so.
void expectOutline(const std::string& name, const IconTable::Glyph& glyph) {
  const auto path = fontGlyph(glyph.font, glyph.name);
  ASSERT_TRUE(path) << name << ": " << glyph.font << ", " << glyph.name;
  const CGSize size = path->boundingBox().size;
  EXPECT_GT(std::max(size.width, size.height), 0.2) << name;
}

TEST(IconTable, HasArtworkOfEveryIconAndOfNoOther) {
  const VirtualEnvironment environment;
  const IconTable& table = IconTable::shared();
  std::vector<Icon> asText;
  std::size_t glyphs = 0;
  for (const Icon icon : allCases<Icon>()) {
    const auto glyph = table.icon(icon);
    const auto drawing = table.drawing(icon);
    EXPECT_FALSE(glyph && drawing) << rawValue(icon);
    if (glyph) expectOutline(std::string(rawValue(icon)), *glyph);
    EXPECT_TRUE(!drawing || CGPath::fromSVG(*drawing)) << rawValue(icon);
    if (!glyph && !drawing) asText.push_back(icon);
    glyphs += glyph ? 1 : 0;
  }
  EXPECT_EQ(glyphs, table.icons().size());
  EXPECT_EQ(glyphs + table.drawings().size() + asText.size(), 725U);
  std::erase_if(asText, [](Icon icon) { return rawValue(icon).starts_with("char_"); });
  EXPECT_THAT(asText, testing::ElementsAre(Icon::nike, Icon::weight_watchers));
}

TEST(IconTable, HasAGlyphOfTheSymbolsInUse) {
  const VirtualEnvironment environment;
  const IconTable& table = IconTable::shared();
  for (const auto& [name, glyph] : table.symbols()) expectOutline(name, glyph);
  for (const Icon icon : allCases<Icon>()) {
    const auto symbol = customSymbol(icon);
    EXPECT_TRUE(!symbol || table.symbol(symbol->name)) << rawValue(icon);
  }
  for (const char* name : {"checkmark.circle", "multiply.circle", "moon.zzz", "message",
                           "arrow.up.right.square", "note.text", "hourglass", "heart.fill"}) {
    EXPECT_TRUE(table.symbol(name)) << name;
  }
}

UIImage drawn(const Visual& visual, const Visual::DisplayProperties& how = {}) {
  const IconDisplayRepresentation representation{visual, how};
  return IconArtwork{.representation = representation, .side = 24, .scale = 2}.masked(
      {.r = 1, .g = 0, .b = 0, .a = 1});
}

/// Pixels that are opaque, and none of them red.
bool isColoured(const UIImage& image) {
  return std::ranges::any_of(image.cgImage->pixels(), [](std::uint32_t pixel) {
    return pixel >> 24 == 0xFF && pixel != 0xFFFF0000;
  });
}

double darkness(const UIImage& image) {
  double sum = 0;
  for (const std::uint32_t pixel : image.cgImage->pixels()) sum += pixel >> 24;
  return sum / 255 / static_cast<double>(image.cgImage->pixels().size());
}

TEST(IconArtwork, FillsItsSquareInItsColour) {
  const VirtualEnvironment environment;
  for (const Icon icon : allCases<Icon>()) {
    const UIImage image = drawn(Visual::icon(icon));
    ASSERT_TRUE(image.cgImage);
    EXPECT_EQ(image.cgImage->width(), 48U);
    EXPECT_EQ(image.scale, 2);
    EXPECT_FALSE(isColoured(image)) << rawValue(icon);
    EXPECT_THAT(darkness(image), testing::AllOf(testing::Gt(0.05), testing::Lt(0.95)))
        << rawValue(icon);
  }
  EXPECT_TRUE(isColoured(drawn(Visual::emoji("🚲"))));
  EXPECT_FALSE(isColoured(drawn(Visual::monogram("JD"))));
}

TEST(IconArtwork, ShowsInitialsWithoutArtworkAndTheLetterOfALetter) {
  const VirtualEnvironment environment;
  const auto same = [](const Visual& left, const Visual& right) {
    return std::ranges::equal(drawn(left).cgImage->pixels(), drawn(right).cgImage->pixels());
  };
  EXPECT_TRUE(same(Visual::icon(Icon::weight_watchers), Visual::monogram("WW")));
  EXPECT_TRUE(same(Visual::sfSymbol("no.such.symbol"), Visual::monogram("NS")));
  EXPECT_TRUE(same(Visual::icon(Icon::char_b), Visual::monogram("B")));
  EXPECT_TRUE(same(Visual::icon(Icon::char_10), Visual::monogram("10")));
  EXPECT_FALSE(same(Visual::icon(Icon::duration_28), Visual::icon(Icon::duration_29)));
}

TEST(IconArtwork, IsTurnedAndStruckThrough) {
  const VirtualEnvironment environment;
  const auto up = drawn(Visual::icon(Icon::arrow_up)).cgImage;
  const auto right =
      drawn(Visual::icon(Icon::arrow_up), {.orientation = OxImageOrientation::right, .overlay = {}})
          .cgImage;
  EXPECT_GT(up->pixel(24, 3) >> 24, 0x80U);
  EXPECT_GT(right->pixel(44, 24) >> 24, 0x80U);
  const UIImage heart = drawn(Visual::icon(Icon::heart));
  EXPECT_LT(darkness(drawn(Visual::icon(Icon::heart), {.overlay = Visual::Overlay::slash})),
            darkness(heart));
}

}  // namespace
}  // namespace velloro
