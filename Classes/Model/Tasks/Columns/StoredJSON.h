#pragma once

#include "Foundation/Coding/JSON.h"
#include "OxLog/LeftOut.h"

#include <optional>
#include <source_location>
#include <string>
#include <string_view>

namespace velloro {

/// A record of a column that holds its JSON. What can't be made out is left out and logged under
/// the record's name; absent, and logged, where nothing can be made out.
template <typename T>
[[nodiscard]] std::optional<T> fromStoredJSON(
    const std::string& json, std::string_view record, DateForm dateForm = {},
    const std::source_location& caller = std::source_location::current()) {
  const auto leftOut = logLeftOut(Log::database, record, caller);
  try {
    return JSONDecoder{.dateForm = dateForm, .didLeaveOut = &leftOut}.decode<T>(json);
  } catch (const DecodingError& error) {
    leftOut(error);
    return std::nullopt;
  }
}

/// Whether nothing of it would be left out.
template <typename T>
[[nodiscard]] bool isWholeJSON(const std::string& json, DateForm dateForm = {}) {
  try {
    (void)JSONDecoder{.dateForm = dateForm, .isStrict = true}.decode<T>(json);
    return true;
  } catch (const DecodingError&) {
    return false;
  }
}

}  // namespace velloro
