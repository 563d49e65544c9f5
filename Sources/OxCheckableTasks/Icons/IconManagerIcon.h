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

/// The program's own icons, 725 of them; the table is IconManagerIcon.inc. The raw value of a case
/// is its name: "water_glass". A name that no case has is absent.
///
///     rawValue(IconManagerIcon::water_glass);               // "water_glass"
///     fromRawValue<IconManagerIcon>("water_glas");          // absent
///     category(IconManagerIcon::water_glass);               // IconCategory::drink
enum class IconManagerIcon : std::int16_t {
#define VELLORO_ICON(name, category) name,
#include "OxCheckableTasks/Icons/IconManagerIcon.inc"
};

struct IconManagerIconRow {
  IconManagerIcon value;
  std::string_view raw;
  IconCategory category;
};

inline constexpr IconManagerIconRow iconManagerIconRows[] = {
#define VELLORO_ICON(name, category) {IconManagerIcon::name, #name, IconCategory::category},
#include "OxCheckableTasks/Icons/IconManagerIcon.inc"
};

constexpr auto rawValues(std::type_identity<IconManagerIcon>) {
  return rawColumn(iconManagerIconRows);
}

[[nodiscard]] constexpr IconCategory category(IconManagerIcon icon) {
  return iconManagerIconRows[static_cast<std::size_t>(icon)].category;
}

/// Whether the image changes with a task's state: true for the activity rings alone.
[[nodiscard]] constexpr bool isDynamic(IconManagerIcon icon) {
  return icon == IconManagerIcon::activity_rings;
}
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
