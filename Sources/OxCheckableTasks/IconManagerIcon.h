#pragma once

#include "Foundation/CodingKeys.h"
#include "Foundation/Hasher.h"
#include "OxKit/Platform.h"

#include <string>

namespace velloro {

/// One of the program's own icons, by the name under which it is stored: "water_glass". Coded as
/// that text.
///
/// The catalogue of names comes with the icons; until then a name is kept as it was read, whatever
/// it is. A name that the catalogue does not know will read as absent.
struct IconManagerIcon {
  std::string rawValue;

  bool operator==(const IconManagerIcon&) const = default;
  static constexpr auto codingValue = &IconManagerIcon::rawValue;
};

}  // namespace velloro
