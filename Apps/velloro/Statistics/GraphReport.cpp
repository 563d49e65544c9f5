#include "velloro/Statistics/GraphReport.h"

namespace velloro {
namespace {

GraphReport::Request requestOf(const LineGraph::Request& request) {
  const auto& [origin, size] = request.frame;
  const auto& [top, left, bottom, right] = request.padding;
  return {.rightToLeft = request.rightToLeft,
          .frame = {origin.x, origin.y, size.width, size.height},
          .maxValue = request.maxValue,
          .pointDiameter = request.pointDiameter,
          .lineThickness = request.lineThickness,
          .padding = {top, left, bottom, right},
          .markerSpacingAbove = request.markerSpacingAbove,
          .markerSpacingBelow = request.markerSpacingBelow,
          .markerSize = {request.markerSize.width, request.markerSize.height},
          .labelHeight = request.labelHeight,
          .font = {request.font.name, request.font.pointSize}};
}

std::vector<GraphReport::Operation> operationsOf(const CGPath& path) {
  std::vector<GraphReport::Operation> operations;
  for (const CGPath::Element& element : path.elements()) {
    operations.push_back(GraphReport::Operation::of(element));
  }
  return operations;
}

}  // namespace

GraphReport::Operation GraphReport::Operation::of(const CGPath::Element& element) {
  const auto& [a, b, c] = element.points;
  switch (element.verb) {
    case CGPath::Verb::move:
      return {.op = "moveTo", .x = a.x, .y = a.y};
    case CGPath::Verb::line:
      return {.op = "lineTo", .x = a.x, .y = a.y};
    case CGPath::Verb::curve:
      return {.op = "curveTo", .x = c.x, .y = c.y, .x1 = a.x, .y1 = a.y, .x2 = b.x, .y2 = b.y};
    case CGPath::Verb::close:
      break;
  }
  return {.op = "close"};
}

GraphReport GraphReport::of(const LineGraph& graph) {
  GraphReport report{.request = requestOf(graph.request),
                     .points = {},
                     .linePath = operationsOf(graph.linePath),
                     .fillPath = operationsOf(graph.fillPath)};
  for (const CGPoint& point : graph.points) report.points.push_back({point.x, point.y});
  return report;
}

}  // namespace velloro
