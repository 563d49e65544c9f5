#pragma once

#include "Foundation/Date.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// A time zone: the rules by which a place's clocks follow UTC, from the system's zone database.
/// A handle of one pointer to data that lives for the process; two zones are equal when their
/// identifiers are.
///
///     const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();
///     berlin.secondsFromGMT(Date::fromISO8601("2024-07-01T00:00:00Z").value());  // 7200
///
/// Local times that a clock change skips or repeats are decided here, once for the whole program:
/// a skipped time moves forward by the length of the gap, a repeated one means its first
/// occurrence.
class TimeZone {
 public:
  /// Greenwich mean time, identifier "GMT".
  [[nodiscard]] static TimeZone gmt();
  /// The device's zone, as the installed `Environment` has it.
  [[nodiscard]] static TimeZone current();
  /// A zone of the system's database ("Europe/Berlin"), "GMT", "UTC", or a fixed offset of the form
  /// "GMT+0530". Absent for an unknown identifier.
  [[nodiscard]] static std::optional<TimeZone> fromIdentifier(std::string_view identifier);
  /// A zone with a fixed offset, identifier "GMT", or "GMT+0530" (with seconds where there are any:
  /// "GMT+053015"). Absent beyond ±18 hours.
  [[nodiscard]] static std::optional<TimeZone> fromSecondsFromGMT(std::int64_t seconds);
  /// The identifiers of the system's list, sorted.
  [[nodiscard]] static std::vector<std::string> knownTimeZoneIdentifiers();

  [[nodiscard]] const std::string& identifier() const;
  /// Seconds east of Greenwich at an instant.
  [[nodiscard]] std::int64_t secondsFromGMT(Date date) const;

  /// The offset at a UTC second, for calendar arithmetic on whole seconds since 1970.
  [[nodiscard]] std::int64_t offsetAt(std::int64_t utcSeconds) const;
  /// The UTC second at which the local clock shows `localSeconds`, which counts from 1970-01-01
  /// 00:00:00 on that clock.
  [[nodiscard]] std::int64_t utcSecondsAt(std::int64_t localSeconds) const;
  /// Whether the clocks ever jumped by more than half a day, as when a place changed sides of the
  /// date line. In such a zone a civil day can be missing or stand twice, so day arithmetic must
  /// ask the calendar.
  [[nodiscard]] bool hasSkippedOrRepeatedDays() const;
  /// The first clock change after an instant, absent when there is none.
  [[nodiscard]] std::optional<Date> nextTransition(Date after) const;

  bool operator==(const TimeZone&) const = default;
  [[nodiscard]] std::size_t hashValue() const { return std::hash<const void*>{}(rules_); }

  struct Rules;

 private:
  explicit TimeZone(const Rules* rules) : rules_(rules) {}

  const Rules* rules_;
};

}  // namespace platform

template <>
struct std::hash<platform::TimeZone> {
  std::size_t operator()(const platform::TimeZone& zone) const noexcept { return zone.hashValue(); }
};
