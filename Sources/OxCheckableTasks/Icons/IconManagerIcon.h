#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxCheckableTasks/Icons/IconCategory.h"
#include "OxCheckableTasks/Icons/OxIconProtocol.h"
#include "OxCheckableTasks/Icons/OxSymbol.h"
#include "OxKit/EnumSet.h"
#include "OxKit/Platform.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velloro {

/// The program's own icons, 725 of them. The cases stand in IconManagerIconCases.h, for sources
/// that name one; all others do without, so that a new icon compiles few of them again. The raw
/// value of a case is its name: "water_glass". A name that no case has is absent.
///
///     rawValue(IconManagerIcon::water_glass);               // "water_glass"
///     fromRawValue<IconManagerIcon>("water_glas");          // absent
///     category(IconManagerIcon::water_glass);               // IconCategory::drink
enum class IconManagerIcon : std::int16_t;

/// The raw values, as `RawValueTable` has them, compiled in one place.
struct IconManagerIconNames {
  using RawType = std::string_view;
  static constexpr bool isKeyed = false;

  [[nodiscard]] std::span<const IconManagerIcon> cases() const;
  [[nodiscard]] std::string_view rawValue(IconManagerIcon icon) const;
  [[nodiscard]] std::optional<IconManagerIcon> fromRawValue(std::string_view name) const;
};

constexpr IconManagerIconNames rawValues(std::type_identity<IconManagerIcon>) {
  return {};
}

[[nodiscard]] IconCategory category(IconManagerIcon icon);

/// Whether the image changes with a task's state: true for the activity rings alone.
[[nodiscard]] bool isDynamic(IconManagerIcon icon);
static_assert(OxIconProtocol<IconManagerIcon>);

/// The icon of a digit or of a letter from a to z, in either case.
///
///     characterIcon(U'7');    // IconManagerIcon::char_7
///     characterIcon(U'é');    // absent
[[nodiscard]] std::optional<IconManagerIcon> characterIcon(char32_t character);

/// A sign that says the same where there are but letters: "★" for `star`. Few icons have one.
[[nodiscard]] std::optional<std::string_view> textVersion(IconManagerIcon icon);

/// The system's symbol that is shown in the icon's place where symbols are the custom:
/// "pause.fill" for `pause`. Few icons have one.
[[nodiscard]] std::optional<OxSymbol> customSymbol(IconManagerIcon icon);

// The icons to choose from, group by group: all but those of the excluded groups.

[[nodiscard]] std::vector<IconManagerIcon> allIcons(EnumSet<IconCategory> excludeCategories = {});
/// One of these by chance (`Environment::random`), but none of `excludeIcons`; absent when none is
/// left.
[[nodiscard]] std::optional<IconManagerIcon> randomIcon(
    EnumSet<IconCategory> excludeCategories = {},
    std::span<const IconManagerIcon> excludeIcons = {});
/// So many different ones, or as many as there are.
[[nodiscard]] std::vector<IconManagerIcon> randomIcons(
    std::size_t numIcons, EnumSet<IconCategory> excludeCategories = {},
    std::span<const IconManagerIcon> excludeIcons = {});

}  // namespace velloro
