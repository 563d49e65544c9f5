#pragma once

#include "Foundation/Values/Error.h"

#include <utility>

/// The value of a `Result`. Where there is none, the enclosing function returns the error.
///
///     Result<std::string> firstLine(const std::filesystem::path& path) {
///       auto file = TRY(NSFileHandle::open(path, O_RDONLY));
///       const std::string text = TRY(file.readToEnd());
///       return text.substr(0, text.find('\n'));
///     }
///
/// The enclosing function returns a `Result`, too, of any type; a result of `void` is checked by
/// `TRY(file.synchronize());`. It is a macro because a function can't return from its caller, and
/// `std::expected::and_then` would nest each of these steps in the one before.
#define TRY(...)                                                              \
  __extension__({                                                             \
    auto&& triedResult = (__VA_ARGS__);                                       \
    if (!triedResult) return std::unexpected(std::move(triedResult).error()); \
    *std::move(triedResult);                                                  \
  })
