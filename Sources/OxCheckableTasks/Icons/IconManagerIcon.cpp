#include "OxCheckableTasks/Icons/IconManagerIcon.h"

#include "Foundation/Process/Environment.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velloro {
namespace {

using enum IconManagerIcon;

struct Row {
  IconManagerIcon value;
  std::string_view raw;
  IconCategory category;
};

constexpr Row rows[] = {
#define VELLORO_ICON(name, category) {IconManagerIcon::name, #name, IconCategory::category},
#include "OxCheckableTasks/Icons/IconManagerIcon.inc"
};

constexpr auto names = rawColumn(rows);

struct IconText {
  IconManagerIcon icon;
  std::string_view text;
};

constexpr IconText textVersions[] = {
    {add, "+"},         {arrow_down, "↓"},  {arrow_left, "←"},    {arrow_left_right, "↔"},
    {arrow_right, "→"}, {arrow_up, "↑"},    {arrow_up_down, "↕"}, {checkmark, "✓"},
    {ellipsis, "…"},    {exclamation, "!"}, {minus, "−"},         {missed, "✗"},
    {question, "?"},    {star, "★"},        {star_empty, "☆"},    {suitc, "♣"},
    {suitd, "♦"},       {suith, "♥"},       {suits, "♠"},         {heart, "♥"},
};

constexpr IconText customSymbols[] = {
    {checkmark, "checkmark.circle.fill"},
    {external_link, "arrow.up.right.square.fill"},
    {hourglass, "hourglass"},
    {missed, "nosign"},
    {pause, "pause.fill"},
    {pin, "pin.fill"},
    {play, "play.fill"},
    {star, "star.fill"},
    {star_empty, "star"},
    {star_half_empty, "star.leadinghalf.filled"},
    {stopwatch, "stopwatch.fill"},
};

std::optional<std::string_view> textIn(std::span<const IconText> table, IconManagerIcon icon) {
  const auto found = std::ranges::find(table, icon, &IconText::icon);
  return found != table.end() ? std::optional(found->text) : std::nullopt;
}

using Groups = std::array<std::vector<IconManagerIcon>, allCases<IconCategory>().size()>;

Groups makeGroups() {
  Groups groups;
  for (const Row& row : rows) {
    groups[static_cast<std::size_t>(row.category)].push_back(row.value);
  }
  return groups;
}

std::vector<IconManagerIcon> choices(EnumSet<IconCategory> excludeCategories,
                                     std::span<const IconManagerIcon> excludeIcons) {
  std::vector<IconManagerIcon> icons = allIcons(excludeCategories);
  std::erase_if(icons, [&](IconManagerIcon icon) {
    return std::ranges::find(excludeIcons, icon) != excludeIcons.end();
  });
  return icons;
}

}  // namespace

std::span<const IconManagerIcon> IconManagerIconNames::cases() const {
  return names.cases();
}

std::string_view IconManagerIconNames::rawValue(IconManagerIcon icon) const {
  return names.rawValue(icon);
}

std::optional<IconManagerIcon> IconManagerIconNames::fromRawValue(std::string_view name) const {
  return names.fromRawValue(name);
}

IconCategory category(IconManagerIcon icon) {
  return rows[names.indexOf(icon)].category;
}

bool isDynamic(IconManagerIcon icon) {
  return icon == activity_rings;
}

std::span<const IconManagerIcon> sortedIcons(IconCategory category) {
  static const Groups groups = makeGroups();
  return groups[static_cast<std::size_t>(category)];
}

std::optional<IconManagerIcon> characterIcon(char32_t character) {
  const bool isDigit = character >= U'0' && character <= U'9';
  const char32_t lowercased = character | (isDigit ? 0 : 0x20);
  if (!isDigit && (lowercased < U'a' || lowercased > U'z')) return std::nullopt;
  return fromRawValue<IconManagerIcon>(std::string("char_") + static_cast<char>(lowercased));
}

std::optional<std::string_view> textVersion(IconManagerIcon icon) {
  return textIn(textVersions, icon);
}

std::optional<OxSymbol> customSymbol(IconManagerIcon icon) {
  const auto name = textIn(customSymbols, icon);
  return name ? std::optional(OxSymbol{std::string(*name)}) : std::nullopt;
}

std::vector<IconManagerIcon> allIcons(EnumSet<IconCategory> excludeCategories) {
  std::vector<IconManagerIcon> icons;
  for (const IconCategory category : allCases<IconCategory>()) {
    if (excludeCategories.contains(category)) continue;
    const auto group = sortedIcons(category);
    icons.insert(icons.end(), group.begin(), group.end());
  }
  return icons;
}

std::optional<IconManagerIcon> randomIcon(EnumSet<IconCategory> excludeCategories,
                                          std::span<const IconManagerIcon> excludeIcons) {
  const auto drawn = randomIcons(1, excludeCategories, excludeIcons);
  return drawn.empty() ? std::nullopt : std::optional(drawn.front());
}

std::vector<IconManagerIcon> randomIcons(std::size_t numIcons,
                                         EnumSet<IconCategory> excludeCategories,
                                         std::span<const IconManagerIcon> excludeIcons) {
  std::vector<IconManagerIcon> icons = choices(excludeCategories, excludeIcons);
  const std::size_t count = std::min(numIcons, icons.size());
  for (std::size_t i = 0; i < count; ++i) {
    // 64 random bits against some hundred icons: no icon is noticeably likelier
    const std::size_t drawn = i + Environment::current().random() % (icons.size() - i);
    std::swap(icons[i], icons[drawn]);
  }
  icons.resize(count);
  return icons;
}

}  // namespace velloro
