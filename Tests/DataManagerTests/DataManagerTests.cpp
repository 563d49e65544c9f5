#include "CloudKit/CKError.h"
#include "Containers/SaveIfChanged.h"
#include "CoreData/Context/NSPersistentStoreCoordinator.h"
#include "DataManager/DataManager.h"
#include "DataManager/PendingCleanUps.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "SQLite/StoreError.h"
#include "Settings/AppGroup.h"
#include "Settings/SettingsStorageLocal.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using Event = DataManager::Event;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class DataManagerTest : public testing::Test {
 protected:
  ~DataManagerTest() override { CKContainer::setAccountStatus(CKAccountStatus::noAccount); }

  std::shared_ptr<DataManager> make(const char* identifier = "velloro.app") {
    environment_.setBundle({.identifier = identifier});
    auto manager = DataManager::make([this]() -> Settings& { return settings_; });
    environment_.settle();
    return manager;
  }
  void setAccountStatus(CKAccountStatus status) {
    CKContainer::setAccountStatus(status);
    environment_.settle();
  }
  void setSync(bool isEnabled) {
    const std::string key = Setting(Setting::cloudSyncTasksEnabled).key();
    NSUserDefaults::standardUserDefaults().setObject(isEnabled, key);
    NSUserDefaults::initWithSuiteName(appGroupIdentifier)->setObject(isEnabled, key);
  }
  void post(const DataManager& manager, const Event& event) {
    manager.cloudPersistentContainer()->post(event);
    environment_.settle();
  }
  /// The names of what is posted while it lives.
  struct Heard {
    explicit Heard(const char* name)
        : token(NSNotificationCenter::defaultCenter().addObserver(
              name, [this](const Notification&) { ++times; })) {}
    int times = 0;
    NSNotificationCenter::Token token;
  };

  VirtualEnvironment environment_;
  SettingsStorage storage_{{.localStorage = std::make_shared<SettingsStorageLocal>()}, false};
  Settings settings_{storage_};
};

std::optional<NSPersistentCloudKitContainerOptions> mirrorOptions(const DataManager& manager) {
  return manager.cloudPersistentContainer()
      ->persistentStoreDescriptions()
      .front()
      .cloudKitContainerOptions;
}

TEST_F(DataManagerTest, WritesAsItsTargetAndMirrorsWhereThatMay) {
  setAccountStatus(CKAccountStatus::available);
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"velloro.app", "app", true},
      {"velloro.app.today", "ext_today", true},
      {"velloro.app.widgets", "ext_widget", false},
      {"velloro.app.siri", "ext_siri", true},
      {"velloro.app.siriui", "ext_siriui", false},
      {"velloro.app.notification", "ext_notification", false},
      {"velloro.app.deviceactivity", "ext_deviceActivity", false},
      {"maccatalyst.velloro.app", "app", true},
      {"maccatalyst.velloro.app.widgets", "ext_widget", false},
      {"maccatalyst.velloro.app.siri", "ext_siri", true},
      {"maccatalyst.velloro.app.siriui", "ext_siriui", false},
      {"velloro.app.watchkitapp.watchkitextension", "app", true},
      {"velloro.app.watchkitapp.watchkitextension.siri", "ext_siri", true},
      {"another.program", "app", true}};
  for (const auto& [identifier, author, mirrors] : cases) {
    const auto manager = make(identifier);
    EXPECT_EQ(manager->viewContext()->transactionAuthor(), author) << identifier;
    EXPECT_EQ(manager->ckContainer() != nullptr, mirrors) << identifier;
    EXPECT_EQ(mirrorOptions(*manager).has_value(), mirrors) << identifier;
  }
}

TEST_F(DataManagerTest, TheFirstRunOfTheApplicationChoosesTheCloudFile) {
  const auto extension = make("velloro.app.widgets");
  EXPECT_EQ(extension->activePersistentContainer(), extension->localPersistentContainer());
  const auto application = make();
  EXPECT_EQ(application->activePersistentContainer(), application->cloudPersistentContainer());
  environment_.setBundle({.identifier = "velloro.app.widgets"});
  EXPECT_EQ(extension->activePersistentContainer(), extension->cloudPersistentContainer());
  environment_.setBundle({.identifier = "velloro.app"});
  setSync(false);
  environment_.setBundle({.identifier = "velloro.app.widgets"});
  EXPECT_EQ(extension->activePersistentContainer(), extension->localPersistentContainer());
  const auto again = make();
  EXPECT_EQ(again->activePersistentContainer(), again->localPersistentContainer())
      << "what the user has chosen stays";
}

