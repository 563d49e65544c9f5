#include "VelloroCore/Types/TypeUnit.h"

#include "OxHealthKit/OxHKQuantity.h"
#include "OxKit/Numbers.h"

#include <algorithm>
#include <string>

namespace velloro {
namespace {

constexpr int shownPlaces = 1;

/// How many seconds or metres one of the unit is; 1 for any other unit.
double sizeOf(TypeUnit unit) {
  return isDuration(unit) || isDistance(unit) ? rowOf(type_unit_detail::rows, unit).size : 1;
}

}  // namespace

std::optional<double> convert(double quantity, TypeUnit from, TypeUnit to) {
  if (from == to) return quantity;
  if (!isDuration(from) || !isDuration(to)) return std::nullopt;
  return convertFromTimeInterval(convertToTimeInterval(quantity, from), to);
}

double convertToTimeInterval(double value, TypeUnit unit) {
  return isDuration(unit) ? wholeUnlessFractional(value * sizeOf(unit)) : value;
}

double convertFromTimeInterval(double seconds, TypeUnit unit) {
  return isDuration(unit) ? wholeUnlessFractional(seconds / sizeOf(unit)) : seconds;
}

std::optional<double> convertFromMetres(double metres, TypeUnit unit) {
  if (!isDistance(unit)) return std::nullopt;
  return wholeUnlessFractional(metres / sizeOf(unit));
}

std::optional<OxHKUnit> healthKitUnit(TypeUnit unit) {
  const std::string_view text = rowOf(type_unit_detail::rows, unit).healthKitUnit;
  if (text.empty()) return std::nullopt;
  return OxHKUnit{std::string(text)};
}

double normalizeWaterValue(double quantity, TypeUnit unit) {
  if (quantity == 0) return 0;
  const bool isCoarse = unit == TypeUnit::fluidOuncesUS || unit == TypeUnit::cupsUS;
  return std::max(roundToPlaces(quantity, shownPlaces), isCoarse ? 1.0 : 0.1);
}

double normalizeDistanceValue(double quantity) {
  return roundToPlaces(quantity, shownPlaces);
}

}  // namespace velloro
