#pragma once

#include "Foundation/Values/Error.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

/// Runs a command of the shell with `input` as its standard input, and waits for it. Fails if it
/// can't be started, ends with another exit code than 0, or takes longer than so many seconds,
/// after which it is ended. What it prints goes where this process prints. Not on the main thread.
[[nodiscard]] Result<void> runShellCommand(const std::string& command, std::string_view input,
                                           int longestSeconds);

/// Starts a program that outlives this one, found by the search path, and does not wait for it.
/// \param variables Set for it, beside those of this process.
[[nodiscard]] Result<void> startProgram(
    const std::vector<std::string>& words,
    const std::vector<std::pair<std::string, std::string>>& variables);

}  // namespace platform
