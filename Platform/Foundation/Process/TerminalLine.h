#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The columns of the terminal that standard output is, and in which a line can be written again;
/// absent for a file or a pipe, and for a terminal that can do no more than print (`TERM=dumb`).
[[nodiscard]] std::optional<std::size_t> terminalLineWidth();

/// Writes the last line of the terminal again, without a line break. \param text In one line that
/// is no longer than the terminal is wide.
void rewriteTerminalLine(std::string_view text);

}  // namespace platform
