#include "velloro/Settings/SettingRule.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "OxDateTime/Digits.h"
#include "Settings/Settings.h"
#include "VelloroCore/Progress/TimedTaskManagerEntry.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace velloro {
namespace {

std::optional<double> numberIn(const std::string& text) {
  double number = 0;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  const bool isNumber = read.ec == std::errc() && read.ptr == end;
  return isNumber ? std::optional(number) : std::nullopt;
}

/// Without a sign and without leading zeros, so that "040000" is not taken for a number.
std::optional<std::int64_t> countIn(const std::string& text) {
  constexpr std::size_t mostDigits = 9;
  const bool isPadded = text.size() > 1 && text.starts_with('0');
  if (text.empty() || text.size() > mostDigits || isPadded) return std::nullopt;
  return wholeNumber(text);
}

bool isBetween(const std::string& text, std::int64_t least, std::int64_t most) {
  const auto count = countIn(text);
  return count && *count >= least && *count <= most;
}

bool isTheme(const std::string& text) {
  const auto theme = Theme::fromStringValue(text);
  return theme && theme->withMode(theme->mode) == *theme;
}

bool isMode(const std::string& text) {
  return fromRawValue<ThemeMode>(text).has_value();
}

std::vector<std::string_view> modes() {
  std::vector<std::string_view> names;
  for (const ThemeMode mode : allCases<ThemeMode>()) names.push_back(rawValue(mode));
  return names;
}

bool isSnooze(const std::string& text) {
  constexpr double day = 86400;
  const auto seconds = numberIn(text);
  return seconds && *seconds >= 0 && *seconds <= day;
}

bool isName(const std::string& text) {
  (void)lineArgument("VALUE", text, 200);
  return true;
}

template <typename T>
bool isRecord(const std::string& text) {
  (void)JSONDecoder{}.decode<T>(text);
  return true;
}

constexpr SettingRule theme{.what = "a theme",
                            .example =
                                "a scheme of \"velloro themes\", such as blue, or one with "
                                "a mode that it has, such as blue.white",
                            .accepts = isTheme};
constexpr SettingRule mode{.what = "mode of themes", .accepts = isMode, .words = modes};
constexpr SettingRule version{
    .what = "a version",
    .example = "a whole number from 0 on",
    .accepts = [](const std::string& text) { return isBetween(text, 0, 999999999); }};
constexpr SettingRule name{.what = "a name", .example = "a line of text", .accepts = isName};
constexpr SettingRule unread{};

struct Row {
  SettingCase setting;
  SettingRule rule;
};

using enum SettingCase;
constexpr Row rows[] = {
    {selectedTheme, theme},
    {selectedFilterTheme, theme},
    {selectedWatchTheme, theme},
    {selectedThemeForUser, theme},
    {themeAutoSwitchDarkMode, mode},
    {themeAutoSwitchLightMode, mode},
    {imageCacheVersion, version},
    {nmCurrentVersion, version},
    {firstTrackedAppVersion, name},
    {selectedUserProfile, name},
    {deviceId, name},
    {nmSnoozeDuration,
     {.what = "a number of seconds", .example = "0 to 86400", .accepts = isSnooze}},
    {startOfDay,
     {.what = "a time of day",
      .example = "one as 4:00, 04:00 or 04:00:00, or as its seconds from 2400 on",
      .accepts = [](const std::string& text) { return startOfDayNumber(text).has_value(); }}},
    {selectedTaskPage,
     {.what = "a page",
      .example = "0 to 3",
      .accepts = [](const std::string& text) { return isBetween(text, 0, numberOfPages - 1); }}},
    {startOfWeekDateComponent,
     {.what = "a weekday",
      .example = "1 for Sunday to 7 for Saturday",
      .accepts = [](const std::string& text) { return isBetween(text, 1, 7); }}},
    {cloudKitErrors, {.accepts = isRecord<std::vector<Settings::CloudKitErrorDescriptor>>}},
    {timedTaskEntries, {.accepts = isRecord<std::vector<TimedTaskManagerEntry>>}},
    {complicationLegacySettings, unread},
    {complicationSettings, unread},
    {wcActiveComplications, unread},
    {grandSlamQualifySettings, unread},
    {menuBarStyle, unread},
    {siriWatchFaceDisabledIds, unread},
    {appIcon, unread},
    {lastStatsTimePeriod, unread},
    {appleWatchTimerCompleteNotificationType, unread},
    {taskFilterDisplayMode, unread},
    {taskFilterManual, unread},
    {taskFilterAuto, unread},
    {taskFilterDisplayOrder, unread}};

constexpr SettingRule flag{
    .what = "a Boolean", .example = "true or false", .accepts = [](const std::string& text) {
      return text == "true" || text == "false";
    }};

/// Only a Boolean and a setting without a value need no row.
consteval bool areAllKnown() {
  return std::ranges::all_of(setting_detail::rows, [](const SettingRow& setting) {
    const bool needsNone = setting.kind == SettingKind::bool_ || setting.kind == SettingKind::noOp;
    return needsNone || std::ranges::find(rows, setting.value, &Row::setting) != std::end(rows);
  });
}
static_assert(areAllKnown(), "every setting that is no Boolean has its rule");

}  // namespace

const SettingRule& SettingRule::of(SettingCase setting) {
  const auto* found = std::ranges::find(rows, setting, &Row::setting);
  return found != std::end(rows) ? found->rule : flag;
}

void SettingRule::expect(const std::string& text) const {
  const auto refused = [&](const std::string& reason) { return UsageError("VALUE", text, reason); };
  if (!isUTF8(text)) throw UsageError("VALUE: not a text in UTF-8");
  if (accepts == nullptr) throw refused("no program reads this setting yet; it can only be unset");
  try {
    if (accepts(text)) return;
  } catch (const DecodingError& error) {
    throw refused("nothing reads it: " + error.localizedDescription());
  }
  if (words != nullptr) throw unknownName("VALUE", text, std::string(what), words());
  throw refused("not " + std::string(what) + "; write " + std::string(example));
}

std::optional<std::int64_t> startOfDayNumber(const std::string& text) {
  constexpr std::int64_t hoursAndMinutes = 2400;
  if (const auto seconds = countIn(text)) {
    const bool isClear = *seconds == 0 || *seconds >= hoursAndMinutes;
    return isClear && HHMMSS::fromIntValue(*seconds) ? seconds : std::nullopt;
  }
  const auto time = timeIn(text);
  return time ? std::optional(time->intValue()) : std::nullopt;
}

}  // namespace velloro
