#include "VelloroCore/Types/TypeExtra.h"

#include "Foundation/Text/String.h"

namespace velloro {

const PropertyList* ScreenTimeSettings::familyActivitySelection() const {
  const auto& selection = _familyActivitySelection;
  return selection && !selection->isNull() ? &*selection : nullptr;
}

std::size_t ScreenTimeSettings::numSelections() const {
  const PropertyList* selection = familyActivitySelection();
  if (selection == nullptr) return 0;
  if (selection->dictionary() == nullptr) return 1;
  bool showsLists = false;
  std::size_t count = 0;
  for (const auto& [name, member] : *selection->dictionary()) {
    if (member.array() == nullptr) continue;
    showsLists = true;
    count += member.array()->size();
  }
  return showsLists ? count : 1;
}

std::string TypeExtra::debugDescription() const {
  std::string workouts;
  for (const WorkoutType& type : workoutTypes) {
    workouts += (workouts.empty() ? "" : ", ") + type.debugDescription();
  }
  return "workoutTypes=[" + workouts + "] healthKitRecordDuration=" +
         (healthKitRecordDuration ? stringWithFormat("%.15g", *healthKitRecordDuration) : "none") +
         " screenTimeSettings=" +
         (screenTimeSettings ? std::to_string(screenTimeSettings->numSelections()) : "none");
}

}  // namespace velloro
