#pragma once

#include <string>

namespace platform {

/// A text by a printf format, independent of the locale: "." is the decimal mark.
///
///     stringWithFormat("%04d-%02d", 2024, 3);  // "2024-03"
[[nodiscard]] [[gnu::format(printf, 1, 2)]] std::string stringWithFormat(const char* format, ...);

}  // namespace platform
