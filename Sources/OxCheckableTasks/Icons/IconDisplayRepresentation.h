#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxCheckableTasks/Icons/IconVisualRepresentation.h"
#include "OxKit/Platform.h"

#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// What is shown, and how.
///
///     const auto icon = IconDisplayRepresentation::fromCoreDataStringRepresentation("ic_mug");
///     icon->coreDataStringRepresentation();
///         // {"vr":{"icon":"mug"},"dp":{"orientation":0}}
struct IconDisplayRepresentation {
  IconVisualRepresentation visualRepresentation;
  IconVisualRepresentation::DisplayProperties displayProperties;

  bool operator==(const IconDisplayRepresentation&) const = default;
  static constexpr auto codingKeys =
      keys(key("visualRepresentation", &IconDisplayRepresentation::visualRepresentation),
           key("displayProperties", &IconDisplayRepresentation::displayProperties));

  /// The same in the column of a store.
  struct CoreDataRepresentation {
    IconVisualRepresentation visualRepresentation;
    IconVisualRepresentation::DisplayProperties displayProperties;

    static constexpr auto codingKeys =
        keys(key("vr", &CoreDataRepresentation::visualRepresentation),
             key("dp", &CoreDataRepresentation::displayProperties));
  };

  /// Reads a stored text: `IconVisualRepresentation::storableValue`, as older versions wrote it,
  /// which is shown upright; else JSON. Absent, with a line in the log, for any other.
  [[nodiscard]] static std::optional<IconDisplayRepresentation> fromCoreDataStringRepresentation(
      std::string_view text);
  /// JSON.
  [[nodiscard]] std::string coreDataStringRepresentation() const;
};

}  // namespace velloro
