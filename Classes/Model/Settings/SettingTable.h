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
    {selectedTheme, "UITheme_", string, themes, true, page},
    {selectedFilterTheme, "UITheme_Filter_", string, themes, false, filter},
    {selectedWatchTheme, "UIWatchTheme_", string, local, false, page},
    {selectedThemeForUser, "UITheme_User_", string, themes, false, text},
    {taskPageIsHidden, "Settings.PageHidden.", bool_, local, true, page},
    {complicationLegacySettings, "Settings.ComplicationSettings.", codable, sync, false, text},
    {complicationSettings, "Settings.ComplicationSettings.Multi.", codable, sync, false, text},
    {imageCacheVersion, "ImageCache.Version", int_, local},
    {firstTrackedAppVersion, "first_app_version", string, local},
    {wcActiveComplications, "wc.activeComplications", codable, sync},
    {nmCurrentVersion, "NotificationManager.CurrentVersion", int_, local},
    {nmCanPromptForNotifications, "NotificationsPromptedKey", bool_, local},
    {nmTaskCountBadgeDisabled, "Settings_NotificationTaskCountBadgeDisabled", bool_, local, true},
    {nmSnoozeDuration, "NotificationSnoozeDurationKey", double_, local},
    {themeAutoSwitch, "UIThemeAutoswitch", bool_, themes, true},
    {themeAutoSwitchDarkMode, "UIThemeAutoswitchDarkMode", string, themes, true},
    {themeAutoSwitchLightMode, "UIThemeAutoswitchLightMode", string, themes, true},
    {startOfDay, "Settings_StartOfDay", int_, sync, true},
    {calendarEditInstructionDisplayed, "Settings_CalendarEditInstructionDisplayed", bool_, local},
    {yesterdayOrTodayDisabled, "NotificationYesterdayOrTodayDisabled", bool_, sync},
    {soundEffectsDisabled, "Settings_SoundEffectsDisabled", bool_, local},
    {difficultyPromptDisabled, "NotificationSuggestionsDisabled", bool_, sync},
    {grandSlamDisabled, "Settings_GrandSlamDisabled", bool_, sync, true},
    {grandSlamQualifySettings, "Settings_GrandSlamQualifySettings", codable, sync, true},
    {shakeToUndoDisabled, "Settings_ShakeToUndoDisabled", bool_, local},
    {localAuthenticationEnabled, "Settings_localAuthenticationEnabled", bool_, local, true},
    {cloudSyncTasksEnabled, "Settings_CloudSyncEnabled", bool_, local, true},
    {cloudSyncTasksAutoEnableWorkflowHasRun, "Settings_cloudAutoEnableWorflowHasRun2", bool_,
     local},
    {cloudSyncThemesDisabled, "Settings_CloudSyncThemesDisabled", bool_, local},
    {selectedTaskPage, "UISelectedTaskPage", int_, local},
    {selectedUserProfile, "UISelectedUserProfile", string, local},
    {useTransparentTheme, "UseTodayExtensionTheme", bool_, local},
    {startOfWeekSelected, "Settings_StartOfWeekSelected", bool_, sync},
    {startOfWeekDateComponent, "Settings_StartOfWeekDateComponent", int_, sync, true},
    {userHasDiscoveredSettingsPanel, "Settings_userHasDiscoveredSettingsPanel", bool_, local},
    {notificationHighlightNormalShown, "NotificationHighlightNormalShownKey", bool_, sync},
    {notificationHighlightBestShown, "NotificationHighlightBestShownKey", bool_, sync},
    {notificationHighlightPerfectShown, "NotificationHighlightPerfectShownKey", bool_, sync},
    {tutorialShown, "intro_live_02", bool_, local},
    {healthAuthorizationUpdateNeeded, "Settings_healthAuthorizationUpdateNeeded", bool_, local},
    {menuBarStyle, "Settings_MenuBarStyle", string, local},
    {macDockIconDisabled, "Settings_DockIconDisabled", bool_, local},
    {siriWatchFaceDisabledIds, "Settings_siriWatchFaceDisabledIdsCodable", codable, sync},
    {timedTaskEntries, "timed_tasks", codable, local},
    {appIcon, "UIAppIcon", string, local, true},
    {themeAppearance, "", noOp, local},
    {lastStatsTimePeriod, "Settings_StatsTimePeriod", string, sync},
    {settingsHaveMigratedToCloud, "SettingsHaveMigratedToCloud", bool_, local},
    {settingsHaveMigratedToCoreDataCloud, "SettingsHaveMigratedToCoreDataCloud", bool_, local},
    {spotlightIndexerHasCompletedInitialIndex, "SpotlightIndexer.InitialIndexCompletedKey", bool_,
     local},
    {deviceId, "sm.deviceid", string, local, true},
    {nmSilentTimerNotificationWarningDisabled,
     "NotificationManager.silentTimerNotificationDisabled", bool_, local},
    {appleWatchTimerCompleteNotificationType, "aw.timerCompleteNotificationType", string, local},
    {cloudKitErrors, "ck.errors", codable, local},
    {taskFilterDisplayMode, "taskFilter.displayMode", string, local},
    {taskFilterPageIsShowing, "taskFilter.showing", bool_, local},
    {taskFilterManual, "taskFilter.manual", codable, local},
    {taskFilterAuto, "taskFilter.auto", codable, local},
    {taskFilterAutoIsShowing, "taskFilter.auto.showing", bool_, local},
    {taskFilterDisplayOrder, "taskFilter.displayOrder", string, local},
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
