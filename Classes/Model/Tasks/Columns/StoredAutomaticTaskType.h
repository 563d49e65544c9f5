#pragma once

#include "Foundation/Values/Hasher.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <optional>
#include <string>

namespace velloro {

/// An automatic type as the four columns of a task's row hold it:
///
/// | type | `typeName` | `typeSpeed` |
/// | --- | --- | --- |
/// | the timer | absent | "timed" |
/// | screen time | "screentime" | JSON of `ScreenTimeSettings` |
/// | of health data | its raw value, perhaps with a source | speeds, or types of workouts |
///
/// A `DataSource` stands behind a ".", as in "hk_water.all". Speeds and types of workouts have ","
/// between them; a workout of the companion program makes the list one in JSON.
///
///     const StoredAutomaticTaskType walk{
///         .typeName = "hk_distance.curr", .typeTarget = 5, .typeUnit = "km", .typeSpeed = "walk"};
///     walk.automaticTaskType()->speeds.contains(TypeSpeed::walk);    // true
struct StoredAutomaticTaskType {
  std::optional<std::string> typeName = {};
  double typeTarget = 0;  ///< In `typeUnit`.
  std::optional<std::string> typeUnit = {};
  std::optional<std::string> typeSpeed = {};

  bool operator==(const StoredAutomaticTaskType&) const = default;
  void hash(Hasher& hasher) const { hasher.combine(typeName, typeTarget, typeUnit, typeSpeed); }

  [[nodiscard]] static StoredAutomaticTaskType from(const std::optional<AutomaticTaskType>& type);

  /// \name Whether all of a column can be made out, as far as there is something in it
  /// A word that is known and doesn't fit the type is left out, too, but can be read.
  /// @{
  [[nodiscard]] bool canReadName() const;
  [[nodiscard]] bool canReadUnit() const;
  [[nodiscard]] bool canReadSpeed() const;
  /// @}

  /// The type; absent for a task that is ticked off by hand, and for one whose type is not known.
  /// What else is not known is left out. Remembered by the columns.
  [[nodiscard]] std::optional<AutomaticTaskType> automaticTaskType() const;
};

/// The same, decoded again.
[[nodiscard]] std::optional<AutomaticTaskType> _buildAutomaticTaskType(
    const std::optional<std::string>& typeName, double typeTarget,
    const std::optional<std::string>& typeUnit, const std::optional<std::string>& typeSpeed);

}  // namespace velloro
