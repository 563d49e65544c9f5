#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Settings/Settings.h"
#include "Settings/SettingsStorageLocal.h"
#include "Support/Fixtures.h"
#include "Support/Processes.h"

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velloro {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

class SettingsTest : public ::testing::Test {
 protected:
  [[nodiscard]] static SettingsStorage storage(bool isExtension = false) {
    return {{.localStorage = std::make_shared<SettingsStorageLocal>(),
             .localSharedStorage = SettingsStorageLocalShared::open()},
            isExtension};
  }
  static NSUserDefaults standard() { return NSUserDefaults::standardUserDefaults(); }
  static NSUserDefaults suite() {
    return NSUserDefaults::initWithSuiteName("group.velloro.app.today").value();
  }

  VirtualEnvironment environment_;
};

TEST_F(SettingsTest, ReadsWhatIsStoredAndTheDefaultOfWhatMakesNoSense) {
  SettingsStorage stored = storage();
  const TaskPageNumber second{1};
  const Theme byDefault = Theme::defaultTheme(second);
  const auto expectDefaults = [&] {
    const Settings settings(stored);
    EXPECT_EQ(settings.startOfDay(), HHMMSS::midnight);
    EXPECT_EQ(settings.firstDayOfWeek(), DayOfWeek::sunday);
    EXPECT_TRUE(settings.taskCountBadgeEnabled());
    EXPECT_EQ(settings.snoozeDuration(), 0);
    EXPECT_EQ(settings.theme(second), byDefault);
    EXPECT_FALSE(settings.themeAutoSwitch());
    EXPECT_FALSE(settings.themeAutoSwitchDarkMode());
    EXPECT_FALSE(settings.themeAutoSwitchLightMode());
    EXPECT_THAT(settings.cloudKitErrors(), SizeIs(0));
  };
  expectDefaults();
  standard().setObjects({{"Settings_StartOfDay", 86400},
                         {"Settings_StartOfWeekSelected", "Yes"},
                         {"Settings_StartOfWeekDateComponent", "Monday"},
                         {"Settings_NotificationTaskCountBadgeDisabled", PropertyList::Array{1}},
                         {"NotificationSnoozeDurationKey", Data("1")},
                         {"UITheme_1", "ultraviolet.white"},
                         {"UIThemeAutoswitch", "perhaps"},
                         {"UIThemeAutoswitchDarkMode", "pink"},
                         {"UIThemeAutoswitchLightMode", 1},
                         {"ck.errors", Data("[{\"date\":1}]")}});
  expectDefaults();

  const Theme chosen{.colorScheme = ColorScheme::navy, .mode = ThemeMode::black};
  standard().setObjects({{"Settings_StartOfDay", 14400},
                         {"Settings_StartOfWeekDateComponent", 7},
                         {"Settings_NotificationTaskCountBadgeDisabled", true},
                         {"NotificationSnoozeDurationKey", 90.5},
                         {"UITheme_1", chosen.stringValue()},
                         {"UIThemeAutoswitch", true},
                         {"UIThemeAutoswitchDarkMode", "black"},
                         {"UIThemeAutoswitchLightMode", "white"}});
  const Settings settings(stored);
  EXPECT_EQ(settings.startOfDay(), HHMMSS{.h = 4});
  EXPECT_EQ(settings.firstDayOfWeek(), DayOfWeek::saturday);
  EXPECT_FALSE(settings.taskCountBadgeEnabled());
  EXPECT_EQ(settings.snoozeDuration(), 90.5);
  EXPECT_EQ(settings.theme(second), chosen);
  EXPECT_TRUE(settings.themeAutoSwitch());
  EXPECT_EQ(settings.themeAutoSwitchDarkMode(), ThemeMode::black);
  EXPECT_EQ(settings.themeAutoSwitchLightMode(), ThemeMode::white);
}

TEST_F(SettingsTest, TheFirstDayOfWeekIsTheChosenOneOrThatOfTheLocale) {
  environment_.setLocale("de_DE");
  // the application's choice, its day, the shared day; the application's first day, an extension's
  const std::tuple<bool, int, int, DayOfWeek, DayOfWeek> cases[] = {
      {false, 4, 0, DayOfWeek::monday, DayOfWeek::monday},
      {false, 0, 4, DayOfWeek::monday, DayOfWeek::wednesday},
      {true, 1, 7, DayOfWeek::sunday, DayOfWeek::saturday},
      {true, 8, 0, DayOfWeek::monday, DayOfWeek::monday},
      {true, 0, -1, DayOfWeek::monday, DayOfWeek::monday}};
  for (const auto& [isChosen, day, sharedDay, inApplication, inExtension] : cases) {
    standard().setObjects(
        {{"Settings_StartOfWeekSelected", isChosen}, {"Settings_StartOfWeekDateComponent", day}});
    suite().setObject(sharedDay, "Settings_StartOfWeekDateComponent");
    for (const bool isExtension : {false, true}) {
      SettingsStorage stored = storage(isExtension);
      EXPECT_EQ(Settings(stored).firstDayOfWeek(), isExtension ? inExtension : inApplication)
          << isChosen << day << sharedDay;
    }
  }
}

TEST_F(SettingsTest, WhatIsKeptInMemoryFollowsTheNotification) {
  SettingsStorage stored = storage();
  const Settings settings(stored);
  stored.setInteger(3600, Setting::startOfDay);
  EXPECT_EQ(settings.startOfDay(), HHMMSS{.h = 1});
  stored.setInteger(2, Setting::startOfWeekDateComponent);
  stored.setBoolean(true, Setting::startOfWeekSelected);
  EXPECT_EQ(settings.firstDayOfWeek(), DayOfWeek::monday);
  stored.setInteger(5, Setting::startOfWeekDateComponent);
  EXPECT_EQ(settings.firstDayOfWeek(), DayOfWeek::thursday);

  stored.setInteger(7200, Setting::startOfDay, /*silent=*/true);
  const auto& center = NSNotificationCenter::defaultCenter();
  center.post({.name = "Settings.SettingsChanged"});
  center.post({.name = "Settings.SettingsChanged", .userInfo = {{"settingNamesKey", 5}}});
  stored.setBoolean(true, Setting::themeAutoSwitch);
  EXPECT_EQ(settings.startOfDay(), HHMMSS{.h = 1});
  center.post({.name = "Settings.SettingsChanged",
               .userInfo = {{"settingNamesKey", std::vector<Setting>{Setting::startOfDay}}}});
  EXPECT_EQ(settings.startOfDay(), HHMMSS{.h = 2});
}

TEST_F(SettingsTest, KeepsTheNewestTenMirrorErrorsOfTwelveHours) {
  SettingsStorage stored = storage();
  Settings settings(stored);
  environment_.setNow(Date::fromISO8601("2024-03-07T12:00:00Z").value());
  settings.recordCloudKitError(Error("CKErrorDomain", 3, "The network is away."));
  environment_.advance(43199);
  settings.recordCloudKitError(Error("POSIX", 28, "The disk is full."));
  ASSERT_THAT(settings.cloudKitErrors(), SizeIs(2));
  expectFixture("CloudKitErrorDescriptor", settings.cloudKitErrors());

  environment_.advance(1);
  for (int code = 0; code < 9; ++code) {
    settings.recordCloudKitError(Error("POSIX", code, "again"));
    environment_.advance(1);
  }
  ASSERT_THAT(settings.cloudKitErrors(), SizeIs(10));  // the first has grown too old
  EXPECT_EQ(settings.cloudKitErrors().back().str, "The disk is full.");
  settings.recordCloudKitError(Error("POSIX", 9, "again"));
  const auto kept = settings.cloudKitErrors();
  ASSERT_THAT(kept, SizeIs(10));
  for (int i = 0; i < 10; ++i) EXPECT_EQ(kept[static_cast<std::size_t>(i)].nsErrorCode, 9 - i);
}

TEST_F(SettingsTest, AnExtensionSeesWhatTheApplicationSets) {
  const TaskPageNumber page{3};
  const auto inProcess = [this](const char* identifier, const auto& work) {
    EXPECT_TRUE(endedWell(startProcess([&] {
      environment_.setBundle({.identifier = identifier});
      work(SettingsStorage::shared());
    })));
  };
  inProcess("velloro.app", [&](SettingsStorage& shared) {
    shared.setString("navy.white", Setting::StringSetting({Setting::selectedTheme, page}));
    shared.setInteger(5400, Setting::startOfDay);
    shared.setBoolean(true, Setting::nmTaskCountBadgeDisabled);
    shared.setReal(600, Setting::nmSnoozeDuration);
    EXPECT_EQ(Settings::shared().snoozeDuration(), 600);
  });
  inProcess("velloro.app.notification", [&](SettingsStorage& shared) {
    EXPECT_TRUE(shared.isExtension());
    const Settings& settings = Settings::shared();
    EXPECT_EQ(settings.theme(page).stringValue(), "navy.white");
    EXPECT_EQ(settings.startOfDay(), (HHMMSS{.h = 1, .m = 30}));
    EXPECT_FALSE(settings.taskCountBadgeEnabled());
    EXPECT_EQ(settings.snoozeDuration(), 0);  // not shared
  });
}

}  // namespace
}  // namespace velloro
