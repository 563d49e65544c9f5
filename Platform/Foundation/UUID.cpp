#include "Foundation/UUID.h"

#include "Foundation/Environment.h"

#include <bit>
#include <cstring>

namespace platform {
namespace {

/// Where the dashes stand: before these bytes.
constexpr bool dashBefore(std::size_t byte) {
  return byte == 4 || byte == 6 || byte == 8 || byte == 10;
}

/// 0 to 15, or -1.
constexpr int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

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
  const char* at = text.data();
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (dashBefore(i) && *at++ != '-') return std::nullopt;
    const int high = hexDigit(*at++);
    const int low = hexDigit(*at++);
    if (high < 0 || low < 0) return std::nullopt;
    bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
  }
  return UUID(bytes);
}

std::string UUID::uuidString() const {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  text.reserve(36);
  for (std::size_t i = 0; i < bytes_.size(); ++i) {
    if (dashBefore(i)) text += '-';
    text += digits[bytes_[i] >> 4];
    text += digits[bytes_[i] & 0x0F];
  }
  return text;
}

}  // namespace platform

std::size_t std::hash<platform::UUID>::operator()(const platform::UUID& id) const noexcept {
  const auto words = std::bit_cast<std::array<std::uint64_t, 2>>(id.bytes());
  return words[0] ^ std::rotl(words[1], 32);
}
