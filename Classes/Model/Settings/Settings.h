#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Values/Error.h"
#include "Foundation/Values/Hasher.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "Settings/SettingsStorage.h"
#include "VelloroCore/Appearance/Theme.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// The settings that the rest of the logic asks for, as what they mean. A stored value that means
/// nothing reads as the default.
///
///     settings.startOfDay();                        // HHMMSS::midnight
///     settings.theme(TaskPageNumber::first).color();
class Settings {
 public:
  /// A failure of the store's mirror, as it is kept.
  struct CloudKitErrorDescriptor {
    Date date;
    std::string str;                          ///< The error's text.
    std::optional<std::int64_t> ckErrorCode;  ///< Of an error of the cloud service, and then alone.
    std::optional<std::int64_t> nsErrorCode;
    std::optional<std::string> nsErrorDomain;

    bool operator==(const CloudKitErrorDescriptor&) const = default;
    static constexpr auto codingKeys =
        keys(key("date", &CloudKitErrorDescriptor::date), key("str", &CloudKitErrorDescriptor::str),
             key("ckErrorCode", &CloudKitErrorDescriptor::ckErrorCode),
             key("nsErrorCode", &CloudKitErrorDescriptor::nsErrorCode),
             key("nsErrorDomain", &CloudKitErrorDescriptor::nsErrorDomain));
  };

  /// The process's own, over `SettingsStorage::shared`.
  [[nodiscard]] static Settings& shared();
  /// \param storage Must outlive this.
  explicit Settings(SettingsStorage& storage);
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  // These two are kept in memory until `settingsChangedNotification` tells of a change, or
  // `reload`.
  /// When a day begins for tasks that don't say it themselves; midnight by default.
  [[nodiscard]] HHMMSS startOfDay() const {
    return HHMMSS::fromIntValue(cachedStartOfDay_).value_or(HHMMSS::midnight);
  }
  /// The one that the user has chosen, else that of the device's locale.
  [[nodiscard]] DayOfWeek firstDayOfWeek() const { return cachedFirstDayOfWeek_; }

  /// Looks again at what is kept in memory: another process may have changed it.
  void reload();

  [[nodiscard]] bool taskCountBadgeEnabled() const;
  /// In seconds; 0 when none was chosen.
  [[nodiscard]] TimeInterval snoozeDuration() const;

  /// The theme chosen for a page, else its default one.
  [[nodiscard]] Theme theme(TaskPageNumber pageNumber) const;
  /// Whether a theme's mode follows the screen's, dark or light.
  [[nodiscard]] bool themeAutoSwitch() const;
  [[nodiscard]] std::optional<ThemeMode> themeAutoSwitchDarkMode() const;
  [[nodiscard]] std::optional<ThemeMode> themeAutoSwitchLightMode() const;

  /// Keeps an error of the mirror: the newest ten of the last twelve hours stay.
  void recordCloudKitError(const Error& error);
  /// Those that are kept, newest first.
  [[nodiscard]] std::vector<CloudKitErrorDescriptor> cloudKitErrors() const;

 private:
  void settingsChanged(const Notification& notification);
  void reloadStartOfDay();
  void reloadFirstDayOfWeek();

  SettingsStorage& storage_;
  std::atomic<std::int64_t> cachedStartOfDay_ = 0;  // its seconds
  std::atomic<DayOfWeek> cachedFirstDayOfWeek_ = DayOfWeek::sunday;
  NSNotificationCenter::Token observer_;
};

}  // namespace velloro
