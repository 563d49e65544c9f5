#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A length of time in seconds.
using TimeInterval = double;

/// How an instant is written in JSON.
enum class DateForm {
  secondsSinceReferenceDate,  ///< A number: seconds since 2001-01-01T00:00:00Z.
  iso8601,                    ///< "2024-03-07T01:59:59Z"; a fraction of a second is cut off.
};

/// An instant, held as seconds since 2001-01-01T00:00:00Z (leap seconds are not counted).
///
///     const Date date = Date::fromISO8601("2024-03-07T01:59:59Z").value();
///     date.timeIntervalSince1970();           // 1709776799.0
///     (date + 1).iso8601();                   // "2024-03-07T02:00:00Z"
class Date {
 public:
  /// Seconds from 1970-01-01T00:00:00Z to the reference date.
  static constexpr TimeInterval timeIntervalBetween1970AndReferenceDate = 978307200.0;

  /// The reference date itself.
  constexpr Date() = default;

  [[nodiscard]] static constexpr Date sinceReferenceDate(TimeInterval seconds) {
    return Date(seconds);
  }
  [[nodiscard]] static constexpr Date since1970(TimeInterval seconds) {
    return Date(seconds - timeIntervalBetween1970AndReferenceDate);
  }
  /// Now, as the installed `Environment` has it.
  [[nodiscard]] static Date now();

  static constexpr Date distantPast() { return Date(-63113904000.0); }   // 0001-01-01T00:00:00Z
  static constexpr Date distantFuture() { return Date(63113904000.0); }  // 4001-01-01T00:00:00Z

  /// Reads ISO 8601: date, "T", time, an optional fraction of a second (any number of digits), and
  /// "Z" or an offset of the form +01:00, +0100 or +01. Absent for anything else, for a date or
  /// time that does not exist (2023-02-29, 24:00:00) and for an offset beyond 18 hours.
  [[nodiscard]] static std::optional<Date> fromISO8601(std::string_view text);

  /// "2024-03-07T01:59:59Z": whole seconds in UTC; a fraction is cut off.
  [[nodiscard]] std::string iso8601() const;

  [[nodiscard]] constexpr TimeInterval timeIntervalSinceReferenceDate() const { return seconds_; }
  [[nodiscard]] constexpr TimeInterval timeIntervalSince1970() const {
    return seconds_ + timeIntervalBetween1970AndReferenceDate;
  }
  /// Positive when this instant lies later than `other`.
  [[nodiscard]] constexpr TimeInterval timeIntervalSince(Date other) const {
    return seconds_ - other.seconds_;
  }
  /// The whole second that holds this instant, counted from 1970 and rounded down. What lies beyond
  /// the calendar's range of about ±31 million years, or is not a number, counts as its nearest
  /// end.
  [[nodiscard]] constexpr std::int64_t secondsSince1970() const {
    constexpr double limit = 1e15;
    if (!(seconds_ < limit && seconds_ > -limit)) [[unlikely]] {
      return static_cast<std::int64_t>(seconds_ > 0 ? limit : -limit);
    }
    const auto whole = static_cast<std::int64_t>(seconds_);
    constexpr auto reference = static_cast<std::int64_t>(timeIntervalBetween1970AndReferenceDate);
    if (seconds_ >= 0) [[likely]]
      return whole + reference;
    const bool cutUpwards = static_cast<double>(whole) > seconds_;
    return whole - (cutUpwards ? 1 : 0) + reference;
  }

  constexpr Date operator+(TimeInterval seconds) const { return Date(seconds_ + seconds); }
  constexpr Date operator-(TimeInterval seconds) const { return Date(seconds_ - seconds); }
  constexpr bool operator==(const Date&) const = default;
  constexpr auto operator<=>(const Date&) const = default;

 private:
  explicit constexpr Date(TimeInterval seconds) : seconds_(seconds) {}

  TimeInterval seconds_ = 0;
};

}  // namespace platform

template <>
struct std::hash<platform::Date> {
  std::size_t operator()(platform::Date date) const noexcept {
    return std::hash<double>{}(date.timeIntervalSinceReferenceDate());
  }
};
