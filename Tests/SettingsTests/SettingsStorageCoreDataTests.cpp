#include "Containers/VelloroNSPersistentContainer.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxLog/LogManager.h"
#include "Settings/SettingsStorageCoreData.h"
#include "SettingsTests/MemoryStorage.h"
#include "Support/Processes.h"
#include "Tasks/Rows/VelloroModel.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velloro {
namespace {

using ::testing::ElementsAre;
using Container = VelloroNSPersistentCloudKitContainer;
using Row = std::pair<std::optional<std::string>, std::int64_t>;
using Rows = std::vector<Row>;

/// A process, or a device whose mirror writes into the same file: a container and the storage.
struct Party {
  explicit Party(std::filesystem::path path, bool tasksEnabled = true) : file(std::move(path)) {
    local->setBool(tasksEnabled, "Settings_CloudSyncEnabled");
  }

  static std::shared_ptr<Container> open(const std::filesystem::path& file) {
    auto container = std::make_shared<Container>(velloroModelName, velloroModel());
    container->setPersistentStoreDescriptions({NSPersistentStoreDescription::initWithURL(file)});
    container->loadPersistentStores(
        [](const auto&, const ErrorPtr& error) { ASSERT_EQ(error, nullptr); });
    return container;
  }
  [[nodiscard]] NSManagedObjectContext& view() const { return *container->viewContext(); }
  SettingsStorageCoreData& cloud() const {
    return dynamic_cast<SettingsStorageCoreData&>(*storage.cloudStorage());
  }
  /// Rows as another device makes them.
  void insert(const Rows& rows, const char* created) const {
    for (const auto& [key, value] : rows) {
      const auto row = SettingEntity::create(view());
      row->setValue(SettingEntity::settingKey, key);
      row->setValue(SettingEntity::dateCreated, Date::fromISO8601(created));
      row->setValue(SettingEntity::intValue, value);
    }
    EXPECT_TRUE(view().save());
  }
  [[nodiscard]] Rows rows() const {
    Rows rows;
    const auto fetched = view().fetch<SettingEntity>(NSFetchRequest("Setting"));
    for (const auto& row : *fetched) {
      rows.emplace_back(row->value(SettingEntity::settingKey), row->value(SettingEntity::intValue));
    }
    return rows;
  }
  [[nodiscard]] std::vector<NSPersistentHistoryTransaction> history() const {
    return view()
        .execute(NSPersistentHistoryChangeRequest::fetchHistoryAfterDate(Date::distantPast()))
        ->transactions;
  }
  /// Takes in what all have saved since the last call.
  void merge() {
    const auto transactions = history();
    for (; merged < transactions.size(); ++merged) {
      NSManagedObjectContext::mergeChangesFromRemoteContextSave(
          transactions[merged].objectIDNotification().userInfo, {container->viewContext()});
    }
  }

  std::filesystem::path file;
  std::size_t merged = 0;
  std::shared_ptr<Container> container = open(file);
  std::shared_ptr<MemoryStorage> local = std::make_shared<MemoryStorage>();
  SettingsStorage storage{{.localStorage = local}, false, [this] { return container; }};
};

class CloudTierTest : public ::testing::Test {
 protected:
  CloudTierTest() {
    observer_ = NSNotificationCenter::defaultCenter().addObserver(
        settingsChangedNotification, [this](const Notification& notification) {
          for (const auto& setting : *notification.value<std::vector<Setting>>(settingNamesKey)) {
            told_.push_back(setting.key());
          }
        });
  }
  [[nodiscard]] std::vector<std::string> told() { return std::exchange(told_, {}); }

