#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/PropertyList.h"
#include "VelloroCore/Types/WorkoutType.h"

#include <cstddef>
#include <optional>
#include <set>
#include <string>

namespace velloro {

/// The apps and sites whose use counts for a screen-time task, as the platform that measures the
/// use wrote them down. Only that platform understands them; here they are kept, and written as
/// they were read, whatever JSON they are.
struct ScreenTimeSettings {
  std::optional<PropertyList> _familyActivitySelection = {};

  bool operator==(const ScreenTimeSettings&) const = default;
  static constexpr auto codingKeys =
      keys(key("_familyActivitySelection", &ScreenTimeSettings::_familyActivitySelection));

  /// Absent when nothing has been chosen.
  [[nodiscard]] const PropertyList* familyActivitySelection() const;
  /// How much has been chosen, as far as it shows: the elements of the lists that the selection
  /// holds. One that shows no list counts as 1.
  [[nodiscard]] std::size_t numSelections() const;
  [[nodiscard]] bool isConfigured() const { return numSelections() > 0; }
};

/// What some types need beyond a target; `AutomaticTaskType::TypeExtra`.
struct TypeExtra {
  /// The workouts that count; empty for all.
  std::set<WorkoutType> workoutTypes = {};
  std::optional<double> healthKitRecordDuration = {};  ///< Seconds.
  std::optional<ScreenTimeSettings> screenTimeSettings = {};

  bool operator==(const TypeExtra&) const = default;
  static constexpr auto codingKeys =
      keys(key("workoutTypes", &TypeExtra::workoutTypes, initialValue),
           key("healthKitRecordDuration", &TypeExtra::healthKitRecordDuration),
           key("screenTimeSettings", &TypeExtra::screenTimeSettings));
  /// Names every member, for logs.
  [[nodiscard]] std::string debugDescription() const;
};

}  // namespace velloro
