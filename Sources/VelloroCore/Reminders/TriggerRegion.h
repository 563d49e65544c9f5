#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/RawValue.h"
#include "OxCheckableTasks/Icons/IconManagerIcon.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>

namespace velloro {

/// The places that have a name of their own.
enum class RegionType : std::int8_t { home, work, school, gym };

constexpr auto rawValues(std::type_identity<RegionType>) {
  using enum RegionType;
  return rawTexts<RegionType>({{home, "home"}, {work, "work"}, {school, "school"}, {gym, "gym"}});
}

/// A circle on the map whose edge, when crossed, calls for a reminder.
struct TriggerRegion {
  std::optional<RegionType> type = {};
  std::optional<std::string> title = {};
  double latitude = 0;   ///< Of the centre, degrees north.
  double longitude = 0;  ///< Of the centre, degrees east.
  double radius = 0;     ///< Metres.
  bool notifyOnEntry = false;
  bool notifyOnExit = false;
  std::optional<IconManagerIcon> icon = {};

  bool operator==(const TriggerRegion&) const = default;
  static constexpr auto codingKeys = keys(
      key("type", &TriggerRegion::type), key("title", &TriggerRegion::title),
      key("latitude", &TriggerRegion::latitude), key("longitude", &TriggerRegion::longitude),
      key("radius", &TriggerRegion::radius), key("notifyOnEntry", &TriggerRegion::notifyOnEntry),
      key("notifyOnExit", &TriggerRegion::notifyOnExit), key("icon", &TriggerRegion::icon));
};

}  // namespace velloro
