#include "Foundation/Coding/Coding.h"

#include "Foundation/Text/String.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"
#include "Foundation/Values/Data.h"
#include "Foundation/Values/UUID.h"

#include <algorithm>

namespace platform {

std::size_t coding_detail::searchName(std::span<const std::string_view> names,
                                      std::string_view name, std::size_t expected) {
  const auto start = names.begin() + static_cast<std::ptrdiff_t>(std::min(expected, names.size()));
  const auto behind = std::find(start, names.end(), name);
  if (behind != names.end()) return static_cast<std::size_t>(behind - names.begin());
  const auto before = std::find(names.begin(), start, name);
  return before != start ? static_cast<std::size_t>(before - names.begin()) : names.size();
}

void Coding<Data>::encode(const Data& value, Encoder& to) {
  to.text(value.base64EncodedString());
}

Data Coding<Data>::decode(const Decoder& from) {
  if (auto data = Data::fromBase64(from.text())) return std::move(*data);
  throw from.invalidValue("a text in Base64");
}

void Coding<Date>::encode(const Date& value, Encoder& to) {
  to.date(value);
}

Date Coding<Date>::decode(const Decoder& from) {
  return from.date();
}

void Coding<TimeZone>::encode(const TimeZone& value, Encoder& to) {
  to.object([&](ObjectEncoder& object) { object.encode("identifier", value.identifier()); });
}

TimeZone Coding<TimeZone>::decode(const Decoder& from) {
  const auto identifier = from.decode<std::string>("identifier");
  if (const auto zone = TimeZone::fromIdentifier(identifier)) return *zone;
  throw from.dataCorrupted("No time zone is named " + inQuotes(identifier) + ".");
}

void Coding<UUID>::encode(const UUID& value, Encoder& to) {
  to.text(value.uuidString());
}

UUID Coding<UUID>::decode(const Decoder& from) {
  if (const auto id = UUID::fromString(from.text())) return *id;
  throw from.invalidValue("a UUID");
}

}  // namespace platform
