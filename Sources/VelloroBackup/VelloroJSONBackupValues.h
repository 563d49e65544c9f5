#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/TimeZone.h"
#include "OxCheckableTasks/Icons/IconVisualRepresentation.h"
#include "VelloroCore/Types/HealthType.h"
#include "VelloroCore/Types/TypeExtra.h"
#include "VelloroCore/Types/TypeSpeed.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>

// Values of a backup that are one JSON value each. Their forms never change.

namespace velloro {

/// A zone by its identifier: "Europe/Berlin".
struct CodableTimeZone {
  TimeZone timeZone = TimeZone::gmt();

  bool operator==(const CodableTimeZone&) const = default;
  void encode(Encoder& to) const;
  /// \throws DecodingError "Unable to decode timeZone with value X"
  [[nodiscard]] static CodableTimeZone decode(const Decoder& from);
};

/// An icon of the program, "ic_water_glass", or a symbol, "sf_star". Emoji and letters have no
/// form.
///
///     using Visual = VelloroJSONBackupVisualRepresentation;
///     Visual::fromText("water_glass")->text();    // "ic_water_glass"
///     Visual::fromText("ic_no_such_icon");        // absent
struct VelloroJSONBackupVisualRepresentation {
  IconVisualRepresentation value = IconVisualRepresentation::icon({});

  /// Absent for a representation that has no form.
  [[nodiscard]] static std::optional<VelloroJSONBackupVisualRepresentation> of(
      const IconVisualRepresentation& representation);
  /// Also an icon's name alone, as in older files. Absent for a name that no icon has.
  [[nodiscard]] static std::optional<VelloroJSONBackupVisualRepresentation> fromText(
      std::string_view text);
  [[nodiscard]] std::string text() const;

  bool operator==(const VelloroJSONBackupVisualRepresentation&) const = default;
  void encode(Encoder& to) const;
  /// \throws DecodingError "Unable to decode enum"
  [[nodiscard]] static VelloroJSONBackupVisualRepresentation decode(const Decoder& from);
};

/// The type of an automatic task: the raw value of a `HealthType`, or "screentime".
struct VelloroJSONBackupTaskTypeNameContainer {
  struct ScreenTime {
    bool operator==(const ScreenTime&) const = default;
  };
  std::variant<HealthType, ScreenTime> value = ScreenTime{};

  bool operator==(const VelloroJSONBackupTaskTypeNameContainer&) const = default;
  void encode(Encoder& to) const;
  /// \throws DecodingError "Unable to decode enum"
  [[nodiscard]] static VelloroJSONBackupTaskTypeNameContainer decode(const Decoder& from);
};

/// What narrows the type down: its speeds, its workouts, or what screen time counts. Older files
/// have one speed alone, or speeds or workouts with commas between them in a text, of which those
/// that are not known are left out.
///
///     using Container = VelloroJSONBackupTaskSpeedContainer;
///     const auto read = JSONDecoder{}.decode<Container>(R"("run,walk,fly")");
///     JSONEncoder{}.encode(read);    // ["walk","run"]
struct VelloroJSONBackupTaskSpeedContainer {
  using WorkoutTypes = std::set<WorkoutType>;
  std::variant<TypeSpeeds, WorkoutTypes, ScreenTimeSettings> value;

  bool operator==(const VelloroJSONBackupTaskSpeedContainer&) const = default;
  void encode(Encoder& to) const;
  /// \throws DecodingError "Unable to decode enum"
  [[nodiscard]] static VelloroJSONBackupTaskSpeedContainer decode(const Decoder& from);
};

}  // namespace velloro
