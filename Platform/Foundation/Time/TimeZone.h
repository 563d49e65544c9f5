#pragma once

#include "Foundation/Time/Date.h"

#include <array>
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
  [[nodiscard]] std::int64_t offsetAt(std::int64_t utcSeconds) const {
    const std::uint64_t number = static_cast<std::uint64_t>(utcSeconds) >> Stretch::shift;
    if (number < Stretch::count) [[likely]] {
      const Stretch& stretch = index_->stretches[number];
      if (!stretch.isCrowded) [[likely]] {
        return utcSeconds < stretch.changeAt ? stretch.before : stretch.after;
      }
    }
    return searchedOffsetAt(index_, utcSeconds);
  }
  /// What the local clock shows at an instant, as whole seconds since 1970-01-01 00:00:00 on that
  /// same clock.
  [[nodiscard]] std::int64_t localSecondsAt(Date date) const {
    const std::int64_t seconds = date.secondsSince1970();
    return seconds + offsetAt(seconds);
  }
  /// The reverse: the UTC second at which the local clock shows `localSeconds`.
  [[nodiscard]] std::int64_t utcSecondsAt(std::int64_t localSeconds) const;
  /// Whether the clocks ever jumped by more than half a day, as when a place changed sides of the
  /// date line. In such a zone a civil day can be missing or stand twice, so day arithmetic must
  /// ask the calendar.
  [[nodiscard]] bool hasSkippedOrRepeatedDays() const { return index_->hasDayJump; }

  bool operator==(const TimeZone&) const = default;
  [[nodiscard]] std::size_t hashValue() const { return std::hash<const void*>{}(index_); }

  struct Rules;

 private:
  /// A stretch of 2^21 seconds (24 days) of the years 1970 to 2100, with its one clock change.
  /// Nearly every look-up ends here; what lies outside, or in a stretch with more changes, is
  /// searched for.
  struct Stretch {
    static constexpr int shift = 21;
    static constexpr std::size_t count = 1957;

    std::int64_t changeAt;  ///< UTC second of the change, or the stretch's end when there is none.
    std::int32_t before;
    std::int32_t after;
    bool isCrowded;
  };
  struct Index {
    std::array<Stretch, Stretch::count> stretches;
    bool hasDayJump = false;
  };

  explicit TimeZone(const Index* index) : index_(index) {}

  /// Static, with the index by value, so that a zone in a register need not go to memory for it.
  [[nodiscard]] static std::int64_t searchedOffsetAt(const Index* index, std::int64_t utcSeconds);
  [[nodiscard]] std::int64_t searchedUtcSecondsAt(std::int64_t localSeconds) const;
  [[nodiscard]] const Rules& rules() const;

  const Index* index_;
};

}  // namespace platform

template <>
struct std::hash<platform::TimeZone> {
  std::size_t operator()(const platform::TimeZone& zone) const noexcept { return zone.hashValue(); }
};
