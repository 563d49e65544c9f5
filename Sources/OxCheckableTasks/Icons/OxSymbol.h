#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/RawValue.h"
#include "Foundation/Values/Hasher.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <string>
#include <type_traits>

namespace velloro {

/// One of the system's symbols, by its name: "hourglass", "pause.fill".
struct OxSymbol {
  std::string name;

  bool operator==(const OxSymbol&) const = default;
  static constexpr auto codingKeys = keys(key("name", &OxSymbol::name));
};

/// How heavy a symbol is drawn, from the lightest on.
enum class OxSymbolWeight : std::uint8_t {
  ultraLight,
  thin,
  light,
  regular,
  medium,
  semibold,
  bold,
  heavy,
  black,
};

constexpr auto rawValues(std::type_identity<OxSymbolWeight>) {
  return caseNames<OxSymbolWeight::black>();
}

}  // namespace velloro
