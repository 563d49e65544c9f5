#pragma once

#include "CoreData/Model/StoredForm.h"
#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/UniqueID.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

// How the rows keep the types of the program. An enumeration with raw values needs no line here.

namespace velloro {
struct IconDisplayRepresentation;
struct SharedTaskParticipant;
struct TaskExtra;
struct TriggerRegion;
}  // namespace velloro

/// `YYYYMMDD::intValue`, 0 for none.
template <>
struct platform::StoredForm<velloro::YYYYMMDD> {
  using Stored = std::int32_t;
  static std::optional<velloro::YYYYMMDD> decode(std::int64_t number) {
    return velloro::YYYYMMDD::fromIntValue(number);
  }
  static Stored encode(const velloro::YYYYMMDD& day) { return static_cast<Stored>(day.intValue()); }
};

/// Seconds since midnight, 0 to 86399.
template <>
struct platform::StoredForm<velloro::HHMMSS> {
  using Stored = std::int32_t;
  static std::optional<velloro::HHMMSS> decode(std::int64_t seconds) {
    return velloro::HHMMSS::fromIntValue(seconds);
  }
  static Stored encode(const velloro::HHMMSS& time) { return static_cast<Stored>(time.intValue()); }
};

/// A bit for each day.
template <>
struct platform::StoredForm<velloro::DaysOfWeek> {
  using Stored = std::int16_t;
  static std::optional<velloro::DaysOfWeek> decode(std::int64_t bits) {
    return velloro::DaysOfWeek(static_cast<Stored>(bits));
  }
  static Stored encode(velloro::DaysOfWeek days) { return days.rawValue; }
};

/// The text of its UUID.
template <>
struct platform::StoredForm<velloro::UniqueID> {
  using Stored = std::optional<std::string>;
  static constexpr TextComparison comparison = TextComparison::withoutCase;
  static std::optional<velloro::UniqueID> decode(const std::string& text) {
    return velloro::UniqueID::fromString(text);
  }
  static std::string encode(const velloro::UniqueID& id) { return id.stringValue(); }
};

/// Its identifier.
template <>
struct platform::StoredForm<platform::TimeZone> {
  using Stored = std::optional<std::string>;
  static std::optional<TimeZone> decode(const std::string& identifier) {
    return TimeZone::fromIdentifier(identifier);
  }
  static std::string encode(const TimeZone& zone) { return std::string(zone.identifier()); }
};

/// Red, green, blue and alpha between white space: "0.2 0.4 0.6 1". Remembered by the text.
template <>
struct platform::StoredForm<velloro::OxCodableColor> {
  using Stored = std::optional<std::string>;
  static std::optional<velloro::OxCodableColor> decode(const std::string& text);
  static std::string encode(const velloro::OxCodableColor& color);
};

/// See `IconDisplayRepresentation::fromCoreDataStringRepresentation`.
template <>
struct platform::StoredForm<velloro::IconDisplayRepresentation> {
  using Stored = std::optional<std::string>;
  static std::optional<velloro::IconDisplayRepresentation> decode(const std::string& text);
  static std::string encode(const velloro::IconDisplayRepresentation& icon);
  static bool isWhole(const std::string& text);
};

/// JSON of `VelloroJSONBackupTaskExtra`.
template <>
struct platform::StoredForm<velloro::TaskExtra> {
  using Stored = std::optional<std::string>;
  static std::optional<velloro::TaskExtra> decode(const std::string& json);
  static std::string encode(const velloro::TaskExtra& extra);
  static bool isWhole(const std::string& json);
};

/// JSON.
template <>
struct platform::StoredForm<velloro::TriggerRegion> {
  using Stored = std::optional<Data>;
  static std::optional<velloro::TriggerRegion> decode(const Data& json);
  static Data encode(const velloro::TriggerRegion& region);
  static bool isWhole(const Data& json);
};

/// JSON.
template <>
struct platform::StoredForm<std::vector<velloro::SharedTaskParticipant>> {
  using Stored = std::optional<Data>;
  static std::optional<std::vector<velloro::SharedTaskParticipant>> decode(const Data& json);
  static Data encode(const std::vector<velloro::SharedTaskParticipant>& participants);
  static bool isWhole(const Data& json);
};

namespace velloro {

/// The start of a task's day: seconds since midnight, but 86400 for midnight, since 0 stands for
/// none. A number beyond a day counts on from midnight.
struct StoredStartOfDay {
  using Stored = std::int32_t;
  static std::optional<HHMMSS> decode(std::int64_t seconds);
  static Stored encode(const HHMMSS& time);
};

/// Decimal integers with "," between them; pieces that are none are left out.
struct StoredDayIndexes {
  using Stored = std::optional<std::string>;
  static std::optional<std::set<std::int64_t>> decode(const std::string& text);
  static std::string encode(const std::set<std::int64_t>& indexes);
  static bool isWhole(const std::string& text);
};

}  // namespace velloro
