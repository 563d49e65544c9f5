#pragma once

#include "CoreGraphics/CGPath.h"
#include "Foundation/Coding/Coding.h"
#include "Foundation/Values/Geometry.h"
#include "Foundation/Values/UUID.h"
#include "OxKit/Platform.h"
#include "UIKit/UIFont.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace velloro {

/// One value of a graph, and the texts that go with it.
struct LineGraphDataPoint {
  UUID id = UUID::random();
  std::optional<std::string> label = {};
  double value = 0;
  std::optional<std::string> formattedValue = {};
  std::optional<std::string> formattedAccessibilityValue = {};
  bool showLabel = false;
  bool highlightMarker = false;

  bool operator==(const LineGraphDataPoint&) const = default;
  static constexpr auto codingKeys =
      keys(key("id", &LineGraphDataPoint::id), key("label", &LineGraphDataPoint::label),
           key("value", &LineGraphDataPoint::value),
           key("formattedValue", &LineGraphDataPoint::formattedValue),
           key("formattedAccessibilityValue", &LineGraphDataPoint::formattedAccessibilityValue),
           key("showLabel", &LineGraphDataPoint::showLabel),
           key("highlightMarker", &LineGraphDataPoint::highlightMarker));
};

/// The texts below a graph.
struct SummaryLabels {
  std::optional<std::string> leadingText = {}, centerText = {}, trailingText = {};

  bool operator==(const SummaryLabels&) const = default;
};

/// Values laid out as a smooth line, for any surface to draw.
///
///     const LineGraph graph({{.value = 0.2}, {.value = 0.8}},
///                           {.frame = {{}, {100, 50}}, .pointDiameter = 4});
///     graph.points.front();    // CGPoint{2, 36.5}
///     graph.points.back();     // CGPoint{98, 2}
///     graph.linePath.elements().size();    // 2: a move and a line
struct LineGraph {
  using SummaryLabels = velloro::SummaryLabels;

  /// What the top of the graph stands for.
  struct MaxValue {
    struct RelativeToLargest {
      bool operator==(const RelativeToLargest&) const = default;
    };
    /// A constant, or whatever exceeds it; or the largest value.
    std::variant<double, RelativeToLargest> value = RelativeToLargest{};

    [[nodiscard]] static MaxValue relativeToConstant(double constant) { return {constant}; }
    [[nodiscard]] static MaxValue relativeToLargest() { return {}; }
    bool operator==(const MaxValue&) const = default;
    static constexpr auto codingCases =
        cases(&MaxValue::value, keyed("relativeToConstant"), keyed("relativeToLargest"));
  };

  struct EdgeInsets {
    double top = 0, left = 0, bottom = 0, right = 0;

    bool operator==(const EdgeInsets&) const = default;
  };

  /// Lengths are in points. Points and paths are in the frame's own coordinates.
  struct Request {
    bool rightToLeft = false;  ///< Mirrored, also what is below the line.
    CGRect frame;
    MaxValue maxValue = {};
    double pointDiameter = 0;
    double lineThickness = 1;
    EdgeInsets padding = {};
    double markerSpacingAbove = 0;
    double markerSpacingBelow = 0;
    CGSize markerSize = {};
    double labelHeight = 0;
    UIFont font = {};

    bool operator==(const Request&) const = default;
  };

  struct GraphPoint {
    UUID id;
    CGPoint point;
    LineGraphDataPoint dataPoint;
  };

  std::vector<LineGraphDataPoint> data;
  Request request;
  CGRect frame;
  std::vector<CGPoint> points;  ///< At least two; a single value is a flat line, none one at 0.
  CGPath linePath;
  CGPath fillPath;  ///< What is below the line, over the whole width between the paddings.
  SummaryLabels labels;

  LineGraph(std::vector<LineGraphDataPoint> values, const Request& layout,
            SummaryLabels texts = {});

  /// Each point with its value. Where there are fewer of the one, the last of them is repeated;
  /// none without data.
  [[nodiscard]] std::vector<GraphPoint> graphPoints() const;
  /// With as many values of 0, from which the line can rise; absent without data.
  [[nodiscard]] std::optional<LineGraph> zeroed() const;
  [[nodiscard]] std::string accessibilityLabel() const;
};

}  // namespace velloro
