#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <span>
#include <type_traits>

namespace velloro {

enum class IconManagerIcon : std::int16_t;

/// The groups in which the program's own icons are offered, in their order. `hidden` are the marks
/// that the program itself draws with: arrows, stars, calendar pages.
enum class IconCategory : std::uint8_t {
  sports,
  workout,
  health,
  food,
  drink,
  animals,
  music,
  people,
  faces,
  nature,
  tech,
  onlineServices,
  transport,
  homeGeneral,
  homeWork,
  artsCrafts,
  clothing,
  other,
  letters,
  numbers,
  games,
  productivity,
  religion,
  zodiac,
  hidden,
};

constexpr auto rawValues(std::type_identity<IconCategory>) {
  return caseNames<IconCategory::hidden>();
}

/// The icons of a group, sorted by name. Each icon belongs to one group.
///
///     sortedIcons(IconCategory::zodiac).size();    // 12
[[nodiscard]] std::span<const IconManagerIcon> sortedIcons(IconCategory category);

}  // namespace velloro
