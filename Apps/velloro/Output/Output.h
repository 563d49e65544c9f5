#pragma once

#include "Foundation/Time/Date.h"
#include "OxKit/OxCodableColor.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// Writes a text, or JSON, to standard output. Control characters that are left in it become
/// escapes (`terminalLines`), so that they do not act on the terminal. A value from outside must be
/// escaped (`terminalText`) before it is put into a line, since it may contain a line break.
///
/// Whether the output was written is checked at the end of the program.
void print(std::string_view text);
/// The same for a file, such as a picture, as it is.
void printBytes(std::string_view bytes);

/// By the clock of the device: "2024-03-07 03:00:00 +01:00".
[[nodiscard]] std::string instantText(Date date);
/// The number of columns that a text takes on a terminal, estimated from its characters.
[[nodiscard]] std::size_t columns(std::string_view text);
/// Filled with blanks up to a width.
[[nodiscard]] std::string padded(std::string_view text, std::size_t width);
/// Rows with as many texts each as lines whose columns stand below each other.
[[nodiscard]] std::string aligned(const std::vector<std::vector<std::string>>& rows);
/// In that colour, or in the program's own, where standard output is a terminal with colours.
[[nodiscard]] std::string colored(std::string_view text,
                                  const std::optional<OxCodableColor>& color);

}  // namespace velloro
