#pragma once

namespace platform {

/// Whether standard output is a terminal that shows colours and whose user has not asked for none
/// (`NO_COLOR`, https://no-color.org).
[[nodiscard]] bool standardOutputHasColors();

}  // namespace platform
