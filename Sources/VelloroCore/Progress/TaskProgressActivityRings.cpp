#include "VelloroCore/Progress/TaskProgressActivityRings.h"

#include "OxKit/Numbers.h"

#include <cmath>
#include <cstdint>

namespace velloro {
namespace {

/// Each ring has the digits of a number below this one.
constexpr std::int64_t digits = 1000;

/// 0..999. A normalised ring has two places, so its hundredths are whole but for binary rounding:
/// cut off, 0.29 would be 28.
double hundredths(double ring) {
  const double rounded = std::round(normalizeForEncoding(ring) * 100);
  return std::min(std::max(0.0, rounded), digits - 1.0);  // 0 for what is no number
}

double ring(std::int64_t encoded) {
  return static_cast<double>(encoded % digits) / 100;
}

}  // namespace

TaskProgressActivityRings TaskProgressActivityRings::fromEncoded(const DatedPeriod& period,
                                                                 double encoded) {
  const double whole = std::fmod(std::round(encoded), digits * digits * digits);
  const std::int64_t number = whole > 0 ? static_cast<std::int64_t>(whole) : 0;
  return {.period = period,
          .energy = ring(number),
          .exercise = ring(number / digits),
          .stand = ring(number / (digits * digits))};
}

double TaskProgressActivityRings::encoded() const {
  return hundredths(energy) + digits * (hundredths(exercise) + digits * hundredths(stand));
}

double TaskProgressActivityRings::progressPct() const {
  const double sum = std::min(energy, 1.0) + std::min(exercise, 1.0) + std::min(stand, 1.0);
  // What the sum and the quotient lost to binary rounding must not decide a half.
  return roundToPlaces(roundToPlaces(sum / 3, 12), 4);
}

double normalizeForEncoding(double ring) {
  const double rounded = roundToPlaces(ring, 2);
  if (ring > 0 && rounded == 0) return 0.01;
  if (ring < 1 && rounded == 1) return 0.99;
  return rounded;
}

}  // namespace velloro
