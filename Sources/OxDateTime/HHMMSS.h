#pragma once

#include "Foundation/Time/Calendar.h"
#include "OxKit/Platform.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace platform {
class Decoder;
class Encoder;
}  // namespace platform

namespace velloro {

/// A time of day. Stored and compared as its seconds since midnight.
///
///     HHMMSS{.h = 23, .m = 30}.add({.h = 1}, /*canWrap=*/true)->intValue();  // 1800: 00:30:00
struct HHMMSS {
  std::int64_t h = 0;
  std::int64_t m = 0;
  std::int64_t s = 0;

  static const HHMMSS midnight;  ///< 00:00:00
  static const HHMMSS midday;    ///< 12:00:00

  /// Absent outside 0..86399.
  [[nodiscard]] static std::optional<HHMMSS> fromRawValue(std::int64_t secondsSinceMidnight);
  [[nodiscard]] static std::optional<HHMMSS> fromIntValue(std::int64_t secondsSinceMidnight) {
    return fromRawValue(secondsSinceMidnight);
  }
  /// What the clock shows at an instant.
  [[nodiscard]] static HHMMSS fromDate(Date date, TimeZone timeZone);
  [[nodiscard]] static HHMMSS now(TimeZone timeZone, Date now) { return fromDate(now, timeZone); }

  /// Seconds since midnight.
  [[nodiscard]] constexpr std::int64_t intValue() const {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(h) * 3600 +
                                     static_cast<std::uint64_t>(m) * 60 +
                                     static_cast<std::uint64_t>(s));
  }
  [[nodiscard]] constexpr std::int64_t rawValue() const { return intValue(); }
  [[nodiscard]] constexpr bool isMidnight() const { return h == 0 && m == 0 && s == 0; }
  /// "09:05:00".
  [[nodiscard]] std::string debugDescription() const;
  /// Hour, minute and second only.
  [[nodiscard]] DateComponents dateComponents() const;

  /// In JSON one integer, `intValue`.
  void encode(Encoder& to) const;
  /// Reads that integer, or an object with the integers `h`, `m` and `s`, which are not tested.
  /// \throws DecodingError, that of the first reading, when both fail.
  [[nodiscard]] static HHMMSS decode(const Decoder& from);

  constexpr bool operator==(const HHMMSS& other) const { return intValue() == other.intValue(); }
  constexpr auto operator<=>(const HHMMSS& other) const { return intValue() <=> other.intValue(); }

  /// The time `span` later, which may be negative. Past midnight it wraps round with `canWrap`, and
  /// is absent without.
  [[nodiscard]] std::optional<HHMMSS> add(const HHMMSS& span, bool canWrap) const;
  /// The same for seconds, whose fraction is cut off.
  [[nodiscard]] std::optional<HHMMSS> add(TimeInterval seconds, bool canWrap) const;

  /// Whether this time lies at most (`inclusive`), or less than, so many hours from another one on
  /// the same dial; the way past midnight does not count.
  [[nodiscard]] bool isWithin(double hours, const HHMMSS& of, bool inclusive) const;

  /// Whether this time comes before another one, or equals it, in a day that begins at
  /// `startOfDay`, so that a time below that lies in the next morning.
  ///
  ///     HHMMSS{.h = 23}.isBefore({.h = 3}, /*startOfDay=*/{.h = 4});  // true
  [[nodiscard]] constexpr bool isBefore(const HHMMSS& other, const HHMMSS& startOfDay) const {
    const bool isNextMorning = *this < startOfDay;
    const bool otherIsNextMorning = other < startOfDay;
    return isNextMorning == otherIsNextMorning ? *this <= other : otherIsNextMorning;
  }

  /// The nearest multiple of an interval of whole seconds since midnight; half-way goes up, but
  /// never past the end of the day. An interval below one second leaves the time as it is.
  [[nodiscard]] HHMMSS roundToNearestInterval(TimeInterval duration) const;

  /// The first of this time's instants, one on each calendar day, that is not before `from`. A day
  /// whose clock skips the time has it by the gap later; of a repeated one, the first counts.
  [[nodiscard]] Date nextOccurrence(Date from, TimeZone timeZone) const;
  [[nodiscard]] Date nextOccurrence(TimeZone timeZone, Date now) const {
    return nextOccurrence(now, timeZone);
  }
  /// The instants from `from` on and strictly before `to`, in order; none behind `distantFuture`.
  [[nodiscard]] std::vector<Date> occurrences(Date from, Date to, TimeZone timeZone) const;
};

inline constexpr HHMMSS HHMMSS::midnight{};
inline constexpr HHMMSS HHMMSS::midday{.h = 12};

[[nodiscard]] std::vector<HHMMSS> sortedAscending(std::vector<HHMMSS> times);

/// The middle value; of an even count the mean of the middle two, cut to whole seconds. Absent for
/// no values.
[[nodiscard]] std::optional<HHMMSS> median(std::span<const HHMMSS> times);

}  // namespace velloro

template <>
struct std::hash<velloro::HHMMSS> {
  std::size_t operator()(const velloro::HHMMSS& time) const noexcept {
    return std::hash<std::int64_t>{}(time.intValue());
  }
};
