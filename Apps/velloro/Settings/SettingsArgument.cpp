#include "velloro/Settings/SettingsArgument.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "OxDateTime/HHMMSS.h"
#include "Settings/Settings.h"
#include "VelloroCore/Progress/TimedTaskManagerEntry.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

namespace velloro {
namespace {

constexpr std::int64_t pages = 4;
/// What stands in a key where no filter is meant.
constexpr std::string_view noFilter = "Empty";

/// What the key of a setting goes on with; absent where no setting goes on so.
std::optional<Setting> continued(const SettingRow& row, std::string_view rest) {
  switch (row.payload) {
    case SettingPayload::none:
      return rest.empty() && !row.key.empty() ? std::optional<Setting>(row.value) : std::nullopt;
    case SettingPayload::page:
      if (rest.size() != 1 || rest[0] < '0' || rest[0] >= '0' + pages) return std::nullopt;
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

UsageError unusable(const std::string& value, const std::string& reason) {
  return UsageError("VALUE " + inQuotes(value) + ": " + reason);
}

std::int64_t integer(const std::string& text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec == std::errc() && read.ptr == end) return number;
  throw unusable(text, "not a whole number; write one as 3");
}

std::int64_t startOfDay(const std::string& text) {
  if (text.contains(':')) return timeArgument("VALUE", text).intValue();
  if (HHMMSS::fromIntValue(integer(text))) return integer(text);
  throw unusable(text, "not a time of day; write one as 03:00:00, or its seconds");
}

PropertyList json(const std::string& text) {
  try {
    return PropertyList::fromJSON(text);
  } catch (const DecodingError& error) {
    throw unusable(text, "not JSON: " + error.localizedDescription());
  }
}

/// What no reader of the setting would make out is refused.
void expectReadable(const std::string& text, const Setting& setting) {
  using enum SettingCase;
  if (!isUTF8(text)) throw UsageError("VALUE: not a text in UTF-8");
  switch (setting.name) {
    case selectedTheme:
    case selectedFilterTheme:
    case selectedWatchTheme:
    case selectedThemeForUser:
      if (Theme::fromStringValue(text)) return;
      throw unusable(text,
                     "not a theme; write a scheme of \"velloro themes\", such as blue, or one "
                     "with its mode, such as blue.white");
    case themeAutoSwitchDarkMode:
    case themeAutoSwitchLightMode:
      (void)caseArgument<ThemeMode>("VALUE", text, "mode of themes");
      return;
    default:
      return;
  }
}

void expectReadable(std::int64_t number, const std::string& text, const Setting& setting) {
  using enum SettingCase;
  const bool isWeekday = fromRawValue<CalendarDayOfWeek>(number).has_value();
  if (setting.name == startOfWeekDateComponent && !isWeekday) {
    throw unusable(text, "not a weekday; write 1 for Sunday to 7 for Saturday");
  }
  if (setting.name == selectedTaskPage && (number < 0 || number >= pages)) {
    throw unusable(text, "not a page; write 0 to 3");
  }
}

void expectReadable(double number, const std::string& text, const Setting& setting) {
  if (setting.name == SettingCase::nmSnoozeDuration && number < 0) {
    throw unusable(text, "below 0; write seconds");
  }
}

/// Of some settings it is known which record they hold.
void expectRecord(const std::string& text, const Setting& setting) {
  using enum SettingCase;
  try {
    if (setting.name == cloudKitErrors) {
      (void)JSONDecoder{}.decode<std::vector<Settings::CloudKitErrorDescriptor>>(text);
    } else if (setting.name == timedTaskEntries) {
      (void)JSONDecoder{}.decode<std::vector<TimedTaskManagerEntry>>(text);
    }
  } catch (const DecodingError& error) {
    throw unusable(text, "nothing reads it: " + error.localizedDescription());
  }
}

struct Write {
  SettingsStorage& storage;
  const std::optional<std::string>& text;

  void operator()(const Setting::BoolSetting& setting) const {
    const bool value = text && flagArgument(*text);
    if (setting.setting.name == Setting::cloudSyncThemesDisabled && !storage.isExtension()) {
      storage.changeTiers(value, setting);
    } else {
      storage.setBoolean(value, setting);
    }
  }
  void operator()(const Setting::IntSetting& setting) const {
    const bool isTime = setting.setting.name == Setting::startOfDay;
    const std::int64_t value = !text ? 0 : isTime ? startOfDay(*text) : integer(*text);
    if (text) expectReadable(value, *text, setting.setting);
    storage.setInteger(value, setting);
  }
  void operator()(const Setting::DoubleSetting& setting) const {
    const double value = text ? amountArgument("VALUE", *text) : 0;
    if (text) expectReadable(value, *text, setting.setting);
    storage.setReal(value, setting);
  }
  void operator()(const Setting::StringSetting& setting) const {
    if (text) expectReadable(*text, setting.setting);
    storage.setString(text, setting);
  }
  void operator()(const Setting::CodableSetting& setting) const {
    const auto value = text ? std::optional(json(*text)) : std::nullopt;
    if (text) expectRecord(*text, setting.setting);
    storage.setCodable(value, setting);
  }
  void operator()(const Setting::NoOpSetting& setting) const {
    throw UsageError("KEY " + inQuotes(settingName(setting.setting)) + ": nothing is stored of it");
  }
};

}  // namespace

bool flagArgument(const std::string& text) {
  if (text == "true" || text == "false") return text == "true";
  throw unusable(text, "not a Boolean; write true or false");
}

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
  throw UsageError("KEY " + inQuotes(text) + ": " + whatFollows(row.payload));
}

std::string settingName(const Setting& setting) {
  std::string name(rawValue(setting.name));
  const std::string rest = setting.key().substr(setting.row().key.size());
  const bool isBare = rest.empty() || std::holds_alternative<std::monostate>(setting.payload);
  return isBare ? name : name + "." + rest;
}

void setArgument(SettingsStorage& storage, const Setting& setting,
                 const std::optional<std::string>& text) {
  std::visit(Write{storage, text}, setting.wrapper());
}

std::vector<Setting> listedSettings() {
  std::vector<Setting> settings;
  for (const SettingRow& row : setting_detail::rows) {
    if (row.payload == SettingPayload::none || row.payload == SettingPayload::filter) {
      settings.emplace_back(row.value);
    } else if (row.payload == SettingPayload::page) {
      for (std::int64_t page = 0; page < pages; ++page) {
        settings.emplace_back(row.value, TaskPageNumber{page});
      }
    }
  }
  return settings;
}

}  // namespace velloro