  VirtualEnvironment environment_;
  std::filesystem::path file_ = environment_.directories().temporary / "cloud.sqlite";
  std::vector<std::string> told_;
  NSNotificationCenter::Token observer_;
};

TEST_F(CloudTierTest, KeepsEveryKindOfValueAndWritesOnlyWhatDiffers) {
  const Party writer(file_);
  const Party reader(file_);
  for (int time = 0; time < 2; ++time) {
    writer.cloud().setInteger(-7, "integer");
    writer.cloud().setBool(true, "flag");
    writer.cloud().setDouble(0.1, "real");
    writer.cloud().setString("ä", "text");
    writer.cloud().setData(Data("\xff\x01"), "bytes");
    writer.cloud().setCodable(std::optional(std::vector{1, 2}), "numbers");
    writer.cloud().setCodable(std::optional(std::vector{std::nan("")}), "numbers");
  }
  EXPECT_EQ(writer.history().size(), 6U);
  for (const Party* party : {&writer, &reader}) {
    const SettingsStorageContainer& cloud = party->cloud();
    EXPECT_EQ(cloud.integerForKey("integer"), -7);
    EXPECT_TRUE(cloud.boolForKey("flag"));
    EXPECT_EQ(cloud.doubleForKey("real"), 0.1);
    EXPECT_EQ(cloud.stringForKey("text"), "ä");
    EXPECT_EQ(cloud.dataForKey("bytes"), Data("\xff\x01"));
    EXPECT_EQ(cloud.codableForKey<std::vector<int>>("numbers"), (std::vector{1, 2}));
    EXPECT_FALSE(cloud.codableForKey<std::vector<int>>("bytes"));
    EXPECT_FALSE(cloud.stringForKey("absent") || cloud.boolForKey("text"));
  }
  writer.cloud().setString(std::nullopt, "text");
  writer.cloud().setCodable(std::optional<std::string>(), "numbers");
  EXPECT_FALSE(writer.cloud().stringForKey("text"));
  EXPECT_FALSE(Party(file_).cloud().dataForKey("numbers"));
  EXPECT_EQ(writer.rows().size(), 4U);
}

TEST_F(CloudTierTest, OfTwinsTheFirstCountsOnReadingAndTheOldestOnWriting) {
  Party party(file_);
  party.insert({{"a", 1}, {std::nullopt, 5}, {"b", 2}}, "2024-03-07T12:00:00Z");
  party.insert({{"a", 3}, {"b", 4}, {"b", 5}}, "2024-03-06T12:00:00Z");
  EXPECT_EQ(party.cloud().integerForKey("a"), 1);
  EXPECT_EQ(party.cloud().integerForKey("b"), 2);
  const Rows firsts{{"a", 1}, {std::nullopt, 5}, {"b", 2}};
  EXPECT_EQ(Party(file_).rows(), firsts);

  party.insert({{"a", 6}}, "2024-03-05T12:00:00Z");
  party.cloud().setInteger(7, "a");
  const Rows oldest{{std::nullopt, 5}, {"b", 2}, {"a", 7}};
  EXPECT_EQ(Party(file_).rows(), oldest);
  party.insert({{"a", 8}}, "2024-03-08T12:00:00Z");
  party.cloud().setString(std::nullopt, "a");
  EXPECT_EQ(Party(file_).rows(), (Rows{{std::nullopt, 5}, {"b", 2}}));
}

TEST_F(CloudTierTest, AMergeGoesToTheLocalTierAndIsTold) {
  const Setting::StringSetting theme(Setting(Setting::selectedTheme, TaskPageNumber{3}));
  Party other(file_);
  Party party(file_);
  party.cloud();
  other.storage.setCodable(std::optional(std::vector{1}), Setting::siriWatchFaceDisabledIds);
  other.storage.setString("blue.white", theme);
  other.storage.setInteger(3600, Setting::startOfDay);
  other.storage.setBoolean(true, Setting::grandSlamDisabled);
  other.insert({{"", 1}, {"taskFilter.displayOrder", 2}, {"?", 3}}, "2024-03-07T12:00:00Z");
  (void)told();
  EXPECT_EQ(party.storage.integer(Setting::startOfDay), 0);  // no fetch for a read
  party.merge();
  EXPECT_EQ(party.storage.integer(Setting::startOfDay), 3600);
  EXPECT_EQ(party.local->integerForKey("Settings_StartOfDay"), 3600);
  EXPECT_EQ(party.local->stringForKey("UITheme_3"), "blue.white");
  EXPECT_TRUE(party.local->boolForKey("Settings_GrandSlamDisabled"));
  EXPECT_EQ(party.local->dataForKey("Settings_siriWatchFaceDisabledIdsCodable"), Data("[1]"));
  EXPECT_FALSE(party.local->holds("?") || party.local->holds("taskFilter.displayOrder"));
  EXPECT_THAT(told(), ElementsAre("Settings_siriWatchFaceDisabledIdsCodable", "UITheme_3",
                                  "Settings_StartOfDay", "Settings_GrandSlamDisabled"));

  other.storage.setString(std::nullopt, theme);
  other.insert({{"Settings_StartOfDay", 7200}}, "2024-03-07T12:00:00Z");
  (void)told();
  party.merge();
  EXPECT_FALSE(party.local->holds("UITheme_3"));
  EXPECT_EQ(party.storage.integer(Setting::startOfDay), 3600);
  EXPECT_THAT(told(), ElementsAre("UITheme_3"));
  EXPECT_EQ(other.rows().size(), 6U);  // without the twin
}

TEST_F(CloudTierTest, OnlyMergesOfTheContainerOfThatMomentCount) {
  Party other(file_);
  Party party(file_);
  party.cloud();
  const auto replaced = std::exchange(party.container, Party::open(file_));
  other.cloud().setInteger(3600, "Settings_StartOfDay");
  for (const auto& view : {other.container->viewContext(), replaced->viewContext()}) {
    const auto changes = party.history().front().objectIDNotification().userInfo;
    NSManagedObjectContext::mergeChangesFromRemoteContextSave(changes, {view});
    EXPECT_EQ(party.cloud().integerForKey("Settings_StartOfDay"), 0);
  }
  party.merge();
  EXPECT_EQ(party.cloud().integerForKey("Settings_StartOfDay"), 3600);
  party.container = nullptr;
  party.cloud().updateSettings();
  party.cloud().setInteger(1, "Settings_StartOfDay");
  EXPECT_EQ(party.cloud().integerForKey("Settings_StartOfDay"), 1);
  EXPECT_EQ(other.rows(), (Rows{{"Settings_StartOfDay", 3600}}));
}

TEST_F(CloudTierTest, AMergeOfWhatIsNotCloudStoredIsToldButStays) {
  const std::string theme = "UIThemeAutoswitch";
  const std::string start = "Settings_StartOfDay";
  const std::string stays = "` set to not sync with cloud";
  const std::string goes = "Updating setting for `";
  // whether tasks are synced, themes kept here; what is logged of the theme and of the start
  const std::tuple<bool, bool, std::string, std::string> cases[] = {
      {false, false, "Setting `" + theme + stays, "Setting `" + start + stays},
      {true, true, "Setting `" + theme + stays, goes + start + ".IntSetting`"},
      {true, false, goes + theme + ".BoolSetting`", goes + start + ".IntSetting`"}};
  Party other(file_);
  other.cloud().setBool(true, theme);
  other.cloud().setInteger(3600, start);
  for (const auto& [tasksEnabled, themesDisabled, ofTheme, ofStart] : cases) {
    EXPECT_TRUE(endedWell(startProcess([&] {
      LogManager::shared().enableDiskLogging({Log::settings}, LogLevel::debug);
      LogManager::shared().clearDebugLog();
      Party party(file_, tasksEnabled);
      party.local->setBool(themesDisabled, "Settings_CloudSyncThemesDisabled");
      party.cloud();
      party.merge();
      EXPECT_EQ(party.local->boolForKey(theme), tasksEnabled && !themesDisabled);
      EXPECT_EQ(party.local->integerForKey(start), tasksEnabled ? 3600 : 0);
      EXPECT_THAT(told(), ElementsAre(theme, start));
      LogManager::shared().flush();
      std::ifstream file(LogManager::shared().debugLogUrl());
      for (const std::string& expected : {ofTheme, ofStart}) {
        std::string line;
        std::getline(file, line);
        EXPECT_TRUE(line.ends_with(expected)) << line;
      }
    })));
  }
}

TEST_F(CloudTierTest, IsOpenedByTheApplicationAtOnceAndByAnExtensionInNeed) {
  for (const bool isExtension : {false, true}) {
    EXPECT_TRUE(endedWell(startProcess([&] {
      environment_.setBundle({.identifier = isExtension ? "velloro.app.widgets" : "velloro.app"});
      auto suite = NSUserDefaults::initWithSuiteName("group.velloro.app.today").value();
      for (auto defaults : {NSUserDefaults::standardUserDefaults(), suite}) {
        defaults.setObject(true, "Settings_CloudSyncEnabled");
      }
      std::shared_ptr<Container> container;
      SettingsStorage::setCloudContainer([&] {
        if (container != nullptr) return container;
        // Who makes the container reads settings, those that will be in it as well.
        EXPECT_FALSE(SettingsStorage::shared().string(Setting::lastStatsTimePeriod));
        container = Party::open(file_);
        return container;
      });
      SettingsStorage& shared = SettingsStorage::shared();
      EXPECT_EQ(shared.integer(Setting::startOfDay), 0);
      EXPECT_EQ(container != nullptr, !isExtension);
      shared.setString("week", Setting::lastStatsTimePeriod);
      EXPECT_EQ(Party(file_).cloud().stringForKey("Settings_StatsTimePeriod"), "week");
    })));
  }
}

TEST_F(CloudTierTest, MemoryAndStoreStayAlikeWhileThreadsWrite) {
  const Party party(file_);
  SettingsStorageCoreData& cloud = party.cloud();
  std::vector<std::thread> writers;
  for (const int writer : {1, 2, 3}) {
    writers.emplace_back([&cloud, writer] {
      const std::string own = std::to_string(writer);
      for (int value = 1; value <= 20; ++value) {
        cloud.setInteger(value, own);
        EXPECT_EQ(cloud.integerForKey(own), value);
        cloud.setInteger(value * writer, "shared");
        if (writer == 3) cloud.updateSettings();
      }
    });
  }
  for (int i = 0; i < 20; ++i) cloud.updateSettings();
  for (auto& writer : writers) writer.join();
  const Party reader(file_);
  for (const char* key : {"1", "2", "3", "shared"}) {
    EXPECT_EQ(reader.cloud().integerForKey(key), cloud.integerForKey(key)) << key;
  }
  EXPECT_EQ(reader.rows().size(), 4U);
}

}  // namespace
}  // namespace velloro
