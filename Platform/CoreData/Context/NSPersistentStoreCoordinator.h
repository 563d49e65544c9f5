#pragma once

#include "CoreData/Context/NSPersistentStoreDescription.h"
#include "CoreData/Model/NSManagedObjectModel.h"
#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Values/Error.h"

#include <mutex>

namespace platform {

class NSManagedObjectContext;
class SqliteStore;
class StoreWatch;
struct StoreChanges;

/// Posted on a queue of the store when another process, the mirror or another container of this
/// process has saved; its object is the `NSPersistentStoreCoordinator`. What was saved is in the
/// history. One notification may stand for several saves.
inline constexpr const char* NSPersistentStoreRemoteChangeNotification =
    "NSPersistentStoreRemoteChangeNotification";

/// What the contexts of a container have in common: the model and the open store. Its address is
/// the container's identity in notifications. From any thread.
class NSPersistentStoreCoordinator
    : public std::enable_shared_from_this<NSPersistentStoreCoordinator> {
 public:
  /// \param model Outlives the coordinator.
  explicit NSPersistentStoreCoordinator(const NSManagedObjectModel& model);
  ~NSPersistentStoreCoordinator();
  NSPersistentStoreCoordinator(const NSPersistentStoreCoordinator&) = delete;
  NSPersistentStoreCoordinator& operator=(const NSPersistentStoreCoordinator&) = delete;

  [[nodiscard]] const NSManagedObjectModel& managedObjectModel() const { return model_; }
  /// The files of the open stores: one, or none; empty names for stores in memory.
  [[nodiscard]] std::vector<std::filesystem::path> persistentStores() const;

  /// Opens the store. A coordinator has one: a second is refused.
  [[nodiscard]] Result<void> addPersistentStore(const NSPersistentStoreDescription& description);

  /// What is wrong with the open store's file, a line each; nothing when it is sound. Reads all of
  /// it.
  [[nodiscard]] Result<std::vector<std::string>> check() const;
  /// Copies the open store as it is now, with its history, into one file that does not exist yet;
  /// others may write meanwhile.
  [[nodiscard]] Result<void> copyStore(const std::filesystem::path& to) const;

  /// Whether the open store's file has changed since it was opened, so that what was read of it at
  /// rest may not fit together.
  [[nodiscard]] bool hasBeenWritten() const;

  /// Checks the history immediately, and posts the notification before it returns if there is
  /// something new from others; within a transaction, soon after it. The coordinator also does so
  /// whenever another writer wakes it; call this function to be certain.
  void checkForRemoteChanges();

 private:
  friend class NSManagedObjectContext;
  friend class SaveOperation;

  [[nodiscard]] std::shared_ptr<SqliteStore> store() const;
  void add(const std::shared_ptr<NSManagedObjectContext>& context);
  void scheduleCheck();
  void postRemoteChange();
  void storeWasReplaced();
  [[nodiscard]] std::vector<std::shared_ptr<NSManagedObjectContext>> contexts() const;
  [[nodiscard]] std::shared_ptr<StoreWatch> beginWatch(const SqliteStore& store);
  void didSave(const NSManagedObjectContext& context, const StoreChanges& changes,
               std::int64_t transaction, bool othersHaveSaved);

  const NSManagedObjectModel& model_;
  const DispatchQueue queue_{"coredata.remote-changes", QualityOfService::userInitiated};
  mutable std::mutex mutex_;
  std::shared_ptr<SqliteStore> store_;
  std::shared_ptr<StoreWatch> watch_;  // null where nobody asked for it
  std::vector<std::weak_ptr<NSManagedObjectContext>> contexts_;
};

}  // namespace platform
