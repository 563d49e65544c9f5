#include "Settings/Setting.h"
#include "SettingsTests/EverySetting.h"
#include "Support/Fixtures.h"

#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velloro {
namespace {

/// A line of the released list of settings.
struct Released {
  Setting::Case name = Setting::selectedTheme;
  std::string key;
  Setting::Kind kind = Setting::Kind::noOp;
  Setting::Tier tier = Setting::Tier::local;
  bool isShared = false;

  bool operator==(const Released&) const = default;
  static constexpr auto codingKeys =
      keys(platform::key("name", &Released::name), platform::key("key", &Released::key),
           platform::key("kind", &Released::kind), platform::key("tier", &Released::tier),
           platform::key("isShared", &Released::isShared));
};

TEST(SettingTest, KeepsReleasedKeysKindsAndTiers) {
  std::vector<Released> settings;
  for (const Setting& setting : everySetting()) {
    const SettingRow& row = setting.row();
    settings.push_back({setting.name, setting.key(), row.kind, row.tier, row.isShared});
    // The alternatives of a wrapper stand in the order of the kinds.
    EXPECT_EQ(setting.wrapper().index(), static_cast<std::size_t>(row.kind)) << setting.key();
  }
  expectFixture("Setting", settings);
  EXPECT_EQ(Setting(Setting::selectedFilterTheme).key(), "UITheme_Filter_Empty");
}

TEST(SettingTest, AllCasesStandInTheOrderInWhichChangesAreTold) {
  std::vector<std::string> expected;
  for (int number = 7; number <= 58; ++number) {
    const int swapped = number == 49 ? 50 : number == 50 ? 49 : number;
    expected.push_back(Setting(static_cast<Setting::Case>(swapped)).key());
  }
  for (const char* prefix : {"UITheme_", "Settings.PageHidden."}) {
    for (const char* page : {"0", "1", "2", "3"}) expected.push_back(std::string(prefix) + page);
  }
  std::vector<std::string> listed;
  for (const Setting& setting : Setting::allCases()) {
    listed.push_back(setting.key());
    const bool hasStorage = setting.name != Setting::themeAppearance;
    EXPECT_EQ(Setting::fromKey(setting.key()), hasStorage ? std::optional(setting) : std::nullopt);
  }
  EXPECT_EQ(listed, expected);
  for (const char* unlisted : {"taskFilter.displayOrder", "UITheme_4", "UITheme_User_", "?"}) {
    EXPECT_FALSE(Setting::fromKey(unlisted)) << unlisted;
  }
}

}  // namespace
}  // namespace velloro
