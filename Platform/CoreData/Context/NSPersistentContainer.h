#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "CoreData/Context/NSPersistentStoreCoordinator.h"

namespace platform {

/// A store with its model and its contexts.
///
///     NSPersistentContainer container("Library", libraryModel());
///     auto description = NSPersistentStoreDescription::initWithURL(libraryPath());
///     description.setOption(true, NSPersistentStoreRemoteChangeNotificationPostOptionKey);
///     container.setPersistentStoreDescriptions({description});
///     container.loadPersistentStores([](const auto& of, const ErrorPtr& error) {});
///     container.viewContext()->insert<BookEntity>();     // on the main queue
///     container.performBackgroundTask([](NSManagedObjectContext& context) {});
///
/// A container whose store could not be opened stays usable: fetches and saves fail with
/// `StoreError::Kind::notOpen`.
class NSPersistentContainer {
 public:
  /// Called for each description, with null or the reason why it could not be opened.
  using LoadHandler =
      std::function<void(const NSPersistentStoreDescription&, const ErrorPtr& error)>;
  using BackgroundTask = std::move_only_function<void(NSManagedObjectContext&)>;

  /// \param model Outlives the container and its contexts.
  NSPersistentContainer(std::string name, const NSManagedObjectModel& model);
  virtual ~NSPersistentContainer();
  NSPersistentContainer(const NSPersistentContainer&) = delete;
  NSPersistentContainer& operator=(const NSPersistentContainer&) = delete;

  [[nodiscard]] const std::string& name() const { return name_; }
  /// One; a coordinator opens no second store.
  void setPersistentStoreDescriptions(std::vector<NSPersistentStoreDescription> descriptions) {
    descriptions_ = std::move(descriptions);
  }
  [[nodiscard]] const std::vector<NSPersistentStoreDescription>& persistentStoreDescriptions()
      const {
    return descriptions_;
  }
  /// Opens the store, and returns when that is done and the handler was called.
  virtual void loadPersistentStores(const LoadHandler& handler);
  [[nodiscard]] const std::shared_ptr<NSPersistentStoreCoordinator>& persistentStoreCoordinator()
      const {
    return coordinator_;
  }

  /// The context of the main queue.
  [[nodiscard]] const std::shared_ptr<NSManagedObjectContext>& viewContext() const {
    return viewContext_;
  }
  /// A context with a queue of its own.
  [[nodiscard]] virtual std::shared_ptr<NSManagedObjectContext> newBackgroundContext();
  /// Runs the task later in a new background context, which goes with it.
  void performBackgroundTask(BackgroundTask task);

 private:
  std::string name_;
  std::vector<NSPersistentStoreDescription> descriptions_;
  std::shared_ptr<NSPersistentStoreCoordinator> coordinator_;
  std::shared_ptr<NSManagedObjectContext> viewContext_;
};

}  // namespace platform
