#include "DataManager/DataManager.h"
#include "DataManager/PersistentHistoryFetcher.h"
#include "DataManager/StoreUse.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Settings/SettingEntity.h"
#include "Settings/SettingsStorageCoreData.h"
#include "Settings/SettingsStorageLocal.h"
#include "Support/Processes.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"

#include <chrono>
#include <csignal>
#include <random>
#include <set>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::IsEmpty;
using Clock = std::chrono::steady_clock;
using Entry = TaskLogEntryEntity;

constexpr const char* identifiers[] = {"velloro.app", "velloro.app.widgets",
                                       "velloro.app.notification"};
constexpr int roles = 3;
constexpr std::int64_t finish = -1;

/// One process on the shared store, from its start until it is killed or told to finish.
class Process {
 public:
  Process(VirtualEnvironment& environment, int role) : environment_(environment), role_(role) {
    environment_.setBundle({.identifier = identifiers[role]});
    manager_ = DataManager::make();
    begin_ = bookmark();
    tasks_ = view().fetch<TaskEntity>(NSFetchRequest("Task")).value();
    token_ = NSNotificationCenter::defaultCenter().addObserver(
        NSManagedObjectContext::didMergeChangesObjectIDsNotification, &view(), std::nullopt,
        [this](const Notification& merged) {
          for (const auto id :
               *merged.value<std::vector<NSManagedObjectID>>("inserted_objectIDs")) {
            if (id.entity->name() == "TaskLogEntry") ++merged_[id.key];
          }
        });
  }

  void work(Pipe& go, Pipe& saved) {
    while (const auto number = go.receive()) {
      if (*number == finish) return checkThatTheViewHasAll();
      save(*number);
      saved.send(*number);
      if (*number % 5 == 0) environment_.settle();
    }
  }

 private:
  [[nodiscard]] NSManagedObjectContext& view() const { return *manager_->viewContext(); }
  [[nodiscard]] Date bookmark() const {
    const auto kept = NSUserDefaults::standardUserDefaults().objectForKey(
        PersistentHistoryObserver::bookmarkKey(manager_->author()));
    return kept ? kept->date().value() : Date::distantPast();
  }

  /// An entry, of the view or of the background, or another title for a task.
  void save(std::int64_t number) {
    const auto& task = tasks_[static_cast<std::size_t>(number) % tasks_.size()];
    if (number % 3 == 0) {
      task->setValue(TaskAttributes::title, std::to_string(role_) + "." + std::to_string(number));
      EXPECT_TRUE(view().save());
    } else if (number % 3 == 1) {
      insertEntry(view(), number);
    } else {
      const auto background = manager_->activePersistentContainer()->newBackgroundContext();
      background->performAndWait([&] { insertEntry(*background, number); });
    }
  }
  void insertEntry(NSManagedObjectContext& context, std::int64_t number) const {
    const auto entry = Entry::create(context);
    entry->setStored(Entry::entryDate, static_cast<std::int32_t>(number));
    entry->setStored(Entry::entryType, static_cast<std::int16_t>(role_));
    EXPECT_TRUE(context.save());
  }

  /// Each entry of the others that came after the bookmark with which this process began was merged
  /// once, and what the view holds is what the file holds.
  void checkThatTheViewHasAll() {
    manager_->activePersistentContainer()->persistentStoreCoordinator()->checkForRemoteChanges();
    environment_.settle();
    const auto context = manager_->activePersistentContainer()->newBackgroundContext();
    const auto history = context->performAndWait([&] {
      return PersistentHistoryFetcher{context, begin_}.fetch().value().transactions;
    });
    for (const auto& transaction : history) {
      for (const auto id : transaction.inserted) {
        const auto entry = std::static_pointer_cast<Entry>(view().objectWithID(id));
        if (entry->stored(Entry::entryType) == role_) continue;
        EXPECT_EQ(merged_[id.key], 1) << transaction.transactionNumber;
      }
    }
    context->performAndWait([&] {
      for (const auto& task : tasks_) {
        const auto saved =
            std::static_pointer_cast<TaskEntity>(context->objectWithID(task->objectID()));
        EXPECT_EQ(task->value(TaskAttributes::title), saved->value(TaskAttributes::title));
      }
    });
  }

