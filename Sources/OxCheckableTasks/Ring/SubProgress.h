#pragma once

#include "Foundation/Values/Geometry.h"
#include "Foundation/Values/Hasher.h"
#include "OxCheckableTasks/Ring/FillDirection.h"
#include "OxCheckableTasks/Ring/TrackArcs.h"

#include <optional>
#include <variant>

namespace velloro {

/// How the dot of a running timer spends each second on its way to the next second's place.
enum class CheckableTaskDotStyle { linear, easeIn, easeInOut, easeOut, discrete };

/// How the progress within one completion is drawn inside the track.
struct CheckableTaskSubProgressStyle {
  /// A ring that fills in so many steps, each of which is fast at first and slow at its end.
  struct FillEaseOut {
    int steps = 1;
    bool operator==(const FillEaseOut&) const = default;
  };
  /// A dot that goes round once a minute.
  struct Dot {
    CheckableTaskDotStyle style = CheckableTaskDotStyle::linear;
    double totalDuration = 0;  ///< The seconds of a progress of 1.
    bool operator==(const Dot&) const = default;
  };
  struct FillLinear {
    bool operator==(const FillLinear&) const = default;
  };
  /// A ring that fills in the first half and empties in the second.
  struct FillUnfillLinear {
    bool operator==(const FillUnfillLinear&) const = default;
  };

  std::variant<FillEaseOut, Dot, FillLinear, FillUnfillLinear> value = FillLinear{};

  bool operator==(const CheckableTaskSubProgressStyle&) const = default;

  [[nodiscard]] static CheckableTaskSubProgressStyle fillEaseOut(int steps) {
    return {FillEaseOut{steps}};
  }
  [[nodiscard]] static CheckableTaskSubProgressStyle dot(CheckableTaskDotStyle style,
                                                         double totalDuration) {
    return {Dot{style, totalDuration}};
  }
  [[nodiscard]] static CheckableTaskSubProgressStyle fillLinear() { return {FillLinear{}}; }
  [[nodiscard]] static CheckableTaskSubProgressStyle fillUnfillLinear() {
    return {FillUnfillLinear{}};
  }
};

/// The arc of a sub-progress: inside the track, and apart from it by a tenth of their joint half
/// width.
struct SubProgressFillProperties {
  ArcAngles angles;
  double radius = 0;
  double trackWidth = 0;

  bool operator==(const SubProgressFillProperties&) const = default;
};

struct RingMeasures {
  double radius = 0;      ///< To the outer edge of the track.
  double trackWidth = 0;  ///< Of the ring's own track.
  FillDirection fillDirection = FillDirection::clockwise;
};

/// Absent for a sub-progress of 0 or less, and for the style `dot`. `angleOffset` is where the arc
/// begins, in degrees: 270 is the top.
///
///     calculateSubProgressFillProperties(CheckableTaskSubProgressStyle::fillLinear(), 0.25,
///                                        {.radius = 50, .trackWidth = 6}, 270)->angles;
///         // ArcAngles{270, 360}
[[nodiscard]] std::optional<SubProgressFillProperties> calculateSubProgressFillProperties(
    const CheckableTaskSubProgressStyle& style, double subProgress, const RingMeasures& ring,
    double angleOffset);

/// The square round the dot of a timer, on a surface whose y grows upwards. `progress` is the share
/// of the timer's duration that has gone by.
[[nodiscard]] CGRect calculateSubProgressTimerDotFrame(
    const CheckableTaskSubProgressStyle::Dot& dot, double progress, CGPoint center,
    const RingMeasures& ring);

}  // namespace velloro
