#pragma once

#include "Foundation/Hasher.h"
#include "VelloroCore/AutomaticTaskType.h"

#include <optional>
#include <string>

namespace velloro {

/// An automatic type as the four columns of a task's row hold it:
///
/// | type | `typeName` | `typeSpeed` |
/// | --- | --- | --- |
/// | the timer | absent | "timed" |
/// | screen time | "screentime" | JSON of `ScreenTimeSettings` |
/// | of health data | its raw value, then perhaps "." and the data source: "hk_water.all" | speeds,
/// or for workouts their types, with "," between them; or JSON of a list of workout types |
///
///     const StoredAutomaticTaskType water{.typeName = "hk_water.curr", .typeTarget = 2, .typeUnit
///     = "litres"}; water.automaticTaskType()->taskTarget();    // two litres
struct StoredAutomaticTaskType {
  std::optional<std::string> typeName = {};
  double typeTarget = 0;  ///< In `typeUnit`.
  std::optional<std::string> typeUnit = {};
  std::optional<std::string> typeSpeed = {};

  bool operator==(const StoredAutomaticTaskType&) const = default;
  void hash(Hasher& hasher) const { hasher.combine(typeName, typeTarget, typeUnit, typeSpeed); }

  [[nodiscard]] static StoredAutomaticTaskType from(const std::optional<AutomaticTaskType>& type);

  /// The type; absent for a task that is ticked off by hand, and for one whose type is not known.
  /// What else is not known is left out. Remembered by the columns.
  [[nodiscard]] std::optional<AutomaticTaskType> automaticTaskType() const;
};

/// The same, made out anew.
[[nodiscard]] std::optional<AutomaticTaskType> _buildAutomaticTaskType(
    const std::optional<std::string>& typeName, double typeTarget,
    const std::optional<std::string>& typeUnit, const std::optional<std::string>& typeSpeed);

}  // namespace velloro
