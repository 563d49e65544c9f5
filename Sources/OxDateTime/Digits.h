#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

namespace velloro {

/// The number that a text of digits alone spells; absent for anything else, a sign or blank
/// included.
[[nodiscard]] constexpr std::optional<std::int64_t> wholeNumber(std::string_view digits) {
  std::int64_t value = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9') return std::nullopt;
    value = value * 10 + (digit - '0');
  }
  return value;
}

}  // namespace velloro
