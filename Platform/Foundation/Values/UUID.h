#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A universally unique identifier: 16 bytes. A default one is all zeros.
///
///     const UUID id = UUID::fromString("1b4e28ba-2fa1-11d2-883f-0016d3cca427").value();
///     id.uuidString();  // "1B4E28BA-2FA1-11D2-883F-0016D3CCA427"
class UUID {
 public:
  using Bytes = std::array<std::uint8_t, 16>;

  constexpr UUID() = default;
  explicit constexpr UUID(const Bytes& bytes) : bytes_(bytes) {}

  /// A new one: random (version 4), from the environment's generator.
  [[nodiscard]] static UUID random();
  /// Reads the 36 characters of the usual form, in capitals or small letters. Absent for anything
  /// else.
  [[nodiscard]] static std::optional<UUID> fromString(std::string_view text);

  /// The usual form in capitals.
  [[nodiscard]] std::string uuidString() const;
  [[nodiscard]] constexpr const Bytes& bytes() const { return bytes_; }

  constexpr bool operator==(const UUID&) const = default;
  /// The order of the bytes, which is that of the texts.
  constexpr auto operator<=>(const UUID&) const = default;

 private:
  Bytes bytes_{};
};

}  // namespace platform

template <>
struct std::hash<platform::UUID> {
  std::size_t operator()(const platform::UUID& id) const noexcept;
};
