#pragma once

#include "OxCheckableTasks/Icons/IconManagerIcon.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <string_view>

namespace velloro {

/// What a task is about, as far as its title or its icon shows it: of what concerns a person's body
/// no program says that it should be done less or more often.
enum class VisualRepresentationIntent : std::uint8_t { unknown, medical, hygiene, dietary };

/// By an English word of the title, in any case.
///
///     titleIntent("Take a PILL");    // VisualRepresentationIntent::medical
///     titleIntent("Pillow fight");   // VisualRepresentationIntent::unknown
[[nodiscard]] VisualRepresentationIntent titleIntent(std::string_view title);
[[nodiscard]] VisualRepresentationIntent iconIntent(IconManagerIcon icon);

}  // namespace velloro
