#include "Settings/Settings.h"

#include "CloudKit/CKError.h"
#include "Foundation/Text/Locale.h"

#include <algorithm>
#include <functional>

namespace velloro {
namespace {

constexpr TimeInterval keptSeconds = 12 * 3600;
constexpr std::size_t keptErrors = 10;

std::optional<ThemeMode> themeMode(const std::optional<std::string>& text) {
  return text ? fromRawValue<ThemeMode>(*text) : std::nullopt;
}

Settings::CloudKitErrorDescriptor descriptor(const Error& error) {
  Settings::CloudKitErrorDescriptor result{.date = Date::now(),
                                           .str = error.localizedDescription(),
                                           .ckErrorCode = {},
                                           .nsErrorCode = {},
                                           .nsErrorDomain = {}};
  if (error.domain() == CKErrorDomain) {
    result.ckErrorCode = error.code();
  } else {
    result.nsErrorCode = error.code();
    result.nsErrorDomain = error.domain();
  }
  return result;
}

}  // namespace

Settings& Settings::shared() {
  static auto* const settings = new Settings(SettingsStorage::shared());
  return *settings;
}

Settings::Settings(SettingsStorage& storage) : storage_(storage) {
  observer_ = NSNotificationCenter::defaultCenter().addObserver(
      settingsChangedNotification,
      [this](const Notification& notification) { settingsChanged(notification); });
  reload();
}

void Settings::reload() {
  reloadStartOfDay();
  reloadFirstDayOfWeek();
}

bool Settings::taskCountBadgeEnabled() const {
  return !storage_.boolean(Setting::nmTaskCountBadgeDisabled);
}

TimeInterval Settings::snoozeDuration() const {
  return storage_.real(Setting::nmSnoozeDuration);
}

Theme Settings::theme(TaskPageNumber pageNumber) const {
  const auto text =
      storage_.string(Setting::StringSetting(Setting(Setting::selectedTheme, pageNumber)));
  const auto theme = text ? Theme::fromStringValue(*text) : std::nullopt;
  return theme ? *theme : Theme::defaultTheme(pageNumber);
}

bool Settings::themeAutoSwitch() const {
  return storage_.boolean(Setting::themeAutoSwitch);
}

std::optional<ThemeMode> Settings::themeAutoSwitchDarkMode() const {
  return themeMode(storage_.string(Setting::themeAutoSwitchDarkMode));
}

std::optional<ThemeMode> Settings::themeAutoSwitchLightMode() const {
  return themeMode(storage_.string(Setting::themeAutoSwitchLightMode));
}

void Settings::recordCloudKitError(const Error& error) {
  auto errors = cloudKitErrors();
  const Date now = Date::now();
  std::erase_if(errors,
                [&](const auto& kept) { return now.timeIntervalSince(kept.date) >= keptSeconds; });
  errors.insert(errors.begin(), descriptor(error));
  std::ranges::stable_sort(errors, std::ranges::greater{}, &CloudKitErrorDescriptor::date);
  if (errors.size() > keptErrors) errors.resize(keptErrors);
  storage_.setCodable(std::optional(errors), Setting::cloudKitErrors);
}

std::vector<Settings::CloudKitErrorDescriptor> Settings::cloudKitErrors() const {
  return storage_.codable<std::vector<CloudKitErrorDescriptor>>(Setting::cloudKitErrors)
      .value_or(std::vector<CloudKitErrorDescriptor>{});
}

void Settings::settingsChanged(const Notification& notification) {
  const auto* changed = notification.value<std::vector<Setting>>(settingNamesKey);
  const auto hasChanged = [&](Setting::Case name) {
    return changed != nullptr && std::ranges::count(*changed, name, &Setting::name) > 0;
  };
  if (hasChanged(Setting::startOfDay)) reloadStartOfDay();
  if (hasChanged(Setting::startOfWeekSelected) || hasChanged(Setting::startOfWeekDateComponent)) {
    reloadFirstDayOfWeek();
  }
}

void Settings::reloadStartOfDay() {
  cachedStartOfDay_ = storage_.integer(Setting::startOfDay);
}

// An extension can't see whether the user has chosen a day, only which one.
void Settings::reloadFirstDayOfWeek() {
  const bool isChosen = storage_.isExtension() || storage_.boolean(Setting::startOfWeekSelected);
  const std::int64_t weekday = isChosen ? storage_.integer(Setting::startOfWeekDateComponent) : 0;
  if (const auto chosen = fromRawValue<CalendarDayOfWeek>(weekday)) {
    cachedFirstDayOfWeek_ = dayOfWeek(*chosen);
  } else {
    cachedFirstDayOfWeek_ = localesFirstDayOfWeek(Locale::current());
  }
}

}  // namespace velloro
