#pragma once

#include "Foundation/Coding/JSON.h"
#include "OxLog/LeftOut.h"

#include <optional>
#include <source_location>
#include <string>
#include <string_view>

namespace velloro {

/// A record that a column stores as JSON. Values that can't be read are left out and logged with
/// the record's name. Absent, and logged, if the whole record can't be read.
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
