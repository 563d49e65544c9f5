#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxKit/Platform.h"

#include <string>

namespace velloro {

/// A unit of measurement by the text that a health store knows it by. Any text can be a unit, only
/// the store knows what it means; the usual ones have names.
///
///     OxHKUnit::kilometre().unitString;     // "km"
///     const OxHKUnit pace{"min/km"};
///
/// In JSON it is its text.
struct OxHKUnit {
  std::string unitString;

  [[nodiscard]] static OxHKUnit count() { return {"count"}; }
  /// A share: 0.5 is one half.
  [[nodiscard]] static OxHKUnit percent() { return {"%"}; }

  [[nodiscard]] static OxHKUnit second() { return {"s"}; }
  [[nodiscard]] static OxHKUnit minute() { return {"min"}; }
  [[nodiscard]] static OxHKUnit hour() { return {"hr"}; }
  [[nodiscard]] static OxHKUnit day() { return {"d"}; }

  [[nodiscard]] static OxHKUnit metre() { return {"m"}; }
  [[nodiscard]] static OxHKUnit kilometre() { return {"km"}; }
  [[nodiscard]] static OxHKUnit centimetre() { return {"cm"}; }
  [[nodiscard]] static OxHKUnit inch() { return {"in"}; }
  [[nodiscard]] static OxHKUnit foot() { return {"ft"}; }
  [[nodiscard]] static OxHKUnit yard() { return {"yd"}; }
  [[nodiscard]] static OxHKUnit mile() { return {"mi"}; }

  [[nodiscard]] static OxHKUnit gram() { return {"g"}; }
  [[nodiscard]] static OxHKUnit kilogram() { return {"kg"}; }
  [[nodiscard]] static OxHKUnit milligram() { return {"mg"}; }
  [[nodiscard]] static OxHKUnit microgram() { return {"mcg"}; }
  [[nodiscard]] static OxHKUnit ounce() { return {"oz"}; }
  [[nodiscard]] static OxHKUnit pound() { return {"lb"}; }
  [[nodiscard]] static OxHKUnit stone() { return {"st"}; }

  [[nodiscard]] static OxHKUnit joule() { return {"J"}; }
  [[nodiscard]] static OxHKUnit kilojoule() { return {"kJ"}; }
  [[nodiscard]] static OxHKUnit kilocalorie() { return {"kcal"}; }

  [[nodiscard]] static OxHKUnit litre() { return {"L"}; }
  [[nodiscard]] static OxHKUnit millilitre() { return {"mL"}; }
  [[nodiscard]] static OxHKUnit fluidOunceUS() { return {"fl_oz_us"}; }
  [[nodiscard]] static OxHKUnit cupUS() { return {"cup_us"}; }

  // Of glucose in blood; a mole of it is 180.1558800000541 grams.
  [[nodiscard]] static OxHKUnit millimolesOfGlucosePerLitre() {
    return {"mmol<180.1558800000541>/L"};
  }
  [[nodiscard]] static OxHKUnit milligramsPerDecilitre() { return {"mg/dL"}; }

  bool operator==(const OxHKUnit&) const = default;
  static constexpr auto codingValue = &OxHKUnit::unitString;
};

/// An amount in a unit. Two amounts are equal only in the same unit.
///
///     OxHKQuantity{OxHKUnit::kilometre(), 5} == OxHKQuantity{OxHKUnit::metre(), 5000};    // false
struct OxHKQuantity {
  OxHKUnit unit;
  double doubleValue = 0;

  bool operator==(const OxHKQuantity&) const = default;
  static constexpr auto codingKeys =
      keys(key("unit", &OxHKQuantity::unit), key("doubleValue", &OxHKQuantity::doubleValue));
};

}  // namespace velloro
