#include "OxHealthKit/OxHKWorkoutActivityType.h"

namespace velloro {
namespace {

using enum OxHKWorkoutActivityType;

struct LocatedActivity {
  OxHKWorkoutActivityType activity;
  OxHKWorkoutActivityType indoor;
  OxHKWorkoutActivityType outdoor;
};

constexpr LocatedActivity locatedActivities[] = {
    {running, runningIndoor, runningOutdoor},
    {cycling, cyclingIndoor, cyclingOutdoor},
    {walking, walkingIndoor, walkingOutdoor},
};

}  // namespace

std::optional<OxHKWorkoutLocation> location(OxHKWorkoutActivityType type) {
  for (const auto& [activity, indoor, outdoor] : locatedActivities) {
    if (type == indoor) return OxHKWorkoutLocation::indoor;
    if (type == outdoor) return OxHKWorkoutLocation::outdoor;
  }
  return std::nullopt;
}

OxHKWorkoutActivityType withoutLocation(OxHKWorkoutActivityType type) {
  for (const auto& [activity, indoor, outdoor] : locatedActivities) {
    if (type == indoor || type == outdoor) return activity;
  }
  return type;
}

std::vector<OxHKWorkoutActivityType> minimalWorkoutTypeList(
    std::set<OxHKWorkoutActivityType> types) {
  for (const auto& [activity, indoor, outdoor] : locatedActivities) {
    if (!types.contains(indoor) || !types.contains(outdoor)) continue;
    types.erase(indoor);
    types.erase(outdoor);
    types.insert(activity);
  }
  return {types.begin(), types.end()};
}

std::string titleKey(OxHKWorkoutActivityType type) {
  return "healthcategory.subcategory." + std::string(rawValue(type));
}

}  // namespace velloro
