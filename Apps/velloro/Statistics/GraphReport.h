#pragma once

#include "VelloroCharts/LineGraph.h"

#include <optional>
#include <string_view>
#include <vector>

namespace velloro {

/// A line graph as numbers, as `velloro graph` prints it.
struct GraphReport {
  struct Point {
    double x = 0, y = 0;

    static constexpr auto codingKeys = keys(key("x", &Point::x), key("y", &Point::y));
  };
  /// A step of the pen; only what belongs to it is there.
  struct Operation {
    std::string_view op;  ///< "moveTo", "lineTo", "curveTo" or "close".
    std::optional<double> x = {}, y = {}, x1 = {}, y1 = {}, x2 = {}, y2 = {};

    [[nodiscard]] static Operation of(const CGPath::Element& element);
    static constexpr auto codingKeys =
        keys(key("op", &Operation::op), key("x", &Operation::x), key("y", &Operation::y),
             key("x1", &Operation::x1), key("y1", &Operation::y1), key("x2", &Operation::x2),
             key("y2", &Operation::y2));
  };
  struct Size {
    double width = 0, height = 0;

    static constexpr auto codingKeys =
        keys(key("width", &Size::width), key("height", &Size::height));
  };
  struct Frame {
    double x = 0, y = 0, width = 0, height = 0;

    static constexpr auto codingKeys =
        keys(key("x", &Frame::x), key("y", &Frame::y), key("width", &Frame::width),
             key("height", &Frame::height));
  };
  struct Insets {
    double top = 0, left = 0, bottom = 0, right = 0;

    static constexpr auto codingKeys =
        keys(key("top", &Insets::top), key("left", &Insets::left), key("bottom", &Insets::bottom),
             key("right", &Insets::right));
  };
  struct Font {
    std::string name;
    double pointSize = 0;

    static constexpr auto codingKeys =
        keys(key("name", &Font::name), key("pointSize", &Font::pointSize));
  };
  struct Request {
    bool rightToLeft = false;
    Frame frame;
    LineGraph::MaxValue maxValue;
    double pointDiameter = 0, lineThickness = 0;
    Insets padding;
    double markerSpacingAbove = 0, markerSpacingBelow = 0;
    Size markerSize;
    double labelHeight = 0;
    Font font;

    static constexpr auto codingKeys =
        keys(key("rightToLeft", &Request::rightToLeft), key("frame", &Request::frame),
             key("maxValue", &Request::maxValue), key("pointDiameter", &Request::pointDiameter),
             key("lineThickness", &Request::lineThickness), key("padding", &Request::padding),
             key("markerSpacingAbove", &Request::markerSpacingAbove),
             key("markerSpacingBelow", &Request::markerSpacingBelow),
             key("markerSize", &Request::markerSize), key("labelHeight", &Request::labelHeight),
             key("font", &Request::font));
  };

  Request request;
  std::vector<Point> points;
  std::vector<Operation> linePath, fillPath;

  static constexpr auto codingKeys =
      keys(key("request", &GraphReport::request), key("points", &GraphReport::points),
           key("linePath", &GraphReport::linePath), key("fillPath", &GraphReport::fillPath));

  [[nodiscard]] static GraphReport of(const LineGraph& graph);
};

}  // namespace velloro
