#include "Foundation/Values/UUID.h"

#include "Foundation/Process/Environment.h"

#include <bit>

namespace platform {
namespace {

/// Where the dashes stand: before these bytes.
constexpr bool dashBefore(std::size_t byte) {
  return byte == 4 || byte == 6 || byte == 8 || byte == 10;
}

constexpr std::string_view hexDigits = "0123456789ABCDEF";
constexpr std::uint8_t noDigit = 0xFF;

constexpr auto digitOf = [] {
  std::array<std::uint8_t, 256> table{};
  table.fill(noDigit);
  for (std::uint8_t i = 0; i < 16; ++i) {
    const char capital = hexDigits[i];
    const char small = i < 10 ? capital : static_cast<char>(capital - 'A' + 'a');
    table[static_cast<std::uint8_t>(capital)] = table[static_cast<std::uint8_t>(small)] = i;
  }
  return table;
}();

}  // namespace

UUID UUID::random() {
  Environment& environment = Environment::current();
  const std::array<std::uint64_t, 2> words{environment.random(), environment.random()};
  auto bytes = std::bit_cast<Bytes>(words);
  bytes[6] = static_cast<std::uint8_t>(0x40 | (bytes[6] & 0x0F));  // version 4
  bytes[8] = static_cast<std::uint8_t>(0x80 | (bytes[8] & 0x3F));  // RFC 4122 variant
  return UUID(bytes);
}

std::optional<UUID> UUID::fromString(std::string_view text) {
  if (text.size() != 36) return std::nullopt;
  Bytes bytes;
  std::uint8_t seen = 0;
  const char* at = text.data();
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (dashBefore(i) && *at++ != '-') return std::nullopt;
    const std::uint8_t high = digitOf[static_cast<std::uint8_t>(*at++)];
    const std::uint8_t low = digitOf[static_cast<std::uint8_t>(*at++)];
    seen |= high | low;
    bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
  }
  return seen == noDigit ? std::nullopt : std::optional(UUID(bytes));
}

std::string UUID::uuidString() const {
  std::string text(36, '-');
  char* at = text.data();
  for (std::size_t i = 0; i < bytes_.size(); ++i) {
    if (dashBefore(i)) ++at;
    *at++ = hexDigits[bytes_[i] >> 4];
    *at++ = hexDigits[bytes_[i] & 0x0F];
  }
  return text;
}

}  // namespace platform

std::size_t std::hash<platform::UUID>::operator()(const platform::UUID& id) const noexcept {
  const auto words = std::bit_cast<std::array<std::uint64_t, 2>>(id.bytes());
  return words[0] ^ std::rotl(words[1], 32);
}
