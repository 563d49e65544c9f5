#include "OxKit/OxAnimationCurve.h"

#include <cmath>
#include <numbers>

namespace velloro {
namespace {

double cubed(double x) {
  return x * x * x;
}

}  // namespace

double valueAt(OxAnimationCurve curve, double t) {
  switch (curve) {
    case OxAnimationCurve::linear:
      return t;
    case OxAnimationCurve::easeIn:
      return cubed(t);
    case OxAnimationCurve::easeOut:
      return 1 - cubed(1 - t);
    case OxAnimationCurve::easeInOut:
      return (1 - std::cos(std::numbers::pi * t)) / 2;
  }
  return t;
}

}  // namespace velloro
