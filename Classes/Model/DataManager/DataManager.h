#pragma once

#include "CloudKit/CKContainer.h"
#include "Containers/VelloroNSPersistentContainer.h"
#include "DataManager/Author.h"
#include "DataManager/CoreDataMigration.h"
#include "DataManager/PersistentHistoryObserver.h"
#include "Foundation/Values/UUID.h"
#include "OxKit/Platform.h"
#include "Settings/Settings.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace velloro {

/// The process's owner of the store. It decides which of two files this process works on, the one
/// that the cloud mirrors or the local one, whether the mirror runs here, and as which author it
/// writes.
///
///     const auto manager = DataManager::make();    // in a program: DataManager::shared()
///     manager->viewContext()->fetch(TaskFetchRequest{}.fetchRequest());    // on the main queue
///     manager->performBackgroundTask([](NSManagedObjectContext& context) {
///       TaskEntity::create(context);
///       saveIfChanged(context);
///     });
///
/// All processes of a user open the same two files; `cloudSyncTasksEnabled` says which of them is
/// active, and is read at each use. If a store can't be opened, that is neither reported nor is the
/// file changed: its container remains without a store, fetches and saves fail, and the next
/// process tries again.
///
/// May be used from any thread, except for what is documented to be for the main queue.
class DataManager : public std::enable_shared_from_this<DataManager> {
 public:
  using Author = velloro::Author;
  using Container = VelloroNSPersistentCloudKitContainer;
  using Event = NSPersistentCloudKitContainerEvent;

  struct StoreUrls {
    std::optional<std::filesystem::path> sharedGroupUrlLegacy;
    std::filesystem::path sharedGroupUrlModernCloud;
    std::filesystem::path sharedGroupUrlModernLocal;

    /// In the folder that all processes share, or where there is none among the process's own
    /// documents.
    [[nodiscard]] static StoreUrls make();
  };

  struct Url {
    std::filesystem::path file;
    std::optional<std::string> cloudContainerIdentifier;
  };
  struct InMemory {};
  using ContainerLocation = std::variant<Url, InMemory>;

  static constexpr const char* cloudContainerIdentifier = "iCloud.velloro.app.coreData";

  /// \name Posted on the default centre, without an object.
  /// @{
  /// An event of the active container's mirror was recorded.
  static constexpr const char* syncEventsUpdated = "dm.syncEventsUpdated";
  /// The active container was replaced.
  static constexpr const char* databaseStorageLocationChanged = "dm.databaseStorageLocationChanged";
  /// @}

  /// The process's own, made at the first use, which opens the stores.
  [[nodiscard]] static DataManager& shared();
  /// Of `shared`; null once that is closed.
  [[nodiscard]] static std::shared_ptr<Container> sharedCloudContainer();
  /// The file of what is the active container of a process of this kind; opens nothing.
  [[nodiscard]] static std::filesystem::path activeStoreUrl();
  /// Closes the stores of `shared`, for a process that is about to end: there is no further use.
  static void closeShared();
  /// \param settings Returns where errors of the mirror are recorded; called when there is one.
  [[nodiscard]] static std::shared_ptr<DataManager> make(
      std::function<Settings&()> settings = Settings::shared);
  ~DataManager();

  [[nodiscard]] std::shared_ptr<Container> cloudPersistentContainer() const;
  [[nodiscard]] std::shared_ptr<Container> localPersistentContainer() const {
    return localPersistentContainer_;
  }
  /// One of the two, as the user has chosen by now.
  [[nodiscard]] std::shared_ptr<Container> activePersistentContainer() const;
  /// Of the active container.
  [[nodiscard]] std::shared_ptr<NSManagedObjectContext> viewContext() const;
  void performBackgroundTask(NSPersistentContainer::BackgroundTask task) const;

  [[nodiscard]] Author author() const { return velloro::author(target_); }
  /// That of the container which was active when it was made. On the main queue.
  [[nodiscard]] std::shared_ptr<PersistentHistoryObserver> observer() const { return observer_; }

  /// Whether the host moves tasks between the stores, here or in another process (`StoreUse`).
  /// Whoever begins background work on the store asks first, and does nothing while it is set;
  /// `performBackgroundTask` itself leaves that to its caller.
  [[nodiscard]] bool inMaintenanceMode() const;
  void setInMaintenanceMode(bool isIn);

  /// The mirror's events under way.
  [[nodiscard]] std::map<UUID, Event> currentSyncEvents() const;
  /// \name Of the mirror's last event; on the main queue.
  /// @{
  [[nodiscard]] std::optional<Date> currentSyncErrorDate() const { return currentSyncErrorDate_; }
  [[nodiscard]] ErrorPtr currentSyncError() const { return currentSyncError_; }
  /// @}

  [[nodiscard]] CKAccountStatus ckStatus() const;
  /// Null where the mirror is not allowed.
  [[nodiscard]] std::shared_ptr<CKContainer> ckContainer() const { return ckContainer_; }

  /// Sets the only description of a container, and opens its store.
  static void configureStoreDescription(Container& container, const ContainerLocation& location,
                                        const NSPersistentContainer::LoadHandler& completion);

  /// The code of an error of the cloud service or of the store; absent for any other.
  [[nodiscard]] static std::optional<int> errorCode(const Error& error);

 private:
  explicit DataManager(std::function<Settings&()> settings);
  static std::shared_ptr<DataManager> sharedOrNull();
  void start();
  [[nodiscard]] std::shared_ptr<Container> makeContainer(
      bool isCloud, CKAccountStatus accountStatus,
      const std::shared_ptr<Container>& existing) const;
  void runFirstRunWorkflow() const;
  void startHistoryObserver();
  void setupAccount();
  void askForAccountStatus();
  void accountStatusChanged(CKAccountStatus status);
  void setupImportObserver();
  void eventChanged(const Notification& notification);
  [[nodiscard]] std::shared_ptr<Container> containerAt(const void* address) const;
  void cleanUpAfterImport(Container& container, const UUID& id);
  void noteError(const Event& event) const;

  const std::function<Settings&()> settings_;
  const RunTarget target_;
  const StoreUrls storeUrls_;
  mutable std::mutex containerMutex_;  // guards the next: replaced on the main queue, read anywhere
  std::shared_ptr<Container> cloudPersistentContainer_;
  std::shared_ptr<Container> localPersistentContainer_;
  /// Former cloud containers stay open, since their contexts and mirrors may still be at work.
  std::vector<std::shared_ptr<Container>> replacedContainers_;
  std::shared_ptr<CoreDataMigratorProtocol> migrator_;
  const DispatchQueue maintenanceQueue_{"velloro.domain.datamanager.maintenance",
                                        QualityOfService::userInteractive};
  bool inMaintenanceMode_ = false;
  std::shared_ptr<PersistentHistoryObserver> observer_;
  std::map<UUID, Event> currentSyncEvents_;
  std::set<UUID> currentImportDeduplicationEvents_;
  std::optional<Date> currentSyncErrorDate_;
  ErrorPtr currentSyncError_;
  NSNotificationCenter::Token eventChangedObserver_;
  const DispatchQueue ckQueue_{"velloro.domain.datamanager.cloudkit",
                               QualityOfService::userInteractive};
  std::shared_ptr<CKContainer> ckContainer_;
  NSNotificationCenter::Token ckObserver_;
  CKAccountStatus ckStatus_ = CKAccountStatus::couldNotDetermine;
};

}  // namespace velloro
