#pragma once

#include <functional>

namespace platform {

/// Shows the share of long work that is done, 0 to 1, as a bar on standard error. Absent where that
/// is no terminal.
///
/// ```
/// const auto progress = progressLine();
/// if (progress) progress(0.5);    // [####################                    ] 50 %
/// ```
[[nodiscard]] std::function<void(double)> progressLine();

}  // namespace platform
