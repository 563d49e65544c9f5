#pragma once

#include "Foundation/Formatting/NSNumberFormatter.h"

#include <cstdint>
#include <memory>
#include <string>

namespace platform {

/// Writes a value with its unit as a locale does. The unit stays the given one: five miles are
/// five miles everywhere. Settings are fixed at construction; formatting is safe from any thread,
/// and each unit is loaded at its first use and kept.
///
///     const NSMeasurementFormatter tenths(
///         {.number = {.locale = Locale::fromIdentifier("en_US"), .minimumFractionDigits = 1,
///                     .maximumFractionDigits = 1}});
///     tenths.string(5, NSMeasurementFormatter::Unit::kilometers);  // "5.0 km"
///     tenths.numberFormatter().string(5.0);                        // "5.0"
class NSMeasurementFormatter {
 public:
  /// Fluid ounces and cups are those of the United States.
  enum class Unit : std::uint8_t {
    kilometers,
    meters,
    miles,
    yards,
    feet,
    centimeters,
    inches,
    kilograms,
    grams,
    milligrams,
    micrograms,
    pounds,
    stones,
    kilocalories,
    kilojoules,
    litres,
    millilitres,
    fluidOunces,
    cups,
    celsius,
    fahrenheit,
    percent,  ///< The value counts hundredths: 12 is "12%".
    days,
    hours,
    minutes,
    seconds,
    kilometersPerHour,
    milesPerHour,
  };

  enum class UnitStyle {
    short_,  ///< "5km"
    medium,  ///< "5 km"
    long_,   ///< "5 kilometers", in the plural form that the number asks for
  };

  struct Settings {
    UnitStyle unitStyle = UnitStyle::medium;
    NSNumberFormatter::Settings number = {};  ///< Also says the locale. Not of the percent style.
  };

  NSMeasurementFormatter() : NSMeasurementFormatter(Settings{}) {}
  explicit NSMeasurementFormatter(Settings settings);

  [[nodiscard]] std::string string(double value, Unit unit) const;
  /// Writes the same numbers, without the unit.
  [[nodiscard]] const NSNumberFormatter& numberFormatter() const;

 private:
  struct Implementation;

  std::shared_ptr<const Implementation> implementation_;
};

}  // namespace platform
