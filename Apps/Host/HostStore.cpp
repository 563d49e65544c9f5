#include "Host/HostStore.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/String.h"
#include "Host/StoreSwitch.h"
#include "OxLog/Log.h"
#include "Settings/SettingsStorage.h"
#include "Tasks/TaskFetchRequest.h"

namespace velloro {

HostStore::HostStore() {
  finishChoosingStore(DataManager::shared());
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
  const TaskFetchRequest request{.direction = TaskFetchRequest::SortDirection::displayOrder,
                                 .includeStatuses = statuses};
  auto tasks = context().fetch<TaskEntity>(request.fetchRequest());
  if (!tasks) throw HostError("the tasks can't be read: " + tasks.error()->localizedDescription());
  return *std::move(tasks);
}

StoreUse HostStore::beginWriting() const {
  // When they are first read, the settings may remove twins of their rows, and that is a
  // transaction of its own.
  static_cast<void>(SettingsStorage::shared());
  auto access = StoreUse::toWrite();
  if (!access) throwUnsaved(access.error());
  openActiveStore();
  return *std::move(access);
}

void HostStore::throwUnsaved(const ErrorPtr& error) {
  Log::database.error(error);
  throw HostError("nothing was saved: " + error->localizedDescription());
}

}  // namespace velloro
