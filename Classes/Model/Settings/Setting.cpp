#include "Settings/Setting.h"

#include <algorithm>
#include <vector>

namespace velloro {
namespace {

constexpr std::int64_t namedPages = 4;

void appendPages(std::vector<Setting>& settings, Setting::Case ofPage) {
  for (std::int64_t page = 0; page < namedPages; ++page) {
    settings.emplace_back(ofPage, TaskPageNumber{page});
  }
}

std::vector<Setting> listedCases() {
  using enum SettingCase;
  std::vector<Setting> settings;
  for (const SettingRow& row : setting_detail::rows) {
    const bool isListed = row.payload == SettingPayload::none;
    if (isListed && row.value != taskFilterDisplayOrder) settings.emplace_back(row.value);
  }
  // This order is the one in which changes are told.
  const auto initialIndex =
      std::ranges::find(settings, spotlightIndexerHasCompletedInitialIndex, &Setting::name);
  std::iter_swap(initialIndex, std::next(initialIndex));
  appendPages(settings, selectedTheme);
  appendPages(settings, taskPageIsHidden);
  return settings;
}

}  // namespace

std::string Setting::key() const {
  std::string key(row().key);
  if (const auto* page = std::get_if<TaskPageNumber>(&payload)) {
    return key + std::to_string(page->value);
  }
  if (const auto* text = std::get_if<std::string>(&payload)) return key + *text;
  return row().payload == SettingPayload::filter ? key + "Empty" : key;
}

Setting::Wrapper Setting::wrapper() const {
  switch (row().kind) {
    case Kind::bool_:
      return BoolSetting(*this);
    case Kind::string:
      return StringSetting(*this);
    case Kind::int_:
      return IntSetting(*this);
    case Kind::double_:
      return DoubleSetting(*this);
    case Kind::codable:
      return CodableSetting(*this);
    case Kind::noOp:
      break;
  }
  return NoOpSetting(*this);
}

std::span<const Setting> Setting::allCases() {
  static const auto* const settings = new std::vector<Setting>(listedCases());
  return *settings;
}

std::optional<Setting> Setting::fromKey(std::string_view key) {
  if (key.empty()) return std::nullopt;
  const auto found = std::ranges::find(allCases(), key, &Setting::key);
  return found != allCases().end() ? std::optional(*found) : std::nullopt;
}

}  // namespace velloro
