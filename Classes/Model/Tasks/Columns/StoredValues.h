#pragma once

#include "Foundation/Coding/JSON.h"
#include "Foundation/Time/TimeZone.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "OxDateTime/HHMMSS.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/UniqueID.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

// What columns hold, as values. Texts are null where there is none. Nothing that is stored stops a
// read: what can't be made out is absent.

[[nodiscard]] std::optional<UniqueID> storedUniqueID(const std::string* text);
[[nodiscard]] std::optional<TimeZone> storedTimeZone(const std::string* text);
/// Red, green, blue and alpha between white space: "0.2 0.4 0.6 1". Remembered by the text.
[[nodiscard]] std::optional<OxCodableColor> storedColor(const std::string* text);
/// See `IconDisplayRepresentation::fromCoreDataStringRepresentation`; absent for an empty text,
/// too.
[[nodiscard]] std::optional<IconDisplayRepresentation> storedIcon(const std::string* text);

/// Seconds since midnight, 0 to 86399.
[[nodiscard]] std::optional<HHMMSS> storedTime(std::optional<std::int64_t> seconds);
/// `YYYYMMDD::intValue`, 0 for none.
[[nodiscard]] std::optional<YYYYMMDD> storedDay(std::optional<std::int64_t> number);

/// A decimal integer and nothing else.
[[nodiscard]] std::optional<std::int64_t> storedInteger(std::string_view text);
/// The pieces between separators but for the empty ones; pieces of `text`, which must outlive them.
[[nodiscard]] std::vector<std::string_view> nonEmptyParts(std::string_view text, char separator);

/// Absent for a text that is no JSON of that type.
/// \param isStrict Whether it is absent for one that is readable in parts, too (`JSONDecoder`).
template <typename T>
[[nodiscard]] std::optional<T> storedJSON(const std::string* text, DateForm dateForm = {},
                                          bool isStrict = false) {
  if (text == nullptr) return std::nullopt;
  try {
    return JSONDecoder{.dateForm = dateForm, .isStrict = isStrict}.decode<T>(*text);
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

template <typename T>
[[nodiscard]] std::optional<T> storedJSON(const std::optional<Data>& data, bool isStrict = false) {
  return storedJSON<T>(data ? &data->text() : nullptr, {}, isStrict);
}

}  // namespace velloro
