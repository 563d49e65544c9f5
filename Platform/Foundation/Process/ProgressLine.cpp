#include "Foundation/Process/ProgressLine.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include <unistd.h>

namespace platform {

std::function<void(double)> progressLine() {
  if (isatty(STDERR_FILENO) == 0) return {};
  return [shown = -1](double share) mutable {
    constexpr int width = 40;
    constexpr int whole = 100;
    const int percent = static_cast<int>(std::clamp(share, 0.0, 1.0) * whole);
    if (percent == shown) return;
    shown = percent;
    const auto full = static_cast<std::size_t>(percent * width / whole);
    std::fprintf(stderr, "\r[%s%s] %d %%", std::string(full, '#').c_str(),
                 std::string(width - full, ' ').c_str(), percent);
    if (percent == whole) std::fputc('\n', stderr);
  };
}

}  // namespace platform
