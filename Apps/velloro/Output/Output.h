#pragma once

#include "OxKit/OxCodableColor.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// Writes a text, or JSON, to standard output. What stands in it must not act on a terminal: what
/// is left of control characters becomes escapes (`terminalLines`). A value from outside is to be
/// escaped (`terminalText`) before it is put into a line, since it may hold a line break.
///
/// Whether the output arrived is found out at the end of the program.
void print(std::string_view text);
/// The same for a file, such as a picture, as it is.
void printBytes(std::string_view bytes);

/// The columns that a text takes on a terminal, as far as its characters tell.
[[nodiscard]] std::size_t columns(std::string_view text);
/// Filled with blanks up to a width.
[[nodiscard]] std::string padded(std::string_view text, std::size_t width);
/// In that colour, or in the program's own, where standard output is a terminal with colours.
[[nodiscard]] std::string colored(std::string_view text,
                                  const std::optional<OxCodableColor>& color);

}  // namespace velloro
