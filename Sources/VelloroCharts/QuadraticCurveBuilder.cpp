#include "VelloroCharts/QuadraticCurveBuilder.h"

#include <algorithm>

namespace velloro {
namespace {

double middle(double a, double b) {
  return (a + b) / 2;
}

double reflected(double a, double through) {
  return 2 * through - a;
}

/// The height of the control point before `q`. Its reflection begins the next curve, and must not
/// pass `r`.
double controlHeight(double p, double q, double r) {
  const double towards = (middle(p, q) + (q - middle(r, q)) + q) / 2;
  const double held = std::clamp(towards, std::min(p, q), std::max(p, q));
  const double next = reflected(held, q);
  if (q < r) {
    if (next > r) return reflected(r, q);
    return q <= next ? held : q;
  }
  if (next < r) return reflected(r, q);
  return next <= q ? held : q;
}

CGPoint controlPoint(CGPoint p, CGPoint q, CGPoint r) {
  return {.x = (middle(p.x, q.x) + 2 * q.x - middle(r.x, q.x)) / 2,
          .y = controlHeight(p.y, q.y, r.y)};
}

}  // namespace

CGPath QuadraticCurveBuilder::path(std::span<const CGPoint> points) {
  CGPath path;
  if (points.size() < 2) return path;
  path.move(points[0]);
  if (points.size() == 2) {
    path.addLine(points[1]);
    return path;
  }
  CGPoint first = points[0];
  for (std::size_t i = 1; i < points.size(); ++i) {
    const CGPoint to = points[i];
    const CGPoint second =
        i + 1 < points.size() ? controlPoint(points[i - 1], to, points[i + 1]) : to;
    path.addCurve(first, second, to);
    first = {.x = reflected(second.x, to.x), .y = reflected(second.y, to.y)};
  }
  return path;
}

}  // namespace velloro
