#include "CoreGraphics/CGContext.h"
#include "CoreGraphics/FontGlyph.h"

#include <cmath>

#include <gtest/gtest.h>

namespace platform {
namespace {

constexpr CGColor red{.red = 1};
constexpr CGColor blue{.blue = 1};
constexpr std::uint32_t redPixel = 0xFFFF0000;
constexpr std::uint32_t bluePixel = 0xFF0000FF;

class CGContextTest : public testing::Test {
 protected:
  std::uint32_t pixel(std::size_t x, std::size_t y) { return context->makeImage()->pixel(x, y); }
  void fillAll(CGColor color) {
    context->setFillColor(color);
    context->fill({{0, 0}, {100, 100}});
  }

  std::unique_ptr<CGContext> context = CGContext::bitmap(100, 100);
};

/// A quarter from the top: with the flag false it goes to the right, with true to the left.
TEST_F(CGContextTest, ArcsAndLineCaps) {
  for (const bool clockwise : {false, true}) {
    context->clear();
    context->setStrokeColor(red);
    context->setLineWidth(10);
    context->setLineCap(clockwise ? CGLineCap::round : CGLineCap::butt);
    CGPath arc;
    arc.addArc({50, 50}, 40, 270, clockwise ? 180 : 360, clockwise);
    context->stroke(arc);
    EXPECT_EQ(pixel(78, 22), clockwise ? 0 : redPixel);
    EXPECT_EQ(pixel(22, 22), clockwise ? redPixel : 0);
    EXPECT_EQ(pixel(50, 90), 0);
    EXPECT_EQ(pixel(52, 10), redPixel);  // within the arc, or within its round cap
    EXPECT_EQ(pixel(47, 10), clockwise ? redPixel : 0);
  }
}

TEST_F(CGContextTest, BlendModes) {
  struct Case {
    CGBlendMode mode;
    CGColor color;
    std::uint32_t inside;
  };
  const Case cases[] = {{CGBlendMode::normal, red.withAlpha(0.5), 0xFF80007F},
                        {CGBlendMode::copy, red.withAlpha(0.5), 0x80800000},
                        {CGBlendMode::clear, CGColor::clear(), 0},
                        {CGBlendMode::clear, red, 0},
                        {CGBlendMode::destinationOut, red, 0},
                        {CGBlendMode::destinationOut, red.withAlpha(0.5), 0x7F00007F}};
  for (const auto& [mode, color, inside] : cases) {
    SCOPED_TRACE(static_cast<int>(mode));
    fillAll(blue);
    const SavedGState saved(*context);
    context->setBlendMode(mode);
    context->setFillColor(color);
    context->fillEllipse({{25, 25}, {50, 50}});
    EXPECT_EQ(pixel(50, 50), inside);
    EXPECT_EQ(pixel(27, 27), bluePixel);  // nothing changes outside the shape
    // An image goes by the same rules, within its rectangle.
    const CGImage image(1, 1, {0x80800000});
    context->restoreGState();
    context->saveGState();
    fillAll(blue);
    context->setBlendMode(mode);
    context->draw(image, {{40, 40}, {20, 20}});
    const bool clears = mode == CGBlendMode::clear;
    const std::uint32_t half = mode == CGBlendMode::normal ? 0xFF80007F
                               : mode == CGBlendMode::copy ? 0x80800000
                                                           : 0x7F00007F;
    EXPECT_EQ(pixel(50, 50), clears ? 0 : half);
    EXPECT_EQ(pixel(39, 50), bluePixel);
  }
}

TEST_F(CGContextTest, StateReturnsWithTheRestore) {
  context->setFillColor(red);
  {
    const SavedGState saved(*context);
    context->setFillColor(blue);
    context->setAlpha(0.5);
    context->setBlendMode(CGBlendMode::clear);
    context->scaleBy(0, 1);  // would lead nowhere, and is left out
    context->translateBy(20, 0);
    context->rotateBy(90);
    context->scaleBy(10, 10);
    context->clipToEllipse({{0, 0}, {1, 1}});
    context->clear();
  }
  context->restoreGState();  // one too many
  context->fill({{90, 90}, {10, 10}});
  EXPECT_EQ(pixel(99, 99), redPixel);

  const SavedGState saved(*context);
  context->translateBy(20, 0);
  context->rotateBy(90);
  context->scaleBy(10, 10);
  context->clipToEllipse({{0, 0}, {1, 1}});
  context->setAlpha(0.5);
  fillAll(blue);
  EXPECT_EQ(pixel(15, 5), 0x80000080);
  EXPECT_EQ(pixel(25, 5), 0);
  EXPECT_EQ(pixel(10, 0), 0);  // outside the ellipse
  // What an image shows stays, and alpha is a factor to every kind of drawing.
  const auto before = context->makeImage();
  context->clear();
  EXPECT_EQ(before->pixel(15, 5), 0x80000080);
  context->draw(*before, {{0, 0}, {1, 1}});
  EXPECT_NE(pixel(15, 5) >> 24, 0xFF);
}

TEST_F(CGContextTest, GradientsGoOnBehindTheirEnd) {
  context->drawLinearGradient({{red, blue}, {0.5, 0.75}}, {20, 0}, {60, 0});
  EXPECT_EQ(pixel(18, 50), 0);
  EXPECT_EQ(pixel(22, 50), redPixel);
  EXPECT_EQ(pixel(38, 50), redPixel);
  EXPECT_EQ(pixel(45, 50) >> 24, 0xFF);
  EXPECT_NEAR(pixel(44, 50) & 0xFF, 0x72, 2);
  EXPECT_EQ(pixel(52, 50), bluePixel);
  EXPECT_EQ(pixel(99, 99), bluePixel);
  context->clear();
  context->setAlpha(0.5);
  context->drawLinearGradient({{red}, {0.5, 1}}, {0, 0}, {100, 100});
  EXPECT_EQ(pixel(80, 20), 0x80800000);
  context->drawLinearGradient({}, {0, 0}, {100, 100});  // nothing
}

TEST_F(CGContextTest, ImagesAndMasks) {
  // Two by two: opaque, half, clear, opaque; drawn to 40 by 40.
  const CGImage image(2, 2, {redPixel, 0x80800000, 0, redPixel});
  context->draw(image, {{20, 20}, {40, 40}});
  EXPECT_EQ(pixel(20, 20), redPixel);
  EXPECT_EQ(pixel(59, 59), redPixel);  // edges stay sharp
  EXPECT_EQ(pixel(59, 20), 0x80800000);
  EXPECT_EQ(pixel(20, 59), 0);
  EXPECT_EQ(pixel(19, 30), 0);
  EXPECT_EQ(pixel(60, 30), 0);

  context->clear();
  context->setFillColor(blue.withAlpha(0.5));
  context->fill(image, {{20, 20}, {40, 40}});
  EXPECT_EQ(pixel(20, 20), 0x80000080);
  EXPECT_EQ(pixel(59, 20), 0x40000040);
  EXPECT_EQ(pixel(20, 59), 0);
  EXPECT_EQ(pixel(19, 20), 0);
  context->draw(CGImage(0, 0, {}), {{0, 0}, {9, 9}});
  context->fill(image, {{0, 0}, {0, 9}});

  const auto mask = maskOfUnitPath(CGPath::ellipse({{0, 0}, {1, 1}}), 9);
  EXPECT_EQ(mask->pixel(4, 4), 0xFF000000);
  EXPECT_EQ(mask->pixel(0, 0), 0);
}

TEST(CGContext, SizesThatNoBitmapHas) {
  for (const auto& [width, height] : {std::pair{0U, 9U}, {9U, 0U}, {32768U, 1U}, {1U, 32768U}}) {
    EXPECT_EQ(CGContext::bitmap(width, height), nullptr);
  }
  EXPECT_NE(CGContext::bitmap(32767, 1), nullptr);
}

}  // namespace
}  // namespace platform