  VirtualEnvironment& environment_;
  const int role_;
  std::shared_ptr<DataManager> manager_;
  Date begin_;
  std::vector<std::shared_ptr<TaskEntity>> tasks_;
  std::map<std::int64_t, int> merged_;
  NSNotificationCenter::Token token_;
};

/// A place for one process after the other.
struct Seat {
  int role = 0;
  std::unique_ptr<Pipe> go, saved;
  pid_t process = 0;
  std::int64_t acknowledged = 0;

  void start(VirtualEnvironment& environment) {
    go = std::make_unique<Pipe>();
    saved = std::make_unique<Pipe>();
    process = startProcess([&] {
      go->closeWriting();
      Process(environment, role).work(*go, *saved);
    });
    saved->closeWriting();
  }
  /// \return Whether the process is still there.
  bool receive() {
    const bool isThere = saved->receive().has_value();
    acknowledged += isThere ? 1 : 0;
    return isThere;
  }
  void kill() {
    ::kill(process, SIGKILL);
    EXPECT_FALSE(endedWell(process));
    while (receive()) {
    }
  }
};

void makeTasks(VirtualEnvironment& environment) {
  const pid_t maker = startProcess([&] {
    const auto manager = DataManager::make();
    for (int i = 0; i < 20; ++i) static_cast<void>(TaskEntity::create(*manager->viewContext()));
    EXPECT_TRUE(manager->viewContext()->save());
    environment.settle();
  });
  ASSERT_TRUE(endedWell(maker));
}

void checkSaves(std::int64_t least, std::int64_t most) {
  const auto manager = DataManager::make();
  auto& container = *manager->activePersistentContainer();
  const auto context = container.newBackgroundContext();
  const auto saves = PersistentHistoryFetcher{context, Date::distantPast()}.fetch()->transactions;
  EXPECT_GE(std::ssize(saves) - 1, least);
  EXPECT_LE(std::ssize(saves) - 1, most);
  EXPECT_THAT(container.persistentStoreCoordinator()->check().value(), IsEmpty());
}

/// An application that begins for the first time, writes settings, and makes a twin of one.
void beginAndWriteSettings(VirtualEnvironment& environment, int worker) {
  environment.setBundle({.identifier = "velloro.app"});
  SettingsStorage::setCloudContainer(
      [] { return DataManager::shared().cloudPersistentContainer(); });
  SettingsStorage& settings = SettingsStorage::shared();
  const auto context = DataManager::sharedCloudContainer()->newBackgroundContext();
  context->performAndWait([&] {
    SettingEntity::create(*context)->setValue(SettingEntity::settingKey,
                                              "Settings_StatsTimePeriod");
    EXPECT_TRUE(context->save());
  });
  for (int value = 1; value <= 10; ++value) {
    settings.setInteger(worker * 100 + value, Setting::startOfDay);
    if (worker == 0 && value == 5) settings.setBoolean(false, Setting::cloudSyncTasksEnabled);
    dynamic_cast<SettingsStorageCoreData&>(*settings.cloudStorage()).updateSettings();
  }
  environment.settle();
}