TEST_F(DataManagerTest, ReopensTheCloudFileWhenTheAccountComesOrGoes) {
  const auto manager = make();
  const Heard changed(DataManager::databaseStorageLocationChanged);
  const auto unmirrored = manager->cloudPersistentContainer();
  const auto observer = manager->observer();
  EXPECT_EQ(manager->ckStatus(), CKAccountStatus::noAccount);

  setAccountStatus(CKAccountStatus::available);
  const auto mirrored = manager->cloudPersistentContainer();
  EXPECT_EQ(mirrorOptions(*manager)->containerIdentifier, "iCloud.velloro.app.coreData");
  EXPECT_NE(manager->observer(), observer);
  EXPECT_EQ(changed.times, 1);
  NSNotificationCenter::defaultCenter().post({.name = CKAccountChanged});
  environment_.settle();
  EXPECT_EQ(manager->cloudPersistentContainer(), mirrored);
  EXPECT_EQ(changed.times, 1);

  setAccountStatus(CKAccountStatus::noAccount);
  EXPECT_NE(manager->cloudPersistentContainer(), unmirrored);
  EXPECT_FALSE(mirrorOptions(*manager));
  EXPECT_EQ(changed.times, 2);
  setAccountStatus(CKAccountStatus::restricted);
  EXPECT_EQ(changed.times, 2);

  setSync(false);
  setAccountStatus(CKAccountStatus::available);
  EXPECT_TRUE(mirrorOptions(*manager));
  EXPECT_EQ(changed.times, 2) << "the local file is the active one";
}

TEST_F(DataManagerTest, RecordsTheMirrorsEvents) {
  const auto manager = make();
  const Heard updated(DataManager::syncEventsUpdated);
  Event event{.identifier = UUID::random(), .type = Event::Type::export_, .startDate = Date::now()};
  post(*manager, event);
  EXPECT_THAT(manager->currentSyncEvents(), SizeIs(1));
  event.endDate = Date::now();
  event.error = std::make_shared<Error>("CKErrorDomain", 7, "slower, please");
  post(*manager, event);
  EXPECT_THAT(manager->currentSyncEvents(), IsEmpty());
  EXPECT_EQ(manager->currentSyncError(), event.error);
  EXPECT_THAT(settings_.cloudKitErrors(), IsEmpty()) << "it will be tried again by itself";
  event.error = std::make_shared<Error>("CKErrorDomain", 9, "not signed in");
  post(*manager, event);
  ASSERT_THAT(settings_.cloudKitErrors(), SizeIs(1));
  EXPECT_EQ(settings_.cloudKitErrors().front().ckErrorCode, 9);
  event.error = nullptr;
  environment_.advance(60);
  post(*manager, event);
  EXPECT_EQ(manager->currentSyncError(), nullptr);
  EXPECT_EQ(manager->currentSyncErrorDate(), Date::now());
  EXPECT_EQ(updated.times, 4);
  setSync(false);
  post(*manager, event);
  EXPECT_EQ(updated.times, 4);
}

