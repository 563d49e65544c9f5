#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

namespace platform {

/// The 64-bit integer that a number is; absent when it has a fraction, lies beyond that range, or
/// is not finite. -0.0 is 0.
///
///     exactInteger(3.0);  // 3
///     exactInteger(3.5);  // absent
[[nodiscard]] inline std::optional<std::int64_t> exactInteger(double number) {
  const bool isInRange = number >= -0x1p63 && number < 0x1p63;
  if (!isInRange || std::trunc(number) != number) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

}  // namespace platform