/// What the user has chosen stays, extensions read what the application reads, and of each
/// setting's twins exactly one is left.
void checkSettings(VirtualEnvironment& environment) {
  environment.setBundle({.identifier = "velloro.app"});
  const auto suite = SettingsStorageLocalShared::open();
  const SettingsStorageLocal local;
  const char* choice = "Settings_CloudSyncEnabled";
  EXPECT_FALSE(local.boolForKey(choice) || suite->boolForKey(choice));
  EXPECT_GT(local.integerForKey("Settings_StartOfDay"), 0);
  EXPECT_EQ(local.integerForKey("Settings_StartOfDay"),
            suite->integerForKey("Settings_StartOfDay"));
  const auto manager = DataManager::make();
  const auto& context = manager->cloudPersistentContainer()->viewContext();
  std::multiset<std::string> keys;
  for (const auto& row : *context->fetch<SettingEntity>(NSFetchRequest("Setting"))) {
    keys.insert(row->value(SettingEntity::settingKey).value());
  }
  EXPECT_THAT(keys, testing::ElementsAre("Settings_StartOfDay", "Settings_StatsTimePeriod"));
}

// A store starts threads, which a child of the process would believe to be there. So this process
// opens none: whatever uses one does so in a process of its own.

TEST(SharedStore, AllSeeWhoMaintainsItAndADeadOneKeepsNoLock) {
  const VirtualEnvironment environment;
  ASSERT_TRUE(StoreUse::toWrite());
  EXPECT_FALSE(StoreUse::isMaintained());
  Pipe told;
  const pid_t other = startProcess([&] {
    const auto access = StoreUse::toMaintain();
    EXPECT_TRUE(access && StoreUse::toWrite());  // what it does itself isn't kept back
    told.send(1);
    ::pause();
  });
  ASSERT_EQ(told.receive(), 1);
  EXPECT_TRUE(StoreUse::isMaintained());
  EXPECT_TRUE(
      endedWell(startProcess([] { EXPECT_TRUE(DataManager::make()->inMaintenanceMode()); })));
  ::kill(other, SIGKILL);
  EXPECT_TRUE(StoreUse::toWrite());  // waits for the end of the other
  EXPECT_FALSE(endedWell(other));
  EXPECT_FALSE(StoreUse::isMaintained());
}

TEST(SharedStore, SettingsStayWholeWhileSeveralProcessesBeginAndWriteThem) {
  for (int round = 0; round < 10; ++round) {
    VirtualEnvironment environment;
    std::vector<pid_t> processes;
    for (int i = 0; i < 4; ++i) {
      processes.push_back(startProcess([&] { beginAndWriteSettings(environment, i); }));
    }
    for (const pid_t process : processes) EXPECT_TRUE(endedWell(process));
    EXPECT_TRUE(endedWell(startProcess([&] { checkSettings(environment); }))) << round;
  }
}

TEST(SharedStore, WhatEachProcessSavesReachesTheViewsOfTheOthersOnce) {
  VirtualEnvironment environment;
  makeTasks(environment);
  constexpr std::int64_t wanted = 10000;
  const auto end = Clock::now() + std::chrono::seconds(240);
  std::mt19937 random(7);
  Seat seats[roles];
  for (int role = 0; role < roles; ++role) seats[role].role = role;
  for (Seat& seat : seats) seat.start(environment);
  std::int64_t sent = 0;
  int kills = 0;
  for (; sent < wanted && Clock::now() < end; sent += roles) {
    for (Seat& seat : seats) seat.go->send(sent / roles + seat.role);
    const Seat* victim = random() % 50 == 0 ? &seats[random() % roles] : nullptr;
    for (Seat& seat : seats) {
      if (&seat == victim) {
        seat.kill();
        seat.start(environment);
        ++kills;
      } else {
        EXPECT_TRUE(seat.receive());
      }
    }
  }
  for (Seat& seat : seats) {
    seat.go->send(finish);
    EXPECT_TRUE(endedWell(seat.process));
  }
  EXPECT_GE(sent, wanted) << "the machine is too slow";
  EXPECT_GT(kills, 0);
  RecordProperty("kills", kills);

  const auto told = seats[0].acknowledged + seats[1].acknowledged + seats[2].acknowledged;
  EXPECT_TRUE(endedWell(startProcess([&] { checkSaves(told, sent); })));
}

}  // namespace
}  // namespace velloro
