#include "velloro/Settings/SettingsArgument.h"

#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Text/String.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Settings/SettingRule.h"

#include <algorithm>
#include <string_view>

namespace velloro {
namespace {

/// What stands in a key where no filter is meant.
constexpr std::string_view noFilter = "Empty";

/// What the key of a setting goes on with; absent where no setting goes on so.
std::optional<Setting> continued(const SettingRow& row, std::string_view rest) {
  switch (row.payload) {
    case SettingPayload::none:
      return rest.empty() && !row.key.empty() ? std::optional<Setting>(row.value) : std::nullopt;
    case SettingPayload::page:
      if (rest.size() != 1 || rest[0] < '0' || rest[0] >= '0' + numberOfPages) return std::nullopt;
      return Setting(row.value, TaskPageNumber{rest[0] - '0'});
    case SettingPayload::filter:
      if (rest == noFilter) return Setting(row.value);
      [[fallthrough]];
    case SettingPayload::text:
      break;
  }
  return rest.empty() ? std::nullopt
                      : std::optional<Setting>(std::in_place, row.value, std::string(rest));
}

/// Of keys that begin alike the longest counts.
std::optional<Setting> settingOfKey(std::string_view key) {
  std::optional<Setting> found;
  std::size_t length = 0;
  for (const SettingRow& row : setting_detail::rows) {
    if (!key.starts_with(row.key) || row.key.size() < length) continue;
    if (auto setting = continued(row, key.substr(row.key.size()))) {
      found = std::move(setting);
      length = row.key.size();
    }
  }
  return found;
}

const char* whatFollows(SettingPayload payload) {
  switch (payload) {
    case SettingPayload::none:
      return "nothing follows this name";
    case SettingPayload::page:
      return "a page from .0 to .3 follows this name";
    case SettingPayload::filter:
    case SettingPayload::text:
      break;
  }
  return "a point and a name follow this name";
}

std::int64_t integer(const std::string& text) {
  const auto seconds = timeIn(text);
  return seconds ? seconds->intValue() : countArgument("VALUE", text);
}

struct Write {
  SettingsStorage& storage;
  const std::optional<std::string>& text;

  void operator()(const Setting::BoolSetting& setting) const {
    const bool value = text && *text == "true";
    if (setting.setting.name == Setting::cloudSyncThemesDisabled && !storage.isExtension()) {
      storage.changeTiers(value, setting);
    } else {
      storage.setBoolean(value, setting);
    }
  }
  void operator()(const Setting::IntSetting& setting) const {
    storage.setInteger(text ? integer(*text) : 0, setting);
  }
  void operator()(const Setting::DoubleSetting& setting) const {
    storage.setReal(text ? amountArgument("VALUE", *text) : 0, setting);
  }
  void operator()(const Setting::StringSetting& setting) const { storage.setString(text, setting); }
  void operator()(const Setting::CodableSetting& setting) const {
    storage.setCodable(text ? std::optional(PropertyList::fromJSON(*text)) : std::nullopt, setting);
  }
  void operator()(const Setting::NoOpSetting& setting) const {
    throw UsageError("KEY", settingName(setting.setting), "nothing is stored of it");
  }
};

}  // namespace

Setting settingArgument(const std::string& text) {
  if (auto setting = settingOfKey(text)) return *setting;
  const std::size_t point = std::min(text.find('.'), text.size());
  const auto name = fromRawValue<SettingCase>(text.substr(0, point));
  if (!name) {
    std::vector<std::string_view> names;
    for (const SettingRow& row : setting_detail::rows) {
      names.push_back(rawValue(row.value));
      if (!row.key.empty()) names.push_back(row.key);
    }
    throw unknownName("KEY", text, "setting", names);
  }
  const SettingRow& row = settingRowOf(*name);
  const bool isBare = point == text.size();
  if (isBare && (row.payload == SettingPayload::none || row.payload == SettingPayload::filter)) {
    return *name;
  }
  if (auto setting = isBare ? std::nullopt : continued(row, text.substr(point + 1)))
    return *setting;
  throw UsageError("KEY", text, whatFollows(row.payload));
}

std::string settingName(const Setting& setting) {
  std::string name(rawValue(setting.name));
  const std::string rest = setting.key().substr(setting.row().key.size());
  const bool isBare = rest.empty() || std::holds_alternative<std::monostate>(setting.payload);
  return isBare ? name : name + "." + rest;
}

void setArgument(SettingsStorage& storage, const Setting& setting,
                 const std::optional<std::string>& text) {
  const bool isStored = setting.row().kind != Setting::Kind::noOp;
  if (text && isStored) SettingRule::of(setting.name).expect(*text);
  std::visit(Write{storage, text}, setting.wrapper());
}

std::vector<Setting> listedSettings() {
  std::vector<Setting> settings;
  for (const SettingRow& row : setting_detail::rows) {
    if (row.payload == SettingPayload::none || row.payload == SettingPayload::filter) {
      settings.emplace_back(row.value);
    } else if (row.payload == SettingPayload::page) {
      for (std::int64_t page = 0; page < numberOfPages; ++page) {
        settings.emplace_back(row.value, TaskPageNumber{page});
      }
    }
  }
  return settings;
}

}  // namespace velloro
