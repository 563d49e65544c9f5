#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <type_traits>

namespace velloro {

// All that is known of each setting, in one table. Logic knows these types by their names in
// `Setting`: `Setting::Case`, `Setting::Kind`, `Setting::Tier`.

enum class SettingCase : std::uint8_t {
  selectedTheme,
  selectedFilterTheme,
  selectedWatchTheme,
  selectedThemeForUser,
  taskPageIsHidden,
  complicationLegacySettings,
  complicationSettings,
  imageCacheVersion,
  firstTrackedAppVersion,
  wcActiveComplications,
  nmCurrentVersion,
  nmCanPromptForNotifications,
  nmTaskCountBadgeDisabled,
  nmSnoozeDuration,
  themeAutoSwitch,
  themeAutoSwitchDarkMode,
  themeAutoSwitchLightMode,
  startOfDay,
  calendarEditInstructionDisplayed,
  yesterdayOrTodayDisabled,
  soundEffectsDisabled,
  difficultyPromptDisabled,
  grandSlamDisabled,
  grandSlamQualifySettings,
  shakeToUndoDisabled,
  localAuthenticationEnabled,
  cloudSyncTasksEnabled,
  cloudSyncTasksAutoEnableWorkflowHasRun,
  cloudSyncThemesDisabled,
  selectedTaskPage,
  selectedUserProfile,
  useTransparentTheme,
  startOfWeekSelected,
  startOfWeekDateComponent,
  userHasDiscoveredSettingsPanel,
  notificationHighlightNormalShown,
  notificationHighlightBestShown,
  notificationHighlightPerfectShown,
  tutorialShown,
  healthAuthorizationUpdateNeeded,
  menuBarStyle,
  macDockIconDisabled,
  siriWatchFaceDisabledIds,
  timedTaskEntries,
  appIcon,
  themeAppearance,
  lastStatsTimePeriod,
  settingsHaveMigratedToCloud,
  settingsHaveMigratedToCoreDataCloud,
  spotlightIndexerHasCompletedInitialIndex,
  deviceId,
  nmSilentTimerNotificationWarningDisabled,
  appleWatchTimerCompleteNotificationType,
  cloudKitErrors,
  taskFilterDisplayMode,
  taskFilterPageIsShowing,
  taskFilterManual,
  taskFilterAuto,
  taskFilterAutoIsShowing,
  taskFilterDisplayOrder
};

constexpr auto rawValues(std::type_identity<SettingCase>) {
  return caseNames<SettingCase::taskFilterDisplayOrder>();
}

/// What a setting holds; the raw value is the name of the wrapper in `Setting`. A `codable` holds
/// whatever record its owner stores, as its JSON; a `noOp` holds nothing.
enum class SettingKind : std::uint8_t { bool_, string, int_, double_, codable, noOp };

constexpr auto rawValues(std::type_identity<SettingKind>) {
  using enum SettingKind;
  return rawTexts<SettingKind>({{bool_, "BoolSetting"},
                                {string, "StringSetting"},
                                {int_, "IntSetting"},
                                {double_, "DoubleSetting"},
                                {codable, "CodableSetting"},
                                {noOp, "NoOpSetting"}});
}

/// When a setting is cloud-stored, that is, kept in the tier which all of a person's devices share:
/// never, always, while tasks are, or while themes are. See `isCloudStored`.
enum class SettingTier : std::uint8_t { local, always, sync, themes };

constexpr auto rawValues(std::type_identity<SettingTier>) {
  return caseNames<SettingTier::themes>();
}

/// Whether a setting of a tier is cloud-stored, by what the user chose.
[[nodiscard]] constexpr bool isCloudStored(SettingTier tier, bool cloudSyncTasksEnabled,
                                           bool cloudSyncThemesDisabled) {
  switch (tier) {
    using enum SettingTier;
    case local:
      return false;
    case always:
      return true;
    case sync:
      return cloudSyncTasksEnabled;
    case themes:
      return cloudSyncTasksEnabled && !cloudSyncThemesDisabled;
  }
  return false;
}

/// What follows the key of the table: nothing, the page's number, the filter's identity or "Empty",
/// or a text.
enum class SettingPayload : std::uint8_t { none, page, filter, text };

struct SettingRow {
  SettingCase value;
  std::string_view key;
  SettingKind kind;
  SettingTier tier;
  std::string_view description;  ///< One sentence.
  std::string_view fallback;     ///< What holds where nothing is stored, in words.
  /// Whether it exists a second time in the suite that the application and its extensions share, so
  /// that an extension can read it without the object store.
  bool isShared = false;
  SettingPayload payload = SettingPayload::none;
};

namespace setting_detail {
using enum SettingCase;
using enum SettingKind;
using enum SettingTier;
using enum SettingPayload;

// A key, once released, never changes: it is part of files and stores.
inline constexpr SettingRow rows[] = {
    {selectedTheme, "UITheme_", string, themes, "The theme of a page of tasks.",
     "the page's own theme", true, page},
    {selectedFilterTheme, "UITheme_Filter_", string, themes,
     "The theme of the tasks that a filter shows.", "none", false, filter},
    {selectedWatchTheme, "UIWatchTheme_", string, local,
     "The theme of a page of tasks on the watch.", "none", false, page},
    {selectedThemeForUser, "UITheme_User_", string, themes, "The theme of a user profile.", "none",
     false, text},
    {taskPageIsHidden, "Settings.PageHidden.", bool_, local, "Whether a page of tasks is hidden.",
     "false", true, page},
    {complicationLegacySettings, "Settings.ComplicationSettings.", codable, sync,
     "What a family of watch complications shows, in the older form.", "none", false, text},
    {complicationSettings, "Settings.ComplicationSettings.Multi.", codable, sync,
     "What a family of watch complications shows.", "none", false, text},
    {imageCacheVersion, "ImageCache.Version", int_, local,
     "The version of the images in the image cache.", "0"},
    {firstTrackedAppVersion, "first_app_version", string, local,
     "The version of the program that was used first.", "none"},
    {wcActiveComplications, "wc.activeComplications", codable, sync,
     "The complications that are shown on the watch.", "none"},
    {nmCurrentVersion, "NotificationManager.CurrentVersion", int_, local,
     "The version of the planned notifications.", "0"},
    {nmCanPromptForNotifications, "NotificationsPromptedKey", bool_, local,
     "Whether the user may be asked to allow notifications.", "false"},
    {nmTaskCountBadgeDisabled, "Settings_NotificationTaskCountBadgeDisabled", bool_, local,
     "Turns off the badge with the number of open tasks.", "false", true},
    {nmSnoozeDuration, "NotificationSnoozeDurationKey", double_, local,
     "How long a reminder is put off, in seconds.", "0"},
    {themeAutoSwitch, "UIThemeAutoswitch", bool_, themes,
     "Whether the mode of the themes follows that of the screen.", "false", true},
    {themeAutoSwitchDarkMode, "UIThemeAutoswitchDarkMode", string, themes,
     "The mode of the themes while the screen is dark.", "none", true},
    {themeAutoSwitchLightMode, "UIThemeAutoswitchLightMode", string, themes,
     "The mode of the themes while the screen is light.", "none", true},
    {startOfDay, "Settings_StartOfDay", int_, sync, "When a day begins, in seconds since midnight.",
     "0", true},
    {calendarEditInstructionDisplayed, "Settings_CalendarEditInstructionDisplayed", bool_, local,
     "Whether the hint on editing in the calendar was shown.", "false"},
    {yesterdayOrTodayDisabled, "NotificationYesterdayOrTodayDisabled", bool_, sync,
     "Turns off the question whether an entry is for yesterday or today.", "false"},
    {soundEffectsDisabled, "Settings_SoundEffectsDisabled", bool_, local,
     "Turns off sound effects.", "false"},
    {difficultyPromptDisabled, "NotificationSuggestionsDisabled", bool_, sync,
     "Turns off advice on how difficult a task is.", "false"},
    {grandSlamDisabled, "Settings_GrandSlamDisabled", bool_, sync,
     "Turns off the celebration of a day on which every task is completed.", "false", true},
    {grandSlamQualifySettings, "Settings_GrandSlamQualifySettings", codable, sync,
     "Which tasks count for a day on which every task is completed.", "none", true},
    {shakeToUndoDisabled, "Settings_ShakeToUndoDisabled", bool_, local,
     "Turns off undoing by shaking the device.", "false"},
    {localAuthenticationEnabled, "Settings_localAuthenticationEnabled", bool_, local,
     "Whether the program is locked until the device recognises its user.", "false", true},
    {cloudSyncTasksEnabled, "Settings_CloudSyncEnabled", bool_, local,
     "Whether tasks live in the store that all devices share.",
     "false until the first run of the application, which sets true", true},
    {cloudSyncTasksAutoEnableWorkflowHasRun, "Settings_cloudAutoEnableWorflowHasRun2", bool_, local,
     "Whether the first run has chosen the store.", "false"},
    {cloudSyncThemesDisabled, "Settings_CloudSyncThemesDisabled", bool_, local,
     "Keeps themes on this device while tasks are shared.", "false"},
    {selectedTaskPage, "UISelectedTaskPage", int_, local, "The page of tasks that is shown.", "0"},
    {selectedUserProfile, "UISelectedUserProfile", string, local,
     "The user profile whose tasks are shown.", "none"},
    {useTransparentTheme, "UseTodayExtensionTheme", bool_, local,
     "Whether the widget is drawn on a transparent background.", "false"},
    {startOfWeekSelected, "Settings_StartOfWeekSelected", bool_, sync,
     "Whether the user has chosen the first day of the week.", "false"},
    {startOfWeekDateComponent, "Settings_StartOfWeekDateComponent", int_, sync,
     "The chosen first day of the week, from 1 for Sunday to 7 for Saturday.", "that of the locale",
     true},
    {userHasDiscoveredSettingsPanel, "Settings_userHasDiscoveredSettingsPanel", bool_, local,
     "Whether the user has found the settings.", "false"},
    {notificationHighlightNormalShown, "NotificationHighlightNormalShownKey", bool_, sync,
     "Whether the hint on a streak was shown.", "false"},
    {notificationHighlightBestShown, "NotificationHighlightBestShownKey", bool_, sync,
     "Whether the hint on a best streak was shown.", "false"},
    {notificationHighlightPerfectShown, "NotificationHighlightPerfectShownKey", bool_, sync,
     "Whether the hint on a perfect streak was shown.", "false"},
    {tutorialShown, "intro_live_02", bool_, local, "Whether the introduction was shown.", "false"},
    {healthAuthorizationUpdateNeeded, "Settings_healthAuthorizationUpdateNeeded", bool_, local,
     "Whether permission to read health data must be asked for again.", "false"},
    {menuBarStyle, "Settings_MenuBarStyle", string, local, "What the menu bar shows.", "none"},
    {macDockIconDisabled, "Settings_DockIconDisabled", bool_, local, "Hides the icon in the dock.",
     "false"},
    {siriWatchFaceDisabledIds, "Settings_siriWatchFaceDisabledIdsCodable", codable, sync,
     "The tasks that the assistant's watch face leaves out.", "none"},
    {timedTaskEntries, "timed_tasks", codable, local, "The timers that are running.", "none"},
    {appIcon, "UIAppIcon", string, local, "The icon of the program.", "none", true},
    {themeAppearance, "", noOp, local, "The appearance of the themes, of which nothing is stored.",
     "none"},
    {lastStatsTimePeriod, "Settings_StatsTimePeriod", string, sync,
     "The period for which statistics were shown last.", "none"},
    {settingsHaveMigratedToCloud, "SettingsHaveMigratedToCloud", bool_, local,
     "Whether settings were moved to the older cloud store.", "false"},
    {settingsHaveMigratedToCoreDataCloud, "SettingsHaveMigratedToCoreDataCloud", bool_, local,
     "Whether settings were moved to the shared store.", "false"},
    {spotlightIndexerHasCompletedInitialIndex, "SpotlightIndexer.InitialIndexCompletedKey", bool_,
     local, "Whether all tasks have been indexed for searching.", "false"},
    {deviceId, "sm.deviceid", string, local, "The identifier of this device.", "none", true},
    {nmSilentTimerNotificationWarningDisabled,
     "NotificationManager.silentTimerNotificationDisabled", bool_, local,
     "Turns off the warning that notifications of timers make no sound.", "false"},
    {appleWatchTimerCompleteNotificationType, "aw.timerCompleteNotificationType", string, local,
     "How the watch signals that a timer has finished.", "none"},
    {cloudKitErrors, "ck.errors", codable, local, "The latest errors of the shared store's mirror.",
     "none"},
    {taskFilterDisplayMode, "taskFilter.displayMode", string, local, "How task filters are shown.",
     "none"},
    {taskFilterPageIsShowing, "taskFilter.showing", bool_, local,
     "Whether the page of task filters is shown.", "false"},
    {taskFilterManual, "taskFilter.manual", codable, local,
     "The task filters that the user has made.", "none"},
    {taskFilterAuto, "taskFilter.auto", codable, local,
     "The task filters that are made automatically.", "none"},
    {taskFilterAutoIsShowing, "taskFilter.auto.showing", bool_, local,
     "Whether automatic task filters are shown.", "false"},
    {taskFilterDisplayOrder, "taskFilter.displayOrder", string, local,
     "The order in which task filters are shown.", "none"},
};

consteval bool inOrder() {
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    if (static_cast<std::size_t>(rows[i].value) != i) return false;
  }
  return std::size(rows) == allCases<SettingCase>().size();
}
static_assert(inOrder(), "every case has its row, in the order of the cases");
}  // namespace setting_detail

[[nodiscard]] constexpr const SettingRow& settingRowOf(SettingCase setting) {
  return setting_detail::rows[static_cast<std::size_t>(setting)];
}

}  // namespace velloro
