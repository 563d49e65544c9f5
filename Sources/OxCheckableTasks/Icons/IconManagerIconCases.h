#pragma once

#include "OxCheckableTasks/Icons/IconManagerIcon.h"

#include <cstdint>

namespace velloro {

/// The cases, in the order of the table (IconManagerIcon.inc).
enum class IconManagerIcon : std::int16_t {
#define VELLORO_ICON(name, category) name,
#include "OxCheckableTasks/Icons/IconManagerIcon.inc"
};

}  // namespace velloro
