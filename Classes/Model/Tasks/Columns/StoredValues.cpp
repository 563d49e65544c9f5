#include "Tasks/Columns/StoredValues.h"

#include "Foundation/Values/NSCache.h"

#include <algorithm>
#include <charconv>

namespace velloro {

std::optional<UniqueID> storedUniqueID(const std::string* text) {
  return text != nullptr ? UniqueID::fromString(*text) : std::nullopt;
}

std::optional<TimeZone> storedTimeZone(const std::string* text) {
  return text != nullptr ? TimeZone::fromIdentifier(*text) : std::nullopt;
}

std::optional<OxCodableColor> storedColor(const std::string* text) {
  using Colors = NSCache<std::string, std::optional<OxCodableColor>>;
  static auto* colors = new Colors({.count = 256});
  if (text == nullptr || text->empty()) return std::nullopt;
  if (const auto known = colors->object(*text)) return *known;
  const auto color = OxCodableColor::fromSpaceSeparated(*text);
  colors->setObject(*text, color);
  return color;
}

std::optional<IconDisplayRepresentation> storedIcon(const std::string* text) {
  if (text == nullptr || text->empty()) return std::nullopt;
  return IconDisplayRepresentation::fromCoreDataStringRepresentation(*text);
}

std::optional<HHMMSS> storedTime(std::optional<std::int64_t> seconds) {
  return seconds ? HHMMSS::fromIntValue(*seconds) : std::nullopt;
}

std::optional<YYYYMMDD> storedDay(std::optional<std::int64_t> number) {
  return number ? YYYYMMDD::fromIntValue(*number) : std::nullopt;
}

std::optional<std::int64_t> storedInteger(std::string_view text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
}

std::vector<std::string_view> nonEmptyParts(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const std::size_t length = std::min(text.find(separator), text.size());
    if (length > 0) parts.push_back(text.substr(0, length));
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  return parts;
}

}  // namespace velloro
