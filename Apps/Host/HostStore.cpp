#include "Host/HostStore.h"

#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Text/String.h"
#include "Host/NotificationUpdates.h"
#include "Host/StoreSwitch.h"
#include "Host/TimedTaskHost.h"
#include "OxLog/Log.h"
#include "Settings/Settings.h"
#include "Tasks/Requests/TaskFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"

namespace velloro {
namespace {

std::vector<std::shared_ptr<TaskEntity>> fetched(NSManagedObjectContext& context,
                                                 TaskFetchRequest request) {
  request.direction = TaskFetchRequest::SortDirection::displayOrder;
  auto tasks = context.fetch<TaskEntity>(request.fetchRequest());
  if (!tasks) throw HostError("the tasks can't be read: " + tasks.error()->localizedDescription());
  return *std::move(tasks);
}

}  // namespace

HostStore::HostStore() {
  openActiveStore();
}

void HostStore::openActiveStore() const {
  container_ = DataManager::shared().activePersistentContainer();
  if (const ErrorPtr& error = container_->loadError()) {
    throw HostError("the store can't be opened: " + error->localizedDescription());
  }
}

std::filesystem::path HostStore::existingFile() {
  auto file = DataManager::activeStoreUrl();
  if (!NSFileManager::exists(file)) {
    throw HostError("there is no store " + inQuotes(file.string()));
  }
  return file;
}

std::vector<std::shared_ptr<TaskEntity>> HostStore::tasks(
    const EnumSet<TaskStatus>& statuses) const {
  return fetched(context(), {.includeStatuses = statuses});
}

std::shared_ptr<TaskEntity> HostStore::task(const UniqueID& id) const {
  const auto found = fetched(context(), {.uniqueIds = {id}});
  return found.empty() ? nullptr : found.front();
}

StoreUse HostStore::beginWriting() const {
  // When they are first read, the settings may remove twins of their rows, and that is a
  // transaction of its own.
  static_cast<void>(SettingsStorage::shared());
  finishChoosingStore(DataManager::shared());
  logExpiredRuns(*this);
  auto access = StoreUse::toWrite();
  if (!access) throwUnsaved(access.error());
  openActiveStore();
  return *std::move(access);
}

namespace {

/// The tier that other processes change; null where this one does not read it.
SettingsStorageContainer* cloudSettings() {
  const SettingsStorage& storage = SettingsStorage::shared();
  const bool isCloudRead = !storage.isExtension() && storage.isCloudStored(Setting::startOfDay);
  return isCloudRead ? storage.cloudStorage() : nullptr;
}

}  // namespace

std::unique_lock<std::recursive_mutex> HostStore::holdSettings() {
  const auto* const cloud = cloudSettings();
  return cloud != nullptr ? cloud->holdWrites() : std::unique_lock<std::recursive_mutex>();
}

void HostStore::readSettings() {
  if (auto* const cloud = cloudSettings()) {
    if (const auto read = cloud->refresh(); !read) throwUnsaved(read.error());
  }
  Settings::shared().reload();
}

void HostStore::noteChanges() const {
  NotificationUpdates::shared().note(context());
}

void HostStore::throwUnsaved(const ErrorPtr& error) {
  Log::database.error(error);
  throw HostError("nothing was saved: " + error->localizedDescription());
}

}  // namespace velloro
