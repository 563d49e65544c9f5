#include "Host/HostStore.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/String.h"
#include "OxLog/Log.h"
#include "Settings/SettingsStorage.h"
#include "Tasks/TaskFetchRequest.h"

namespace velloro {

HostStore::HostStore() {
  openActiveStore();
}

void HostStore::openActiveStore() const {
  container_ = DataManager::shared().activePersistentContainer();
  if (const ErrorPtr& error = container_->loadError()) {
    throw HostError("the store can't be opened: " + error->localizedDescription());
  }
}

HostStore HostStore::existing() {
  const auto urls = DataManager::StoreUrls::make();
  const auto& [legacy, cloud, local] = urls;
  if (!NSFileManager::exists(cloud) && !NSFileManager::exists(local)) {
    throw HostError("there is no store " + inQuotes(cloud.string()));
  }
  return {};
}

std::vector<std::shared_ptr<TaskEntity>> HostStore::tasks(
    const EnumSet<TaskStatus>& statuses) const {
  const TaskFetchRequest request{.direction = TaskFetchRequest::SortDirection::displayOrder,
                                 .includeStatuses = statuses};
  auto tasks = context().fetch<TaskEntity>(request.fetchRequest());
  if (!tasks) throw HostError("the tasks can't be read: " + tasks.error()->localizedDescription());
  return *std::move(tasks);
}

StoreAccess HostStore::beginWriting() const {
  // When they are first read, the settings may remove twins of their rows, and that is a
  // transaction of its own.
  static_cast<void>(SettingsStorage::shared());
  auto access = StoreAccess::toWrite();
  if (!access) throwUnsaved(access.error());
  openActiveStore();
  return *std::move(access);
}

void HostStore::throwUnsaved(const ErrorPtr& error) {
  Log::database.error(error);
  throw HostError("nothing was saved: " + error->localizedDescription());
}

}  // namespace velloro