TEST_F(DataManagerTest, CleansUpAfterAnImportEvenAFailedOne) {
  const auto manager = make();
  NSManagedObjectContext& context = *manager->viewContext();
  const auto task = TaskEntity::create(context);
  const auto other = TaskEntity::create(context);
  const auto addEntry = [&](const char* id, const char* cloudStatus, bool isOfOther = false,
                            TaskLogEntryType type = TaskLogEntryType::completedManuallyFull) {
    const auto entry = TaskLogEntryEntity::create(context);
    entry->setValue(TaskLogEntryEntity::task, isOfOther ? other : task);
    entry->setStored(TaskLogEntryEntity::entryDate, 20240307);
    entry->setValue(TaskLogEntryEntity::entryType, type);
    entry->setStored(TaskLogEntryEntity::uniqueId, id);
    entry->setValue(TaskLogEntryEntity::cloudStatus, cloudStatus);
    return entry;
  };
  const char* twin = "5EC2F8E3-6A6C-4F51-8B1B-000000000001";
  addEntry(twin, TaskLogEntryEntity::temporaryRecordIdentifier);
  addEntry(twin, "OK");
  addEntry("5EC2F8E3-6A6C-4F51-8B1B-000000000002", TaskLogEntryEntity::temporaryRecordIdentifier);
  const char* closing = "5EC2F8E3-6A6C-8F51-8B1B-000000000003";
  for (const auto& [name, seconds] : {std::pair("late", 9), std::pair("b", 5), std::pair("a", 5)}) {
    addEntry(closing, name, true, TaskLogEntryType::missedAutomaticallyFull)
        ->setValue(TaskLogEntryEntity::createdTimestamp, Date::sinceReferenceDate(seconds));
  }
  ASSERT_TRUE(context.save());
  post(*manager, {.identifier = UUID::random(),
                  .type = Event::Type::import_,
                  .startDate = Date::now(),
                  .endDate = Date::now(),
                  .error = std::make_shared<Error>("CKErrorDomain", 4, "no network")});
  const auto entries = context.fetch<TaskLogEntryEntity>(NSFetchRequest("TaskLogEntry"));
  std::vector<std::string> kept;
  for (const auto& entry : *entries) {
    kept.push_back(entry->value(TaskLogEntryEntity::cloudStatus).value_or(""));
  }
  EXPECT_THAT(kept, ElementsAre("OK", "TMP", "a")) << "the same twin stays on every device";
  EXPECT_EQ(
      other->value(TaskAttributes::taskTemporalData)->stored(TaskTemporalDataEntity::lastMissed),
      20240307);
  EXPECT_EQ(task->lastCompletedDate({2024, 3, 8}), (YYYYMMDD{2024, 3, 7}))
      << "merged into the view";
}

TEST_F(DataManagerTest, TheNextMirrorCleansUpForAProcessThatWasKilled) {
  const auto manager = make();
  NSManagedObjectContext& context = *manager->viewContext();
  const auto task = TaskEntity::create(context);
  const auto entry = TaskLogEntryEntity::create(context);
  entry->setValue(TaskLogEntryEntity::task, task);
  entry->setValue(TaskLogEntryEntity::entryDate, YYYYMMDD{2024, 3, 7});
  entry->setValue(TaskLogEntryEntity::entryType, TaskLogEntryType::completedManuallyFull);
  ASSERT_TRUE(context.save());
  PendingCleanUps::add(UUID::random(), Date::now() - 1);
  environment_.advance(3600);
  setAccountStatus(CKAccountStatus::available);
  const auto tasks = manager->viewContext()->fetch<TaskEntity>(NSFetchRequest("Task")).value();
  const auto derived = tasks.front()->value(TaskAttributes::taskTemporalData);
  ASSERT_NE(derived, nullptr);
  EXPECT_EQ(derived->stored(TaskTemporalDataEntity::lastCompleted), 20240307);
  EXPECT_TRUE(PendingCleanUps::kept().isEmpty());
}

TEST_F(DataManagerTest, AStoreThatCantBeOpenedIsLeftAsItIs) {
  const auto file = DataManager::StoreUrls::make().sharedGroupUrlModernCloud;
  const std::string bytes(4096, 'x');
  ASSERT_TRUE(NSFileManager::write(bytes, file));
  const auto manager = make();
  EXPECT_NE(manager->activePersistentContainer()->loadError(), nullptr);
  EXPECT_FALSE(manager->viewContext()->fetch<TaskEntity>(NSFetchRequest("Task")));
  static_cast<void>(TaskEntity::create(*manager->viewContext()));
  EXPECT_FALSE(saveIfChanged(*manager->viewContext()));
  EXPECT_EQ(NSFileManager::contents(file), bytes);
}

TEST_F(DataManagerTest, TellsTheCodesOfTwoDomains) {
  EXPECT_EQ(DataManager::errorCode(Error("CKErrorDomain", 7, "")), 7);
  EXPECT_EQ(DataManager::errorCode(StoreError(StoreError::Kind::conflict, "")), 133020);
  EXPECT_EQ(DataManager::errorCode(Error("POSIX", 2, "")), std::nullopt);
}

}  // namespace
}  // namespace velloro
