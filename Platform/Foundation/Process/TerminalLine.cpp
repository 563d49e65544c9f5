#include "Foundation/Process/TerminalLine.h"

#include "Foundation/Process/Environment.h"
#include "Foundation/Process/Terminal.h"

#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace platform {

std::optional<std::size_t> terminalLineWidth() {
  if (isatty(STDOUT_FILENO) == 0) return std::nullopt;
  if (Environment::current().variable("TERM") == "dumb") return std::nullopt;
  constexpr std::size_t usual = 80;
  winsize size{};
  const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : usual;
}

void rewriteTerminalLine(std::string_view text) {
  const std::string line = "\r\x1b[K" + terminalText(text);
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fflush(stdout);
}

}  // namespace platform
