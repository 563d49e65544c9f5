#pragma once

#include "CoreGraphics/CGAffineTransform.h"
#include "Foundation/Values/Geometry.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace platform {

/// An outline of lines and cubic Bézier curves, in one or more subpaths. Filled by the non-zero
/// rule.
///
///     CGPath arc;
///     arc.addArc({50, 50}, 40, 270, 360, false);
///         // from the top to the right, where y grows downwards
class CGPath {
 public:
  enum class Verb : std::uint8_t { move, line, curve, close };

  /// One step of the pen. A curve has two control points and its end, a move and a line their end
  /// alone in `points[0]`, a close none.
  struct Element {
    Verb verb;
    std::array<CGPoint, 3> points = {};

    bool operator==(const Element&) const = default;
  };

  CGPath() = default;
  [[nodiscard]] static CGPath rect(CGRect rect);
  /// The ellipse that touches the rectangle's sides.
  [[nodiscard]] static CGPath ellipse(CGRect rect);
  /// Corners are quarter circles; a radius above half a side is cut to that.
  [[nodiscard]] static CGPath roundedRect(CGRect rect, double cornerRadius);
  [[nodiscard]] static CGPath line(CGPoint from, CGPoint to);
  /// The path data of an SVG `path` element ("M3 2l2 18.23z"), as its recommendation has them:
  /// https://www.w3.org/TR/SVG11/paths.html. Absent for data that break its grammar.
  [[nodiscard]] static std::optional<CGPath> fromSVG(std::string_view data);

  void move(CGPoint to);
  /// A line without a current point is a move.
  void addLine(CGPoint to);
  void addCurve(CGPoint control1, CGPoint control2, CGPoint to);
  void addQuadCurve(CGPoint control, CGPoint to);
  void closeSubpath();

  /// A part of a circle. Angles are in degrees, 0 pointing along +x and growing towards +y: where y
  /// grows downwards, 90 is the bottom and 270 the top.
  ///
  /// With `clockwise` false the arc runs through growing angles, with true through falling ones.
  /// Where y grows downwards, false therefore looks clockwise; the flag's name is right on a
  /// surface whose y grows upwards. An end that lies the other way is taken whole turns further
  /// until it lies in the arc's direction, so 270 to 180 with false is three quarters of the circle
  /// and with true one quarter. Whole turns, and a way of 360 or more, are the full circle.
  ///
  /// A line joins the current point, if there is one, to the arc's start.
  void addArc(CGPoint center, double radius, double start, double end, bool clockwise);

  void append(const CGPath& other);
  [[nodiscard]] CGPath applying(const CGAffineTransform& transform) const;

  [[nodiscard]] const std::vector<Element>& elements() const { return elements_; }
  /// The least box round all points, those that pull at curves included; 0 by 0 for an empty path.
  [[nodiscard]] CGRect boundingBox() const;
  [[nodiscard]] bool isEmpty() const { return elements_.empty(); }
  /// Where the pen stands; absent in an empty path.
  [[nodiscard]] std::optional<CGPoint> currentPoint() const { return current_; }

  bool operator==(const CGPath&) const = default;

 private:
  void add(Verb verb, CGPoint a, CGPoint b = {}, CGPoint c = {});

  std::vector<Element> elements_;
  std::optional<CGPoint> current_;
  CGPoint start_;  // of the subpath: where a close goes back to
};

}  // namespace platform
