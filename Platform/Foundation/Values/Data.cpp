#include "Foundation/Values/Data.h"

#include <array>
#include <cstdint>

namespace platform {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::uint8_t noSixBits = 0xFF;

constexpr auto sixBitsOf = [] {
  std::array<std::uint8_t, 256> table{};
  table.fill(noSixBits);
  for (std::uint8_t i = 0; i < alphabet.size(); ++i) {
    table[static_cast<std::uint8_t>(alphabet[i])] = i;
  }
  return table;
}();

/// Four characters as 24 bits; absent when one is not of the alphabet.
std::optional<std::uint32_t> groupFrom(const char* text) {
  std::uint32_t bits = 0;
  std::uint8_t seen = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const std::uint8_t six = sixBitsOf[static_cast<std::uint8_t>(text[i])];
    seen |= six;
    bits = bits << 6 | six;
  }
  return seen == noSixBits ? std::nullopt : std::optional(bits);
}

void appendGroup(std::string& bytes, std::uint32_t bits, std::size_t count) {
  const char group[] = {static_cast<char>(bits >> 16), static_cast<char>(bits >> 8),
                        static_cast<char>(bits)};
  bytes.append(group, count);
}

}  // namespace

std::optional<Data> Data::fromBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::size_t padding = 0;
  if (text.ends_with('=')) padding = text.ends_with("==") ? 2 : 1;
  const std::size_t whole = padding > 0 ? text.size() - 4 : text.size();
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  for (std::size_t at = 0; at < whole; at += 4) {
    const auto bits = groupFrom(&text[at]);
    if (!bits) return std::nullopt;
    appendGroup(bytes, *bits, 3);
  }
  if (padding > 0) {
    std::string last(text.substr(whole, 4 - padding));
    last.resize(4, alphabet[0]);
    const auto bits = groupFrom(last.data());
    if (!bits) return std::nullopt;
    appendGroup(bytes, *bits, 3 - padding);
  }
  return Data(std::move(bytes));
}

std::string Data::base64EncodedString() const {
  std::string text;
  text.reserve((size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < size(); at += 3) {
    std::uint32_t bits = 0;
    for (std::size_t i = at; i < at + 3; ++i) {
      bits = bits << 8 | (i < size() ? static_cast<std::uint8_t>(bytes_[i]) : 0U);
    }
    for (int shift = 18; shift >= 0; shift -= 6) text += alphabet[bits >> shift & 0x3F];
  }
  const std::size_t padding = (3 - size() % 3) % 3;
  return text.replace(text.size() - padding, padding, padding, '=');
}

}  // namespace platform
