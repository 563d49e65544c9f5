#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "OxKit/Platform.h"

#include <optional>
#include <string>

namespace velloro {

/// An icon as its stored text ("ic_water_glass"), so that a reader that doesn't know the icon can
/// still read the record.
struct ComplicationSnapshotVisualRepresentation {
  std::string rawValue;

  bool operator==(const ComplicationSnapshotVisualRepresentation&) const = default;
  static constexpr auto codingKeys =
      keys(key("rawValue", &ComplicationSnapshotVisualRepresentation::rawValue));
};

/// What a snapshot says of an icon, and how it is shown.
///
///     const auto icon = IconDisplayRepresentation::fromCoreDataStringRepresentation("ic_mug");
///     ComplicationSnapshotDisplayRepresentation::of(*icon).visualRepresentation.rawValue;
///         // "ic_mug"
struct ComplicationSnapshotDisplayRepresentation {
  ComplicationSnapshotVisualRepresentation visualRepresentation;
  IconVisualRepresentation::DisplayProperties displayProperties;

  [[nodiscard]] static ComplicationSnapshotDisplayRepresentation of(
      const IconDisplayRepresentation& icon) {
    return {.visualRepresentation = {icon.visualRepresentation.storableValue()},
            .displayProperties = icon.displayProperties};
  }

  bool operator==(const ComplicationSnapshotDisplayRepresentation&) const = default;
  static constexpr auto codingKeys = keys(
      key("visualRepresentation", &ComplicationSnapshotDisplayRepresentation::visualRepresentation),
      key("displayProperties", &ComplicationSnapshotDisplayRepresentation::displayProperties));

  /// Absent for an icon that is not known.
  [[nodiscard]] std::optional<IconDisplayRepresentation> displayRepresentation() const {
    const auto icon = IconVisualRepresentation::fromStorableValue(visualRepresentation.rawValue);
    if (!icon) return std::nullopt;
    return IconDisplayRepresentation{.visualRepresentation = *icon,
                                     .displayProperties = displayProperties};
  }
};

}  // namespace velloro
