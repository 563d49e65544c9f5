#include "VelloroCharts/LineGraph.h"
#include "VelloroCharts/QuadraticCurveBuilder.h"

#include <algorithm>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velloro {
namespace {

using Elements = std::vector<CGPath::Element>;

LineGraph graphOf(const std::vector<double>& values, const LineGraph::Request& request) {
  std::vector<LineGraphDataPoint> data;
  for (const double value : values) data.push_back({.value = value});
  return LineGraph(data, request);
}

TEST(LineGraph, LaysValuesOutInTheirSpace) {
  // Usable: x from 12 to 88 between paddings of 10 and 10 and points of 4; y from 5 to 35.
  const LineGraph::Request request{.frame = {{}, {100, 60}},
                                   .pointDiameter = 4,
                                   .padding = {3, 10, 4, 10},
                                   .markerSpacingAbove = 1,
                                   .markerSpacingBelow = 2,
                                   .markerSize = {7, 6},
                                   .labelHeight = 10};
  const auto constant = LineGraph::MaxValue::relativeToConstant(2);
  struct Case {
    std::vector<double> values;
    LineGraph::MaxValue maxValue;
    std::vector<CGPoint> points;
  };
  const Case cases[] = {
      {{}, {}, {{12, 35}, {88, 35}}},
      {{}, LineGraph::MaxValue::relativeToConstant(0), {{12, 35}, {88, 35}}},
      {{7}, {}, {{12, 5}, {88, 5}}},
      {{1}, constant, {{12, 20}, {88, 20}}},
      {{0, 0, 0}, {}, {{12, 35}, {50, 35}, {88, 35}}},
      {{0, 4}, constant, {{12, 35}, {88, 5}}},
      {{1, 0, 2}, {}, {{12, 20}, {50, 35}, {88, 5}}},
  };
  for (const auto& [values, maxValue, points] : cases) {
    LineGraph::Request asked = request;
    asked.maxValue = maxValue;
    EXPECT_EQ(graphOf(values, asked).points, points) << testing::PrintToString(values);
    asked.rightToLeft = true;
    const LineGraph mirrored = graphOf(values, asked);
    EXPECT_EQ(mirrored.points.front(), (CGPoint{88, points.front().y}));
    EXPECT_EQ(mirrored.fillPath.boundingBox().origin.x, 10);
    EXPECT_EQ(mirrored.fillPath.elements().end()[-2].points[0], (CGPoint{90, points.front().y}));
  }
  const LineGraph graph = graphOf({1, 0, 2}, request);
  const Elements& fill = graph.fillPath.elements();
  using enum CGPath::Verb;
  EXPECT_EQ(Elements(fill.begin(), fill.begin() + 3), graph.linePath.elements());
  EXPECT_EQ(Elements(fill.begin() + 3, fill.end()), (Elements{{line, {CGPoint{90, 5}}},
                                                              {line, {CGPoint{90, 35}}},
                                                              {line, {CGPoint{10, 35}}},
                                                              {line, {CGPoint{10, 20}}},
                                                              {close}}));
  EXPECT_EQ(graph.zeroed()->points.back(), (CGPoint{88, 35}));
  EXPECT_FALSE(graphOf({}, request).zeroed());
  EXPECT_EQ(graphOf({7}, request).graphPoints().size(), 2u);
}

double at(double t, double a, double b, double c, double d) {
  const double u = 1 - t;
  return u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d;
}

TEST(QuadraticCurveBuilder, StaysBetweenNeighboursAndIsSmooth) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> height(0, 10);
  for (int round = 0; round < 2000; ++round) {
    std::vector<CGPoint> points;
    const std::size_t count = 3 + random() % 8;
    for (std::size_t i = 0; i < count; ++i) {
      const bool repeats = i > 0 && random() % 5 == 0;
      points.push_back({static_cast<double>(i) * 3, repeats ? points.back().y : height(random)});
    }
    const auto elements = QuadraticCurveBuilder::path(points).elements();
    ASSERT_EQ(elements.size(), count);
    CGPoint control = points.front();
    for (std::size_t i = 1; i < count; ++i) {
      const auto& [first, second, to] = elements[i].points;
      const CGPoint from = points[i - 1];
      ASSERT_EQ(to, points[i]);
      ASSERT_NEAR(first.y, control.y, 1e-9);
      const auto [low, high] = std::minmax(from.y, to.y);
      for (int step = 0; step <= 20; ++step) {
        const double y = at(step / 20.0, from.y, first.y, second.y, to.y);
        ASSERT_TRUE(low - 1e-9 <= y && y <= high + 1e-9) << testing::PrintToString(round);
      }
      control = {2 * to.x - second.x, 2 * to.y - second.y};
    }
  }
  EXPECT_TRUE(QuadraticCurveBuilder::path(std::vector<CGPoint>{{1, 1}}).isEmpty());
}

}  // namespace
}  // namespace velloro
