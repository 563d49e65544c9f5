#pragma once

namespace velloro {

/// How an animation spends its time.
enum class OxAnimationCurve { linear, easeIn, easeOut, easeInOut };

/// The share of the way that is done after the share `t` of the time, both in 0..1.
///
///     valueAt(OxAnimationCurve::easeIn, 0.5);     // 0.125
[[nodiscard]] double valueAt(OxAnimationCurve curve, double t);

}  // namespace velloro
