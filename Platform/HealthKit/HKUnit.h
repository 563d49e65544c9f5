#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A unit of measurement, made of the text by which the health store knows it: a name with an
/// optional prefix ("mL", "kcal", "mmHg", "degC"), or a quotient or product of such ("count/min",
/// "mL/min·kg"). A mole whose weight is given is a mass: "mmol<180.1558800000541>/L".
///
///     const HKUnit litre = HKUnit::fromString("L").value();
///     litre.convert(0.25, HKUnit::fromString("mL").value());    // 250
///     litre.convert(1, HKUnit::fromString("kg").value());       // absent
///     HKUnit::fromString("furlong");                            // absent
///
/// A count and a percentage are numbers without a dimension, and 1 is the whole of both.
class HKUnit {
 public:
  /// Absent for a text that is no unit.
  [[nodiscard]] static std::optional<HKUnit> fromString(std::string_view text);

  [[nodiscard]] const std::string& unitString() const { return unitString_; }
  /// Whether amounts in one unit can be expressed in the other.
  [[nodiscard]] bool isCompatible(const HKUnit& other) const {
    return dimension_ == other.dimension_;
  }
  /// An amount of this unit in another one; absent unless they are compatible.
  [[nodiscard]] std::optional<double> convert(double amount, const HKUnit& to) const;

  /// By the text.
  bool operator==(const HKUnit& other) const { return unitString_ == other.unitString_; }

 private:
  /// Exponents of length, mass, time, temperature, amount of substance, international units and
  /// sound levels.
  using Dimension = std::array<std::int8_t, 7>;
  struct Named;
  friend struct UnitParser;

  static const Named* named(std::string_view text, double& prefix);

  std::string unitString_;
  Dimension dimension_{};
  double size_ = 1;    ///< Of one unit, in metres, grams, seconds and kelvins.
  double offset_ = 0;  ///< Of the zero point: degrees alone have one.
};

}  // namespace platform
