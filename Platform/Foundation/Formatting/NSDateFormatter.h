#pragma once

#include "Foundation/Text/Locale.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Writes instants as a locale does, and reads them back from fixed patterns. The calendar is the
/// Gregorian one, carried back to before it was introduced. Settings are fixed at construction; use
/// is safe from any thread; what it needs is loaded at first use and shared by copies.
///
///     const Date date = Date::fromISO8601("2024-03-07T01:59:59Z").value();
///     const auto german = NSDateFormatter::withTemplate(
///         "MMMM yyyy", {.locale = Locale::fromIdentifier("de_DE")});
///     german.string(date);  // "März 2024"
///     const auto line = NSDateFormatter::withFormat(
///         "y-MM-dd H:mm:ss.SSS", {.locale = Locale::posix(), .timeZone = TimeZone::gmt()});
///     line.string(date);    // "2024-03-07 1:59:59.000"
///
/// Fields are letters as the Unicode locale data has them ("y" year, "M" month, "d" day, "H" and
/// "h" hour, "ZZZZZ" offset as "+01:00" or "Z"); a text between apostrophes stands for itself. A
/// field that shows fractions of a second cuts the rest off.
class NSDateFormatter {
 public:
  enum class Style { none, short_, medium, long_, full };

  struct Styles {
    Style date = Style::none;
    Style time = Style::none;
  };

  struct Settings {
    Locale locale = Locale::current();
    /// Absent: the device's zone at the time of each call.
    std::optional<TimeZone> timeZone = {};
  };

  /// The fields of a template, in the order and with the marks of the locale: "MMM yyyy" writes
  /// "Mar 2024" in English and "2024年3月" in Japanese. "j" is the hour as the locale's clock has
  /// it.
  [[nodiscard]] static NSDateFormatter withTemplate(std::string_view fields, Settings settings);
  /// A pattern as it stands.
  [[nodiscard]] static NSDateFormatter withFormat(std::string_view pattern, Settings settings);
  /// One of the locale's own date and time forms; with neither, the text is empty.
  [[nodiscard]] static NSDateFormatter withStyles(Styles styles, Settings settings);

  [[nodiscard]] Locale locale() const;

  [[nodiscard]] std::string string(Date date) const;
  [[nodiscard]] std::string string(Date date, const TimeZone& zone) const;

  /// The instant that a text in this formatter's pattern means, by its own offset if the pattern
  /// has one, else in the formatter's zone. Fields that the pattern leaves out are those of
  /// 1970-01-01 00:00; blanks in front of a number are skipped. Absent when the text does not
  /// follow the pattern from first to last character, or names a date or time that does not exist.
  [[nodiscard]] std::optional<Date> date(std::string_view text) const;

  /// The locale's names as they stand within a date; the standalone ones as they stand alone.
  /// January and Sunday come first. The very short names are mostly one letter.
  [[nodiscard]] const std::vector<std::string>& monthSymbols() const;
  [[nodiscard]] const std::vector<std::string>& standaloneMonthSymbols() const;
  [[nodiscard]] const std::vector<std::string>& shortMonthSymbols() const;
  [[nodiscard]] const std::vector<std::string>& weekdaySymbols() const;
  [[nodiscard]] const std::vector<std::string>& shortWeekdaySymbols() const;
  [[nodiscard]] const std::vector<std::string>& veryShortWeekdaySymbols() const;

 private:
  struct Implementation;

  explicit NSDateFormatter(std::shared_ptr<const Implementation> implementation);

  std::shared_ptr<const Implementation> implementation_;
};

}  // namespace platform
