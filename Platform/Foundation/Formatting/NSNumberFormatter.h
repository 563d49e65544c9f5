#pragma once

#include "Foundation/Text/Locale.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace platform {

/// Writes numbers as a locale does. Settings are fixed at construction; formatting is safe from any
/// thread. What formatting needs is loaded at first use and shared by copies, so making a formatter
/// costs nothing, and keeping one is what makes it fast.
///
///     const NSNumberFormatter tenths({.locale = Locale::fromIdentifier("de_DE"),
///                                     .minimumFractionDigits = 1,
///                                     .maximumFractionDigits = 1});
///     tenths.string(1234.25);  // "1.234,2"
///
/// Rounding goes half to even, on the decimal that a person reads: 0.295 with two places is 0.30,
/// though the nearest double lies a little below. What rounds to zero has no minus sign.
class NSNumberFormatter {
 public:
  enum class Style {
    none,     ///< Digits, by default no fraction and no grouping: "1235".
    decimal,  ///< By default up to three fraction digits, grouped: "1,234.568".
    percent,  ///< Of a fraction of 1, by default no fraction digits, grouped: 0.12 is "12%".
  };

  struct Settings {
    Style style = Style::decimal;
    Locale locale = Locale::current();
    int minimumIntegerDigits = 1;
    int minimumFractionDigits = 0;
    /// Absent: as the style has it. Never below the minimum.
    std::optional<int> maximumFractionDigits = {};
    /// Absent: as style and locale have it, which may leave four digits together. Messages of
    /// string tables don't, nor does what has this set.
    std::optional<bool> usesGroupingSeparator = {};
    /// Stands in front of numbers from 0 up, which otherwise have no sign.
    std::optional<std::string> positivePrefix = {};
    /// Stands in the place of the minus sign of numbers below 0.
    std::optional<std::string> negativePrefix = {};

    /// The same settings, with the locale's plus or minus sign always shown.
    [[nodiscard]] Settings withSigns() const;
  };

  NSNumberFormatter() : NSNumberFormatter(Settings{}) {}
  explicit NSNumberFormatter(Settings settings);

  [[nodiscard]] std::string string(double value) const;
  [[nodiscard]] std::string string(std::int64_t value) const;
  [[nodiscard]] std::string string(int value) const { return string(std::int64_t{value}); }

  [[nodiscard]] const Settings& settings() const;

 private:
  struct Implementation;

  std::shared_ptr<const Implementation> implementation_;
};

}  // namespace platform
