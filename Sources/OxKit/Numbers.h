#pragma once

#include <concepts>
#include <ranges>

namespace velloro {

template <typename T>
concept Number = (std::integral<T> || std::floating_point<T>)&&!std::same_as<T, bool>;

/// The value to a number of decimal places, halves away from zero. The value counts as the decimal
/// number that it prints as, so that no binary remainder decides a half:
///
///     roundToPlaces(1.005, 2);      // 1.01
///     roundToPlaces(-2.5, 0);       // -3
///     roundToPlaces(1250, -2);      // 1300
///
/// What is not finite stays as it is.
[[nodiscard]] double roundToPlaces(double value, int places);

/// The whole number that a value misses by binary rounding only, else the value itself: what to cut
/// off or to compare with a limit instead of a quotient.
///
///     std::floor(0.3 / 0.1);                           // 2
///     std::floor(wholeUnlessFractional(0.3 / 0.1));    // 3
///
/// A part in 10^13 counts as rounding: many additions lose less, and no amount is known better.
[[nodiscard]] double wholeUnlessFractional(double value);

/// a − b, and 0 where the two differ by binary rounding only, in the same sense.
///
///     difference(0.1 + 0.2, 0.3);    // 0
[[nodiscard]] double difference(double a, double b);

/// The sum of a collection of numbers, 0 for none, in their own type.
///
///     total(std::vector{1.5, 2.0});     // 3.5
template <std::ranges::input_range Numbers>
requires Number<std::ranges::range_value_t<Numbers>>
[[nodiscard]] constexpr auto total(Numbers&& numbers) {
  std::ranges::range_value_t<Numbers> sum = 0;
  for (const auto number : numbers) sum = static_cast<decltype(sum)>(sum + number);
  return sum;
}

}  // namespace velloro
