#include "OxKit/Numbers.h"

#include "Foundation/Text/String.h"
#include "OxKit/Platform.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace velloro {
namespace {

constexpr double closeness = 1e-13;

/// Adds 1 to a number of decimal digits, which may become one longer.
void increment(std::string& digits) {
  auto digit = digits.rbegin();
  while (digit != digits.rend() && *digit == '9') *digit++ = '0';
  if (digit == digits.rend()) {
    digits.insert(digits.begin(), '1');
  } else {
    ++*digit;
  }
}

}  // namespace

double roundToPlaces(double value, int places) {
  if (!std::isfinite(value) || value == 0) return value;
  // "d.ddde±xx": the digits, and the power of ten of the first one.
  char buffer[32];
  const auto printed =
      std::to_chars(buffer, std::end(buffer), std::abs(value), std::chars_format::scientific);
  const std::string_view text(buffer, printed.ptr);
  const std::size_t mark = text.find('e');
  std::string digits(text.substr(0, mark));
  std::erase(digits, '.');
  const int exponent = std::stoi(std::string(text.substr(mark + 1)));

  const long long kept = 1LL + exponent + places;
  if (kept >= static_cast<long long>(digits.size())) return value;
  if (kept < 0) return std::copysign(0.0, value);
  const bool up = digits[static_cast<std::size_t>(kept)] >= '5';
  digits.resize(static_cast<std::size_t>(kept));
  if (up) increment(digits);

  const std::string rounded = "0" + digits + stringWithFormat("e%d", -places);
  double result = std::abs(value);  // stays when the rounded value is beyond a double
  std::from_chars(rounded.data(), rounded.data() + rounded.size(), result);
  return std::copysign(result, value);
}

double wholeUnlessFractional(double value) {
  const double whole = std::round(value);
  return difference(value, whole) == 0 ? whole : value;
}

double difference(double a, double b) {
  const double result = a - b;
  const bool isRounding = std::abs(result) < closeness * std::max(std::abs(a), std::abs(b));
  return isRounding ? 0 : result;
}

}  // namespace velloro
