#include "Foundation/Process/VirtualEnvironment.h"
#include "UIKit/TextLayout.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <tuple>

#include <gtest/gtest.h>

namespace platform {
namespace {

using enum NSWritingDirection;

constexpr UIFont font{.pointSize = 20};
constexpr CGColor red{.red = 1};
constexpr std::uint32_t bluePixel = 0xFF0000FF;

/// A blue square of one pixel, blown up.
class Square : public NSTextAttachment {
 public:
  explicit Square(double side) : NSTextAttachment("square", {side, side}) {}
  std::shared_ptr<const CGImage> image(double scale) const override {
    scales.insert(scale);
    return std::make_shared<CGImage>(1, 1, std::vector<std::uint32_t>{bluePixel});
  }
  mutable std::set<double> scales;
};

struct Drawn {
  std::shared_ptr<const CGImage> image;

  template <typename Predicate>
  [[nodiscard]] std::vector<CGPoint> where(Predicate predicate) const {
    std::vector<CGPoint> places;
    for (std::size_t y = 0; y < image->height(); ++y) {
      for (std::size_t x = 0; x < image->width(); ++x) {
        if (predicate(image->pixel(x, y))) {
          places.push_back({static_cast<double>(x), static_cast<double>(y)});
        }
      }
    }
    return places;
  }
  [[nodiscard]] std::vector<CGPoint> ink() const {
    return where([](std::uint32_t pixel) { return pixel >> 24U > 0x40; });
  }
};

Drawn drawn(TextLayout& layout, CGPoint origin = {10, 10}, double alpha = 1) {
  const auto context = CGContext::bitmap(200, 100);
  context->setAlpha(alpha);
  layout.draw(*context, origin);
  return {context->makeImage()};
}

std::shared_ptr<TextLayout> layout(const char* text, const TextLayoutOptions& options = {}) {
  return TextLayout::make({text, {.font = font, .color = red}}, options);
}

TEST(TextLayout, MeasuresAndStandsWhereItSays) {
  const auto one = layout("Hxx");
  const auto [width, height] = one->size();
  EXPECT_NEAR(height, 1.2 * font.pointSize, 2);
  EXPECT_EQ(one->lineCount(), 1);
  const auto ink = drawn(*one).ink();
  const auto [top, bottom] = std::ranges::minmax(ink, {}, &CGPoint::y);
  const auto [left, right] = std::ranges::minmax(ink, {}, &CGPoint::x);
  EXPECT_NEAR(bottom.y + 1, 10 + one->baseline(), 1);
  EXPECT_NEAR(bottom.y - top.y, 0.73 * font.pointSize, 2);  // as high as a capital letter
  EXPECT_TRUE(left.x >= 10 && right.x < 10 + width);

  const auto centered = CGContext::bitmap(200, 100);
  one->drawCentered(*centered, {100, 50});
  const auto middle = Drawn{centered->makeImage()}.ink();
  const auto [first, last] = std::ranges::minmax(middle, {}, &CGPoint::x);
  EXPECT_NEAR((first.x + last.x) / 2, 100, 1.5);

  const UIFont black = UIFont::system(20, UIFont::Weight::black);
  EXPECT_GT(TextLayout::make({"Hxx", {.font = black}})->size().width, width);
  EXPECT_EQ(TextLayout::make({"Hxx", {.font = {.name = "No Such Font", .pointSize = 20}}})->size(),
            one->size());
  EXPECT_EQ(TextLayout::make({})->size(), CGSize{});
  EXPECT_EQ(TextLayout::make({})->lineCount(), 0);
}

TEST(TextLayout, WrapsAtAWidth) {
  const auto single = layout("one two three four");
  const auto wrapped = layout("one two three four", {.maximumWidth = 110});
  EXPECT_EQ(wrapped->lineCount(), 2);
  EXPECT_LE(wrapped->size().width, 110);
  EXPECT_NEAR(wrapped->size().height, 2 * single->size().height, 0.1);
  EXPECT_EQ(layout("one\ntwo")->lineCount(), 2);
  EXPECT_GT(layout("unbreakable", {.maximumWidth = 40})->lineCount(), 2);
  // The short line stands in the middle of the long one, wherever the layout puts them both.
  const auto ink = drawn(*layout("xxxxxxxx\ni", {.alignment = NSTextAlignment::center})).ink();
  const auto [left, right] = std::ranges::minmax(ink, {}, &CGPoint::x);
  const auto bottom = std::ranges::max(ink, {}, &CGPoint::y);
  EXPECT_NEAR(bottom.x, (left.x + right.x) / 2, 2);
}

/// Of a user who has a font that the machine has by another name.
bool findsTheirFont() {
  using namespace std::string_view_literals;
  const VirtualEnvironment environment;
  const auto home = environment.directories().temporary;
  std::ifstream file("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  constexpr auto known = "\0D\0e\0j\0a\0V\0u\0 \0S\0a\0n\0s"sv;
  for (std::size_t at = 0; (at = bytes.find(known, at)) != std::string::npos;) bytes[at + 1] = 'Q';
  std::filesystem::create_directory(home / "fonts");
  std::ofstream(home / "fonts/own.ttf", std::ios::binary) << bytes;
  for (const char* name : {"XDG_DATA_HOME", "XDG_CACHE_HOME"}) setenv(name, home.c_str(), 1);
  const auto sizeIn = [](const char* name) {
    return TextLayout::make({"Hxx", {.font = {.name = name, .pointSize = 20}}})->size();
  };
  return sizeIn("QejaVu Sans") != sizeIn("No Such Font");
}

TEST(TextLayout, FindsTheUsersFonts) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process that has not looked for fonts yet
  EXPECT_EXIT(std::_Exit(findsTheirFont() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(TextLayout, IsNotCutByANul) {
  using namespace std::string_literals;
  EXPECT_EQ(TextLayout::make({"x\0y"s, {.font = font}})->size(), layout("x y")->size());
}

TEST(TextLayout, EmojiKeepTheirColours) {
  const auto trophy = layout("\U0001F3C6");
  EXPECT_NEAR(trophy->size().width, 1.25 * font.pointSize, 2);
  const auto colors = drawn(*trophy).where([](std::uint32_t pixel) {
    return (pixel & 0xFF00U) != 0;  // no green in the text's own colour
  });
  EXPECT_GT(colors.size(), 100);
  // One glyph for a sequence of three people, and for two letters of a flag.
  EXPECT_EQ(layout("\U0001F468\u200D\U0001F469\u200D\U0001F467")->size(), trophy->size());
  EXPECT_EQ(layout("\U0001F1E9\U0001F1EA")->size(), trophy->size());
}

TEST(TextLayout, RunsAndImages) {
  const auto square = std::make_shared<Square>(10);
  NSAttributedString text("x", {.font = font, .color = red});
  text.append(square, {.font = font, .baselineOffset = 4});
  text.append("x", {.font = font, .color = red.withAlpha(0.5), .baselineOffset = 8});
  const auto made = TextLayout::make(text, {.scale = 2});
  EXPECT_EQ(square->scales, std::set<double>{2});
  for (const double alpha : {1.0, 0.5}) {
    const Drawn picture =
        drawn(*made, {10, 10.0 + std::ceil(made->baseline()) - made->baseline()}, alpha);
    const auto blue = picture.where(
        [&](std::uint32_t pixel) { return pixel == (alpha < 1 ? 0x80000080 : bluePixel); });
    ASSERT_FALSE(blue.empty());
    EXPECT_NEAR(blue.back().y, 10 + made->baseline() - 4 - 1, 1.1);
    EXPECT_NEAR(blue.back().y - blue.front().y, 9, 1);
    const auto half = picture.where(
        [&](std::uint32_t pixel) { return pixel == (alpha < 1 ? 0x40400000 : 0x80800000); });
    EXPECT_FALSE(half.empty());
    EXPECT_GT(half.front().x, blue.back().x);
    EXPECT_NEAR(half.back().y, 10 + made->baseline() - 8 - 1, 1.1);
  }
}

/// The image stands behind the text in reading order.
TEST(TextLayout, Directions) {
  for (const auto& [letters, direction, imageIsLeft] : {std::tuple("abc", natural, false),
                                                        {"שתה", natural, true},
                                                        {"12", natural, false},
                                                        {"abc", rightToLeft, true},
                                                        {"שתה", leftToRight, false}}) {
    SCOPED_TRACE(letters);
    NSAttributedString text(letters, {.font = font, .color = red, .writingDirection = direction});
    text.append(std::make_shared<Square>(10), {.font = font});
    const auto made = TextLayout::make(text);
    const Drawn picture = drawn(*made);
    const auto image = picture.where([](std::uint32_t pixel) { return pixel == bluePixel; });
    const auto ink = picture.ink();
    ASSERT_FALSE(image.empty());
    const auto [left, right] = std::ranges::minmax(ink, {}, &CGPoint::x);
    EXPECT_EQ(image.front().x < left.x + 2, imageIsLeft);
    EXPECT_TRUE(left.x >= 9 && right.x < 11 + made->size().width);
  }
}

TEST(TextLayout, ShortLinesStandWhereTheTextBegins) {
  for (const auto& [text, direction, isAtTheRight] : {std::tuple("wwwww i", rightToLeft, true),
                                                      {"wwwww i", natural, false},
                                                      {"שששששש ו", natural, true},
                                                      {"שששששש ו", leftToRight, false}}) {
    const auto made = TextLayout::make(
        {text, {.font = font, .color = red, .writingDirection = direction}}, {.maximumWidth = 80});
    ASSERT_EQ(made->lineCount(), 2U);
    const CGPoint last = drawn(*made).ink().back();
    EXPECT_EQ(last.x > 10 + made->size().width / 2, isAtTheRight) << text;
  }
}

}  // namespace
}  // namespace platform
