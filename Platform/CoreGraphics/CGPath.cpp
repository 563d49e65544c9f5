#include "CoreGraphics/CGPath.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace platform {
namespace {

constexpr double fullTurn = 360;

/// From `start` on in the arc's direction, in degrees; negative for falling angles.
double sweepOf(double start, double end, bool clockwise) {
  const double way = clockwise ? start - end : end - start;
  if (way >= fullTurn) return clockwise ? -fullTurn : fullTurn;
  double sweep = way < 0 ? way + std::ceil(-way / fullTurn) * fullTurn : way;
  if (way < 0 && sweep <= 0) sweep = fullTurn;
  return clockwise ? -sweep : sweep;
}

CGPoint on(CGPoint center, double radius, double radians) {
  return {.x = center.x + radius * std::cos(radians), .y = center.y + radius * std::sin(radians)};
}

}  // namespace

CGPath CGPath::rect(CGRect rect) {
  const auto [x, y] = rect.origin;
  const auto [width, height] = rect.size;
  CGPath path;
  path.move({x, y});
  path.addLine({x + width, y});
  path.addLine({x + width, y + height});
  path.addLine({x, y + height});
  path.closeSubpath();
  return path;
}

CGPath CGPath::ellipse(CGRect rect) {
  const double width = rect.size.width / 2;
  const double height = rect.size.height / 2;
  CGPath circle;
  circle.addArc({}, 1, 0, fullTurn, false);
  circle.closeSubpath();
  return circle.applying(
      {.a = width, .d = height, .tx = rect.origin.x + width, .ty = rect.origin.y + height});
}

CGPath CGPath::roundedRect(CGRect rect, double cornerRadius) {
  const auto [x, y] = rect.origin;
  const auto [width, height] = rect.size;
  const double r = std::clamp(cornerRadius, 0.0, std::max(0.0, std::min(width, height) / 2));
  if (r <= 0) return CGPath::rect(rect);
  CGPath path;
  path.addArc({x + r, y + r}, r, 180, 270, false);
  path.addArc({x + width - r, y + r}, r, 270, 360, false);
  path.addArc({x + width - r, y + height - r}, r, 0, 90, false);
  path.addArc({x + r, y + height - r}, r, 90, 180, false);
  path.closeSubpath();
  return path;
}

CGPath CGPath::line(CGPoint from, CGPoint to) {
  CGPath path;
  path.move(from);
  path.addLine(to);
  return path;
}

void CGPath::move(CGPoint to) {
  add(Verb::move, to);
  start_ = to;
  current_ = to;
}

void CGPath::addLine(CGPoint to) {
  if (!current_) return move(to);
  add(Verb::line, to);
  current_ = to;
}

void CGPath::addCurve(CGPoint control1, CGPoint control2, CGPoint to) {
  if (!current_) move(control1);
  add(Verb::curve, control1, control2, to);
  current_ = to;
}

void CGPath::addQuadCurve(CGPoint control, CGPoint to) {
  if (!current_) move(control);
  // The same curve with two control points: each two thirds of the way to the one.
  const auto towards = [&](CGPoint end) {
    return CGPoint{.x = end.x + (control.x - end.x) * 2 / 3,
                   .y = end.y + (control.y - end.y) * 2 / 3};
  };
  addCurve(towards(*current_), towards(to), to);
}

void CGPath::closeSubpath() {
  if (!current_) return;
  elements_.push_back({.verb = Verb::close});
  current_ = start_;
}

void CGPath::addArc(CGPoint center, double radius, double start, double end, bool clockwise) {
  // Within an eighth of a turn a curve strays from the circle by less than a 200,000th of the
  // radius. Its control points lie 4/3 tan(angle / 4) radii along the tangents.
  constexpr double widest = 45;
  const double sweep = sweepOf(start, end, clockwise);
  const int pieces = static_cast<int>(std::ceil(std::abs(sweep) / widest - 1e-9));
  const double first = start * std::numbers::pi / 180;
  addLine(on(center, radius, first));
  if (pieces == 0) return;
  const double step = sweep * std::numbers::pi / 180 / pieces;
  const double tangent = radius * 4 / 3 * std::tan(step / 4);
  for (int i = 0; i < pieces; ++i) {
    const double a = first + i * step;
    const double b = first + (i + 1) * step;
    const CGPoint from = on(center, radius, a);
    const CGPoint to = on(center, radius, b);
    addCurve({from.x - tangent * std::sin(a), from.y + tangent * std::cos(a)},
             {to.x + tangent * std::sin(b), to.y - tangent * std::cos(b)}, to);
  }
}

void CGPath::append(const CGPath& other) {
  if (other.isEmpty()) return;
  const CGPath added = other;
  elements_.insert(elements_.end(), added.elements_.begin(), added.elements_.end());
  current_ = added.current_;
  start_ = added.start_;
}

CGPath CGPath::applying(const CGAffineTransform& transform) const {
  CGPath moved = *this;
  for (Element& element : moved.elements_) {
    for (CGPoint& point : element.points) point = transform.apply(point);
  }
  if (moved.current_) moved.current_ = transform.apply(*moved.current_);
  moved.start_ = transform.apply(start_);
  return moved;
}

CGRect CGPath::boundingBox() const {
  constexpr std::size_t pointsOf[] = {1, 1, 3, 0};  // by verb
  CGPoint least = {};
  CGPoint most = {};
  bool isFirst = true;
  for (const auto& [verb, points] : elements_) {
    for (std::size_t i = 0; i < pointsOf[static_cast<std::size_t>(verb)]; ++i) {
      const auto [x, y] = points[i];
      least = isFirst ? points[i] : CGPoint{std::min(least.x, x), std::min(least.y, y)};
      most = isFirst ? points[i] : CGPoint{std::max(most.x, x), std::max(most.y, y)};
      isFirst = false;
    }
  }
  return {.origin = least, .size = {.width = most.x - least.x, .height = most.y - least.y}};
}

void CGPath::add(Verb verb, CGPoint a, CGPoint b, CGPoint c) {
  elements_.push_back({.verb = verb, .points = {a, b, c}});
}

}  // namespace platform
