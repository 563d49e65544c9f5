#include "VelloroCharts/LineGraph.h"

#include "OxKit/AccessibilityLabel.h"
#include "VelloroCharts/QuadraticCurveBuilder.h"

#include <algorithm>
#include <utility>

namespace velloro {
namespace {

/// What lies between the paddings and above what stands below the line.
struct Space {
  double top, bottom, width;

  explicit Space(const LineGraph::Request& request)
      : top(request.padding.top + request.pointDiameter / 2),
        bottom(request.frame.size.height - request.padding.bottom - request.labelHeight -
               request.markerSpacingBelow - request.markerSize.height - request.markerSpacingAbove -
               request.pointDiameter / 2),
        width(request.frame.size.width - request.padding.left - request.padding.right) {}
  [[nodiscard]] double height() const { return bottom - top; }
};

std::vector<double> valuesOf(const std::vector<LineGraphDataPoint>& data) {
  if (data.empty()) return {0, 0};
  std::vector<double> values;
  values.reserve(data.size());
  for (const LineGraphDataPoint& point : data) values.push_back(point.value);
  if (values.size() == 1) values.push_back(values.front());
  return values;
}

double scaleOf(const std::vector<double>& values, const LineGraph::MaxValue& maxValue) {
  const double* constant = std::get_if<double>(&maxValue.value);
  return std::max(constant != nullptr ? *constant : 0, std::ranges::max(values));
}

CGPoint transposed(CGPoint point, const LineGraph::Request& request) {
  return point.transpose(request.rightToLeft, request.frame.size.width);
}

std::vector<CGPoint> layOut(const std::vector<double>& values, const LineGraph::Request& request) {
  const Space space(request);
  const double scale = scaleOf(values, request.maxValue);
  const double step =
      (space.width - request.pointDiameter) / static_cast<double>(values.size() - 1);
  std::vector<CGPoint> points;
  points.reserve(values.size());
  double x = request.padding.left + request.pointDiameter / 2;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double share = scale == 0 ? 0 : values[i] / scale;
    points.push_back(transposed(
        {.x = x + step * static_cast<double>(i), .y = space.bottom - space.height() * share},
        request));
  }
  return points;
}

CGPath filled(CGPath line, const std::vector<CGPoint>& points, const LineGraph::Request& request) {
  const Space space(request);
  const double left = request.padding.left;
  const double right = left + space.width;
  const double floor = space.top + space.height();
  for (const CGPoint corner : {CGPoint{right, points.back().y}, CGPoint{right, floor},
                               CGPoint{left, floor}, CGPoint{left, points.front().y}}) {
    line.addLine(transposed(corner, request));
  }
  line.closeSubpath();
  return line;
}

}  // namespace

LineGraph::LineGraph(std::vector<LineGraphDataPoint> values, const Request& layout,
                     SummaryLabels texts)
    : data(std::move(values)),
      request(layout),
      frame(layout.frame),
      points(layOut(valuesOf(data), layout)),
      linePath(QuadraticCurveBuilder::path(points)),
      fillPath(filled(linePath, points, layout)),
      labels(std::move(texts)) {}

std::vector<LineGraph::GraphPoint> LineGraph::graphPoints() const {
  std::vector<GraphPoint> paired;
  if (data.empty()) return paired;
  const std::size_t count = std::max(points.size(), data.size());
  for (std::size_t i = 0; i < count; ++i) {
    const LineGraphDataPoint& value = data[std::min(i, data.size() - 1)];
    paired.push_back({value.id, points[std::min(i, points.size() - 1)], value});
  }
  return paired;
}

std::optional<LineGraph> LineGraph::zeroed() const {
  if (data.empty()) return std::nullopt;
  return LineGraph(std::vector<LineGraphDataPoint>(data.size()), request, labels);
}

std::string LineGraph::accessibilityLabel() const {
  AccessibilityLabel label;
  const auto add = [&](const std::optional<std::string>& text) {
    if (text) label.parts.emplace_back(*text);
  };
  add(labels.leadingText);
  add(labels.centerText);
  add(labels.trailingText);
  for (const LineGraphDataPoint& point : data) add(point.formattedAccessibilityValue);
  return label.text();
}

}  // namespace velloro
