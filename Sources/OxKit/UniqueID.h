#pragma once

#include "Foundation/Values/Hasher.h"
#include "Foundation/Values/UUID.h"
#include "OxKit/Platform.h"

#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// The identity of a task, an entry, a reminder or a category: a UUID, stored as its text.
///
///     const UniqueID id = UniqueID::create();
///     UniqueID::fromString(id.stringValue()) == id;  // true
struct UniqueID {
  UUID uuid;

  /// A new one that no other has.
  [[nodiscard]] static UniqueID create() { return {UUID::random()}; }
  /// Absent for a text that is no UUID.
  [[nodiscard]] static std::optional<UniqueID> fromString(std::string_view text) {
    const auto uuid = UUID::fromString(text);
    return uuid ? std::optional(UniqueID{*uuid}) : std::nullopt;
  }

  [[nodiscard]] std::string stringValue() const { return uuid.uuidString(); }

  auto operator<=>(const UniqueID&) const = default;
  static constexpr auto codingValue = &UniqueID::uuid;
};

}  // namespace velloro
