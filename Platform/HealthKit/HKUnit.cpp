#include "HealthKit/HKUnit.h"

#include <charconv>
#include <cmath>

namespace platform {

struct HKUnit::Named {
  std::string_view name;
  Dimension dimension;
  double size;
  bool takesPrefix = false;
  double offset = 0;
};

namespace {

using Dimension = std::array<std::int8_t, 7>;

constexpr Dimension number{};
constexpr Dimension length{1};
constexpr Dimension mass{0, 1};
constexpr Dimension time{0, 0, 1};
constexpr Dimension temperature{0, 0, 0, 1};
constexpr Dimension substance{0, 0, 0, 0, 1};
constexpr Dimension internationalUnits{0, 0, 0, 0, 0, 1};
constexpr Dimension soundLevel{0, 0, 0, 0, 0, 0, 1};
constexpr Dimension volume{3};
constexpr Dimension energy{2, 1, -2};
constexpr Dimension power{2, 1, -3};
constexpr Dimension pressure{-1, 1, -2};
constexpr Dimension frequency{0, 0, -1};

struct Prefix {
  std::string_view name;
  double factor;
};

/// Longer names come before those that they begin with.
constexpr Prefix prefixes[] = {{"mc", 1e-6}, {"da", 10},  {"µ", 1e-6}, {"p", 1e-12}, {"n", 1e-9},
                               {"m", 1e-3},  {"c", 0.01}, {"d", 0.1},  {"h", 100},   {"k", 1000},
                               {"M", 1e6},   {"G", 1e9},  {"T", 1e12}, {"f", 1e-15}};

}  // namespace

const HKUnit::Named* HKUnit::named(std::string_view text, double& prefix) {
  constexpr double pascal = 1000;  // in grams, metres and seconds
  constexpr double joule = 1000;
  constexpr double kelvinAtFreezing = 273.15;
  static constexpr Named names[] = {
      {"count", number, 1},
      {"%", number, 1},
      {"m", length, 1, true},
      {"in", length, 0.0254},
      {"ft", length, 0.3048},
      {"yd", length, 0.9144},
      {"mi", length, 1609.344},
      {"g", mass, 1, true},
      {"oz", mass, 28.349523125},
      {"lb", mass, 453.59237},
      {"st", mass, 6350.29318},
      {"s", time, 1, true},
      {"min", time, 60},
      {"hr", time, 3600},
      {"d", time, 86400},
      {"J", energy, joule, true},
      {"cal", energy, 4.184 * joule, true},
      {"Cal", energy, 4184 * joule},
      {"W", power, joule, true},
      {"L", volume, 0.001, true},
      {"l", volume, 0.001, true},
      {"fl_oz_us", volume, 29.5735295625e-6},
      {"fl_oz_imp", volume, 28.4130625e-6},
      {"cup_us", volume, 236.5882365e-6},
      {"cup_imp", volume, 284.130625e-6},
      {"pt_us", volume, 473.176473e-6},
      {"pt_imp", volume, 568.26125e-6},
      {"Pa", pressure, pascal, true},
      {"mmHg", pressure, 133.322387415 * pascal},
      {"inHg", pressure, 3386.38864034 * pascal},
      {"cmAq", pressure, 98.0665 * pascal},
      {"atm", pressure, 101325 * pascal},
      {"K", temperature, 1, true},
      {"degC", temperature, 1, false, kelvinAtFreezing},
      {"degF", temperature, 5.0 / 9, false, kelvinAtFreezing - 32 * 5.0 / 9},
      {"Hz", frequency, 1, true},
      {"mol", substance, 1, true},
      {"IU", internationalUnits, 1},
      {"dBASPL", soundLevel, 1},
      {"dBHL", soundLevel, 1},
  };
  const auto find = [](std::string_view name) -> const Named* {
    for (const Named& one : names) {
      if (one.name == name) return &one;
    }
    return nullptr;
  };
  prefix = 1;
  if (const Named* whole = find(text)) return whole;
  for (const auto& [name, factor] : prefixes) {
    if (!text.starts_with(name)) continue;
    const Named* rest = find(text.substr(name.size()));
    if (rest == nullptr || !rest->takesPrefix) continue;
    prefix = factor;
    return rest;
  }
  return nullptr;
}

/// Reads one factor after the other: what stands behind a slash divides.
struct UnitParser {
  HKUnit unit;
  int factors = 0;

  bool read(std::string_view text) {
    int sign = 1;
    while (true) {
      const auto end = std::min(text.find_first_of("/*()"), text.find("·"));
      if (end != 0 && !text.empty() && !factor(text.substr(0, end), sign)) return false;
      if (end == std::string_view::npos) return factors > 0;
      if (text[end] == '/') sign = -1;
      text.remove_prefix(end +
                         (text.substr(end).starts_with("·") ? std::string_view("·").size() : 1));
    }
  }

 private:
  static std::optional<double> numberIn(std::string_view text) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(value) : std::nullopt;
  }

  bool factor(std::string_view text, int sign) {
    int exponent = sign;
    if (const auto caret = text.find('^'); caret != std::string_view::npos) {
      const auto power = numberIn(text.substr(caret + 1));
      if (!power || std::abs(*power) > 9 || *power != std::round(*power)) return false;
      exponent *= static_cast<int>(*power);
      text = text.substr(0, caret);
    }
    std::optional<double> molarMass;
    if (const auto open = text.find('<'); open != std::string_view::npos && text.ends_with('>')) {
      molarMass = numberIn(text.substr(open + 1, text.size() - open - 2));
      if (!molarMass || !(*molarMass > 0)) return false;
      text = text.substr(0, open);
    }
    double prefix = 1;
    const auto* found = HKUnit::named(text, prefix);
    if (found == nullptr || (molarMass && found->name != "mol")) return false;
    const auto& dimension = molarMass ? mass : found->dimension;
    for (std::size_t i = 0; i < dimension.size(); ++i) {
      unit.dimension_[i] = static_cast<std::int8_t>(unit.dimension_[i] + exponent * dimension[i]);
    }
    unit.size_ *= std::pow(found->size * prefix * molarMass.value_or(1), exponent);
    // In a quotient a degree is a difference.
    unit.offset_ = factors == 0 && exponent == 1 ? found->offset : 0;
    ++factors;
    return true;
  }
};

std::optional<HKUnit> HKUnit::fromString(std::string_view text) {
  constexpr std::size_t longest = 100;
  if (text.size() > longest) return std::nullopt;
  UnitParser parser;
  if (!parser.read(text)) return std::nullopt;
  parser.unit.unitString_ = text;
  return parser.unit;
}

std::optional<double> HKUnit::convert(double amount, const HKUnit& to) const {
  if (unitString_ == to.unitString_) return amount;
  if (!isCompatible(to)) return std::nullopt;
  if (offset_ == 0 && to.offset_ == 0) return amount * (size_ / to.size_);
  return (amount * size_ + offset_ - to.offset_) / to.size_;
}

}  // namespace platform
