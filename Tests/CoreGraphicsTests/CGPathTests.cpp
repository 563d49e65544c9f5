#include "CoreGraphics/CGPath.h"
#include "CoreGraphics/FontGlyph.h"

#include <cmath>
#include <numbers>
#include <string>
#include <tuple>
#include <utility>

#include <gmock/gmock.h>

namespace platform {
namespace {

/// The points at which the path's lines and curves begin and end, and each curve's middle.
std::vector<CGPoint> pointsOn(const CGPath& path) {
  std::vector<CGPoint> points;
  for (const auto& [verb, p] : path.elements()) {
    if (verb == CGPath::Verb::curve) {
      const CGPoint from = points.back();
      points.push_back({(from.x + 3 * p[0].x + 3 * p[1].x + p[2].x) / 8,
                        (from.y + 3 * p[0].y + 3 * p[1].y + p[2].y) / 8});
    }
    if (verb != CGPath::Verb::close) points.push_back(verb == CGPath::Verb::curve ? p[2] : p[0]);
  }
  return points;
}

void expectNear(CGPoint actual, CGPoint expected, double tolerance = 1e-9) {
  EXPECT_NEAR(actual.x, expected.x, tolerance);
  EXPECT_NEAR(actual.y, expected.y, tolerance);
}

TEST(CGPath, ArcsRunThroughGrowingOrFallingAngles) {
  const std::tuple<double, double, bool, double> cases[] = {
      {0, 360, false, 360},   {0, 360, true, -360},   {270, 180, false, 270},
      {270, 180, true, -90},  {270, 378, false, 108}, {270, 162, true, -108},
      {270, -18, true, -288}, {10, 10, false, 0},     {0, 720, false, 360},
      {350, 10, false, 20},   {10, 350, true, -20},   {-90, 630, true, -360}};
  for (const auto& [start, end, clockwise, sweep] : cases) {
    SCOPED_TRACE(std::to_string(start) + " to " + std::to_string(end));
    CGPath arc;
    arc.addArc({10, 20}, 8, start, end, clockwise);
    const auto points = pointsOn(arc);
    double way = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
      const double x = points[i].x - 10;
      const double y = points[i].y - 20;
      EXPECT_NEAR(std::hypot(x, y), 8, 1e-4);
      if (i == 0) continue;
      const double turned =
          std::atan2(y, x) - std::atan2(points[i - 1].y - 20, points[i - 1].x - 10);
      way += std::remainder(turned, 2 * std::numbers::pi) * 180 / std::numbers::pi;
    }
    EXPECT_NEAR(way, sweep, 1e-6);
    const double radians = start * std::numbers::pi / 180;
    expectNear(points.front(), {10 + 8 * std::cos(radians), 20 + 8 * std::sin(radians)});
  }
}

TEST(CGPath, ShapesAndTransforms) {
  CGPath joined = CGPath::line({0, 0}, {5, 0});
  joined.addArc({10, 0}, 2, 180, 270, false);
  expectNear(pointsOn(joined)[2], {8, 0});  // a line joins the arc
  expectNear(*joined.currentPoint(), {10, -2});

  const auto turned = CGPath::rect({{0, 0}, {4, 2}})
                          .applying(CGAffineTransform::rotation(90).concatenating(
                              CGAffineTransform::translation(10, 0)));
  expectNear(turned.elements()[1].points[0], {10, 4});
  expectNear(*turned.currentPoint(), {10, 0});

  EXPECT_EQ(CGPath::roundedRect({{0, 0}, {4, 2}}, 0), CGPath::rect({{0, 0}, {4, 2}}));
  // A radius too large makes half circles of the short sides.
  const auto pill = CGPath::roundedRect({{0, 0}, {10, 4}}, 99);
  expectNear(pill.elements()[0].points[0], {0, 2});
  expectNear(pointsOn(CGPath::ellipse({{10, 20}, {8, 4}})).front(), {18, 22});
}

TEST(CGPath, ReadsSVG) {
  const std::pair<const char*, std::vector<CGPoint>> cases[] = {
      {"M1 2l3,4h-1V9z", {{1, 2}, {4, 6}, {3, 6}, {3, 9}}},
      {"m1 2 3 4 5 6", {{1, 2}, {4, 6}, {9, 12}}},
      {"M0 0L.5.5-1-1", {{0, 0}, {0.5, 0.5}, {-1, -1}}},
      {"M1e1 0zm1 1", {{10, 0}, {11, 1}}},
      {"M0 0c0 0 4 0 4 4s4 4 4 4", {{0, 0}, {2, 0.5}, {4, 4}, {6, 7.5}, {8, 8}}},
      {"M0 0Q2 4 4 0t4 0", {{0, 0}, {2, 2}, {4, 0}, {6, -2}, {8, 0}}},
      // Flags need nothing behind them; half a circle by two eighths, and their middles.
      {"M0 0a2 2 0 014 0",
       {{0, 0},
        {0.1522, -0.7654},
        {0.5858, -1.4142},
        {1.2346, -1.8478},
        {2, -2},
        {2.7654, -1.8478},
        {3.4142, -1.4142},
        {3.8478, -0.7654},
        {4, 0},
        {4, 0}}},
      {"M0 0A9 0 0 0 0 4 0", {{0, 0}, {4, 0}}}};
  for (const auto& [data, expected] : cases) {
    SCOPED_TRACE(data);
    const auto path = CGPath::fromSVG(data);
    ASSERT_TRUE(path);
    const auto points = pointsOn(*path);
    ASSERT_EQ(points.size(), expected.size());
    for (std::size_t i = 0; i < points.size(); ++i) expectNear(points[i], expected[i], 1e-4);
  }
  for (const char* data :
       {"L1 1", "M1", "M1 2 3", "M1 2z3 4", "M1 2X", "Mnan 1", "M0 0a1 1 0 2 0 1 1"}) {
    EXPECT_FALSE(CGPath::fromSVG(data)) << data;
  }
}

TEST(FontGlyph, ByNameAndByCodePoint) {
  const auto glyph = fontGlyph("Material Design Icons", "water");
  ASSERT_TRUE(glyph);
  for (const CGPoint point : pointsOn(*glyph)) {
    EXPECT_TRUE(point.x > 0 && point.x < 1 && point.y > 0 && point.y < 1);
  }
  EXPECT_EQ(fontGlyph("Material Design Icons", "U+F0003"),
            fontGlyph("Material Design Icons", "access-point"));
  EXPECT_FALSE(fontGlyph("Inter", "U+0020"));  // nothing to draw
  EXPECT_FALSE(fontGlyph("Inter", "U+wxyz"));
  EXPECT_FALSE(fontGlyph("Material Design Icons", "no-such-glyph"));
  EXPECT_FALSE(fontGlyph("No Such Family", "A"));
}

}  // namespace
}  // namespace platform
