#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "HelperClasses/DictionaryCoder.h"
#include "OxLog/LogManager.h"
#include "Settings/SettingsStorage.h"
#include "Settings/SettingsStorageLegacyCloud.h"
#include "SettingsTests/EverySetting.h"
#include "SettingsTests/MemoryStorage.h"

#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velloro {
namespace {

using ::testing::IsEmpty;
using Numbers = std::vector<int>;

/// One state of the switches in one kind of process.
struct World {
  bool isExtension = false;
  bool hasSuite = false;
  bool tasksEnabled = false;
  bool themesDisabled = false;
};

void forEachWorld(const std::function<void(const World&)>& visit) {
  for (unsigned bits = 0; bits < 16; ++bits) {
    visit({(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0});
  }
}

/// The rules as one tells them, over the numbers of the cases. Tiers are letters: 'l' for local,
/// 's' for the shared suite, 'c' for the cloud.
struct Rules {
  const World& world;
  int number = 0;

  [[nodiscard]] std::string ownTier() const {
    static const std::set sync{5, 6, 9, 17, 19, 21, 22, 23, 32, 33, 35, 36, 37, 42, 46};
    static const std::set themes{0, 1, 3, 14, 15, 16};
    if (!world.tasksEnabled) return "l";
    // Which themes a user keeps to one device is nothing that an extension can see.
    const bool themesDisabled = world.themesDisabled && !world.isExtension;
    return sync.contains(number) || (themes.contains(number) && !themesDisabled) ? "c" : "l";
  }
  [[nodiscard]] std::string copyTier() const { return world.hasSuite ? "s" : "l"; }
  /// Where a read looks, one after the other.
  [[nodiscard]] std::string sources(Setting::Kind kind) const {
    using enum Setting::Kind;
    if (kind == noOp) return "";
    if (!world.isExtension || kind == double_) return ownTier();
    const bool isListed = number <= 50 && ((0x4100206C3D011 >> number) & 1) != 0;
    const std::string shared = isListed && world.hasSuite ? "s" : "";
    return kind == bool_ || kind == int_ ? shared : shared + ownTier();
  }
};

/// Three tiers in which the switches stand as a world has them, but for a switch that is itself
/// tried.
struct Tiers {
  explicit Tiers(const World& world, Setting::Case tried)
      : storage({.localStorage = local,
                 .localSharedStorage = world.hasSuite ? shared : nullptr,
                 .cloudStorage = cloud},
                world.isExtension) {
    const bool readsSuite = world.isExtension && world.hasSuite;
    if (tried != Setting::cloudSyncTasksEnabled) {
      local->setBool(world.tasksEnabled != readsSuite, "Settings_CloudSyncEnabled");
      shared->setBool(world.tasksEnabled == readsSuite, "Settings_CloudSyncEnabled");
    }
    if (tried != Setting::cloudSyncThemesDisabled) {
      local->setBool(world.themesDisabled, "Settings_CloudSyncThemesDisabled");
    }
  }

  [[nodiscard]] std::shared_ptr<MemoryStorage> tier(char letter) const {
    return letter == 'l' ? local : letter == 's' ? shared : cloud;
  }
  [[nodiscard]] std::set<std::string> holders(const std::string& key) const {
    std::set<std::string> letters;
    for (const char letter : {'l', 's', 'c'}) {
      if (tier(letter)->holds(key)) letters.emplace(1, letter);
    }
    return letters;
  }

  std::shared_ptr<MemoryStorage> local = std::make_shared<MemoryStorage>();
  std::shared_ptr<MemoryStorage> shared = std::make_shared<MemoryStorage>();
  std::shared_ptr<MemoryStorage> cloud = std::make_shared<MemoryStorage>();
  SettingsStorage storage;
};

/// The tier that a read's value tells; "?" for a Boolean that is true, and empty for no value.
struct Source {
  const SettingsStorage& storage;

  static std::string told(char letter) { return letter == 0 ? "" : std::string(1, letter); }
  std::string operator()(const Setting::BoolSetting& s) const {
    return storage.boolean(s) ? "?" : "";
  }
  std::string operator()(const Setting::IntSetting& s) const {
    return told(static_cast<char>(storage.integer(s)));
  }
  std::string operator()(const Setting::DoubleSetting& s) const {
    return told(static_cast<char>(storage.real(s)));
  }
  std::string operator()(const Setting::StringSetting& s) const {
    return storage.string(s).value_or("");
  }
  std::string operator()(const Setting::CodableSetting& s) const {
    const auto numbers = storage.codable<Numbers>(s).value_or(Numbers{0});
    return told(static_cast<char>(numbers.at(0)));
  }
  std::string operator()(const Setting::NoOpSetting&) const { return ""; }
};

/// Writes a value that tells the letter, or true.
struct Write {
  SettingsStorage& storage;
  char letter = '?';

  bool operator()(const Setting::BoolSetting& s) { return storage.setBoolean(true, s); }
  bool operator()(const Setting::IntSetting& s) { return storage.setInteger(letter, s); }
  bool operator()(const Setting::DoubleSetting& s) { return storage.setReal(letter, s); }
  bool operator()(const Setting::StringSetting& s) {
    return storage.setString(std::string(1, letter), s);
  }
  bool operator()(const Setting::CodableSetting& s) {
    return storage.setCodable(std::optional(Numbers{letter}), s);
  }
  bool operator()(const Setting::NoOpSetting&) { return false; }
};

bool isSwitch(const Setting& setting) {
  return setting.name == Setting::cloudSyncTasksEnabled ||
         setting.name == Setting::cloudSyncThemesDisabled;
}

TEST(SettingsStorageTest, EverySettingIsReadWhereTheRulesSay) {
  forEachWorld([](const World& world) {
    for (const Setting& setting : everySetting()) {
      if (isSwitch(setting) && (world.tasksEnabled || world.themesDisabled)) continue;
      const auto kind = setting.row().kind;
      const auto sources = Rules{world, static_cast<int>(setting.name)}.sources(kind);
      const Tiers all(world, setting.name);
      for (const char letter : {'l', 's', 'c'}) {
        const Tiers one(world, setting.name);
        for (const Tiers* tiers : {&one, &all}) {
          SettingsStorage alone({.localStorage = tiers->tier(letter)}, /*isExtension=*/false);
          std::visit(Write{alone, letter}, setting.wrapper());
        }
        const bool isSeen = !std::visit(Source{one.storage}, setting.wrapper()).empty();
        EXPECT_EQ(isSeen, sources.contains(letter)) << setting.key() << " in " << letter;
      }
      const std::string seen = std::visit(Source{all.storage}, setting.wrapper());
      const std::string first = sources.substr(0, 1);
      EXPECT_EQ(seen, kind == Setting::Kind::bool_ && !first.empty() ? "?" : first)
          << setting.key();
    }
  });
}

TEST(SettingsStorageTest, AWriteIsCopiedForExtensionsAndToldOnce) {
  std::vector<Setting> told;
  const auto token = NSNotificationCenter::defaultCenter().addObserver(
      "Settings.SettingsChanged", [&](const Notification& notification) {
        const auto* settings = notification.value<std::vector<Setting>>("settingNamesKey");
        ASSERT_NE(settings, nullptr);
        told.insert(told.end(), settings->begin(), settings->end());
      });
  forEachWorld([&](const World& world) {
    for (const Setting& setting : everySetting()) {
      const bool isStored = setting.name != Setting::themeAppearance;
      if (isSwitch(setting) && (world.tasksEnabled || world.themesDisabled)) continue;
      Tiers tiers(world, setting.name);
      told.clear();
      EXPECT_EQ(std::visit(Write{tiers.storage}, setting.wrapper()), isStored);
      EXPECT_FALSE(std::visit(Write{tiers.storage}, setting.wrapper())) << setting.key();
      EXPECT_EQ(told, isStored ? std::vector{setting} : std::vector<Setting>{});

      const Rules rules{world, static_cast<int>(setting.name)};
      const std::set holders{rules.ownTier(), rules.copyTier()};
      EXPECT_EQ(tiers.holders(setting.key()), isStored ? holders : std::set<std::string>{})
          << setting.key();
    }
  });
  told.clear();
  Tiers tiers(World{}, Setting::startOfDay);
  EXPECT_TRUE(tiers.storage.setInteger(1, Setting::startOfDay, /*silent=*/true));
  EXPECT_THAT(told, IsEmpty());
}

TEST(SettingsStorageTest, AbsenceRemovesAndWhatJSONCannotHoldChangesNothing) {
  const VirtualEnvironment environment;
  Tiers tiers({.hasSuite = true}, Setting::appIcon);
  SettingsStorage& storage = tiers.storage;
  storage.setString("blue", Setting::appIcon);
  storage.setCodable(std::optional(std::vector{1.5}), Setting::taskFilterAuto);
  EXPECT_FALSE(
      storage.setCodable(std::optional(std::vector{std::nan("")}), Setting::taskFilterAuto));
  EXPECT_EQ(storage.codable<std::vector<double>>(Setting::taskFilterAuto), std::vector{1.5});
  EXPECT_FALSE(storage.codable<std::string>(Setting::taskFilterAuto));
  EXPECT_TRUE(storage.setString(std::nullopt, Setting::appIcon));
  EXPECT_TRUE(storage.setCodable<Numbers>(std::nullopt, Setting::taskFilterAuto));
  EXPECT_THAT(tiers.holders("UIAppIcon"), IsEmpty());
  EXPECT_THAT(tiers.holders("taskFilter.auto"), IsEmpty());
  LogManager::shared().flush();  // of the value that was refused; the log's thread ends with it
}

// Each step is one that a person may take in the application; after it, both read the same.
TEST(SettingsStorageTest, ApplicationAndExtensionsAgreeWhereverSettingsLive) {
  Tiers tiers({.hasSuite = true, .tasksEnabled = true}, Setting::startOfDay);
  SettingsStorage& application = tiers.storage;
  const SettingsStorage extension(
      {std::make_shared<MemoryStorage>(), tiers.shared, tiers.cloud, nullptr}, true);
  const auto values = [](const SettingsStorage& storage) {
    std::map<std::string, std::string> read;
    for (const Setting& setting : Setting::allCases()) {
      if (setting.row().isShared && !isSwitch(setting)) {
        read[setting.key()] = std::visit(Source{storage}, setting.wrapper());
      }
    }
    return read;
  };
  const auto setAll = [&](char letter) {
    for (const Setting& setting : Setting::allCases()) {
      if (!isSwitch(setting)) std::visit(Write{application, letter}, setting.wrapper());
    }
  };
  application.shareAgain();
  using enum SettingCase;
  const std::vector<std::pair<SettingCase, bool>> steps = {
      {cloudSyncTasksEnabled, false},  {cloudSyncTasksEnabled, true},
      {cloudSyncThemesDisabled, true}, {cloudSyncThemesDisabled, false},
      {cloudSyncThemesDisabled, true}, {cloudSyncTasksEnabled, false}};
  for (const auto& [tierSwitch, value] : steps) {
    const Setting::BoolSetting chosen{Setting(tierSwitch)};
    setAll(value ? 'a' : 'b');
    const auto before = values(application);
    EXPECT_EQ(values(extension), before);
    EXPECT_TRUE(application.changeTiers(value, chosen));
    EXPECT_EQ(values(extension), values(application));
    const bool isLocal = !application.isCloudStored(Setting::startOfDay);
    EXPECT_TRUE(!isLocal || values(application) == before) << "nothing reads otherwise";
    setAll('c');
    application.setString(std::nullopt, Setting::themeAutoSwitchDarkMode);
    EXPECT_EQ(values(extension), values(application));
    application.setBoolean(!value, chosen);  // without taking anything along
    EXPECT_EQ(values(extension), values(application));
    application.setBoolean(value, chosen);
  }
  tiers.cloud->setString("elsewhere", "UITheme_1");
  tiers.shared->setInteger(5, "Settings_StartOfDay");
  application.shareAgain();
  EXPECT_EQ(values(extension), values(application));
}

struct Killed {};

/// Whoever writes several values together is killed right after.
struct DeadlyStorage : MemoryStorage {
  bool kills = true;

  Result<void> writeTogether(const std::function<void()>& writes) override {
    writes();
    if (kills) throw Killed();
    return {};
  }
};

TEST(SettingsStorageTest, WhatAKilledSwitchHasCopiedIsNoValueOfTheCloud) {
  const auto local = std::make_shared<MemoryStorage>();
  const auto cloud = std::make_shared<DeadlyStorage>();
  SettingsStorage storage({.localStorage = local, .cloudStorage = cloud}, /*isExtension=*/false);
  const Setting::BoolSetting disabled{Setting(Setting::cloudSyncThemesDisabled)};
  const auto theme = [](std::int64_t page) {
    return Setting::StringSetting({Setting::selectedTheme, TaskPageNumber{page}});
  };
  local->setBool(true, "Settings_CloudSyncEnabled");
  local->setBool(true, "Settings_CloudSyncThemesDisabled");
  for (const std::int64_t page : {1, 2, 3}) storage.setString("grey", theme(page));
  cloud->setString("green", "UITheme_2");
  for (const char* color : {"red", "black"}) {
    storage.setString(color, theme(1));
    EXPECT_THROW(storage.changeTiers(false, disabled), Killed);
  }
  storage.setString("blue", theme(1));
  cloud->setString("gold", "UITheme_3");
  cloud->kills = false;
  EXPECT_TRUE(storage.changeTiers(false, disabled));
  EXPECT_EQ(storage.string(theme(1)), "blue");
  EXPECT_EQ(storage.string(theme(2)), "green");
  EXPECT_EQ(storage.string(theme(3)), "gold") << "another device has set it since";
  const std::optional<std::set<std::string>> none, earlier{{"UITheme_1"}};
  for (const auto& [mark, theirs] : {std::pair(none, "blue"), {earlier, "white"}}) {
    storage.changeTiers(true, disabled);
    storage.setString("white", theme(1));
    local->setCodable(mark, "tierSwitch.copiedToCloud");  // by a version that noted keys alone
    EXPECT_TRUE(storage.changeTiers(false, disabled));
    EXPECT_EQ(storage.string(theme(1)), theirs) << "without a mark it is the cloud's own";
  }
}

TEST(SettingsStorageTest, WithoutACloudTierTheLocalOneStandsIn) {
  const auto local = std::make_shared<MemoryStorage>();
  SettingsStorage storage({.localStorage = local}, /*isExtension=*/false);
  local->setBool(true, "Settings_CloudSyncEnabled");
  EXPECT_TRUE(storage.isCloudStored(Setting::startOfDay));
  EXPECT_TRUE(storage.setInteger(3600, Setting::startOfDay));
  EXPECT_EQ(local->integerForKey("Settings_StartOfDay"), 3600);
}

TEST(SettingsStorageTest, WhatWasWrittenLongAgoCanBeRead) {
  const VirtualEnvironment environment;
  SettingsStorageLegacyCloud legacy;
  SettingsStorage alone({.localStorage = std::make_shared<SettingsStorageLegacyCloud>()}, false);
  for (const Setting& setting : everySetting()) {
    std::visit(Write{alone, 'o'}, setting.wrapper());
    EXPECT_EQ(std::visit(Source{alone}, setting.wrapper()).empty(), setting.key().empty());
  }
  legacy.setCodable(std::optional(std::nan("")), "UIAppIcon");
  legacy.setData(std::nullopt, "taskFilter.auto");
  EXPECT_EQ(NSUbiquitousKeyValueStore::defaultStore().stringForKey("UIAppIcon"), "o");
  EXPECT_FALSE(legacy.codableForKey<Numbers>("taskFilter.auto"));
}

TEST(DictionaryCoder, GoesBetweenRecordsAndDictionaries) {
  const std::map<std::string, Date> dates{{"a", Date::sinceReferenceDate(86400)}};
  const auto dictionary = DictionaryEncoder{.dateForm = DateForm::iso8601}.encode(dates);
  EXPECT_EQ(*dictionary.at("a").text(), "2001-01-02T00:00:00Z");
  const DictionaryDecoder decoder{.dateForm = DateForm::iso8601};
  EXPECT_EQ((decoder.decode<std::map<std::string, Date>>(dictionary)), dates);
  EXPECT_THROW((void)DictionaryEncoder{}.encode(5), DictionaryEncoder::Error);
  EXPECT_THROW((void)decoder.decode<Numbers>(dictionary), DecodingError);
}

}  // namespace
}  // namespace velloro
