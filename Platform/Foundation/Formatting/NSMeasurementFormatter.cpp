#include "Foundation/Formatting/NSMeasurementFormatter.h"

#include "Foundation/Formatting/IcuNumber.h"

#include <array>
#include <utility>

#include <unicode/measunit.h>

namespace platform {
namespace {

using Unit = NSMeasurementFormatter::Unit;
using UnitStyle = NSMeasurementFormatter::UnitStyle;
using icu::MeasureUnit;

struct UnitEntry {
  Unit unit;
  MeasureUnit (*make)();
};

constexpr UnitEntry units[] = {
    {Unit::kilometers, MeasureUnit::getKilometer},
    {Unit::meters, MeasureUnit::getMeter},
    {Unit::miles, MeasureUnit::getMile},
    {Unit::yards, MeasureUnit::getYard},
    {Unit::feet, MeasureUnit::getFoot},
    {Unit::centimeters, MeasureUnit::getCentimeter},
    {Unit::inches, MeasureUnit::getInch},
    {Unit::kilograms, MeasureUnit::getKilogram},
    {Unit::grams, MeasureUnit::getGram},
    {Unit::milligrams, MeasureUnit::getMilligram},
    {Unit::micrograms, MeasureUnit::getMicrogram},
    {Unit::pounds, MeasureUnit::getPound},
    {Unit::stones, MeasureUnit::getStone},
    {Unit::kilocalories, MeasureUnit::getKilocalorie},
    {Unit::kilojoules, MeasureUnit::getKilojoule},
    {Unit::litres, MeasureUnit::getLiter},
    {Unit::millilitres, MeasureUnit::getMilliliter},
    {Unit::fluidOunces, MeasureUnit::getFluidOunce},
    {Unit::cups, MeasureUnit::getCup},
    {Unit::celsius, MeasureUnit::getCelsius},
    {Unit::fahrenheit, MeasureUnit::getFahrenheit},
    {Unit::percent, MeasureUnit::getPercent},
    {Unit::days, MeasureUnit::getDay},
    {Unit::hours, MeasureUnit::getHour},
    {Unit::minutes, MeasureUnit::getMinute},
    {Unit::seconds, MeasureUnit::getSecond},
    {Unit::kilometersPerHour, MeasureUnit::getKilometerPerHour},
    {Unit::milesPerHour, MeasureUnit::getMilePerHour},
};

constexpr bool areInOrder() {
  std::size_t next = 0;
  for (const UnitEntry& entry : units) {
    if (static_cast<std::size_t>(entry.unit) != next++) return false;
  }
  return true;
}
static_assert(areInOrder(), "a unit is found at its own place in the table");

UNumberUnitWidth width(UnitStyle style) {
  switch (style) {
    case UnitStyle::short_:
      return UNUM_UNIT_WIDTH_NARROW;
    case UnitStyle::medium:
      return UNUM_UNIT_WIDTH_SHORT;
    case UnitStyle::long_:
      break;
  }
  return UNUM_UNIT_WIDTH_FULL_NAME;
}

}  // namespace

struct NSMeasurementFormatter::Implementation {
  using Formatter = icu::number::LocalizedNumberFormatter;

  UnitStyle unitStyle;
  NSNumberFormatter number;
  // One takes a kilobyte, and most measurement formatters write but one unit.
  std::array<Lazy<std::unique_ptr<Formatter>>, std::size(units)> formatters = {};

  [[nodiscard]] const Formatter& icuFormatter(Unit unit) const {
    const auto index = static_cast<std::size_t>(unit);
    return *formatters[index].get([&] {
      return std::make_unique<Formatter>(localized(icuNumberFormatter(number.settings())
                                                       .unit(units[index].make())
                                                       .unitWidth(width(unitStyle)),
                                                   number.settings()));
    });
  }
};

NSMeasurementFormatter::NSMeasurementFormatter(Settings settings)
    : implementation_(std::make_shared<const Implementation>(
          settings.unitStyle, NSNumberFormatter(std::move(settings.number)))) {}

std::string NSMeasurementFormatter::string(double value, Unit unit) const {
  UErrorCode status = U_ZERO_ERROR;
  const auto number = implementation_->icuFormatter(unit).formatDouble(value, status);
  checkIcu(status, "cannot format a measurement");
  return numberText(number, implementation_->number.settings());
}

const NSNumberFormatter& NSMeasurementFormatter::numberFormatter() const {
  return implementation_->number;
}

}  // namespace platform
