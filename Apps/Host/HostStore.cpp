#include "Host/HostStore.h"

#include "Foundation/NSFileManager.h"
#include "Tasks/TaskFetchRequest.h"
#include "Tasks/VelloroModel.h"

namespace velloro {
namespace {

constexpr const char* groupIdentifier = "group.velloro.app.today";

}  // namespace

HostStore::HostStore() : container_(velloroModelName, velloroModel()) {
  container_.setPersistentStoreDescriptions({NSPersistentStoreDescription::initWithURL(file())});
  container_.loadPersistentStores([](const auto& of, const ErrorPtr& error) {
    if (error == nullptr) return;
    throw HostError("the store \"" + of.url.string() +
                    "\" can't be opened: " + error->localizedDescription());
  });
  context().setMergePolicy(NSMergePolicy::mergeByPropertyObjectTrump);
  context().setName("viewContext");
  context().setTransactionAuthor("app");
}

std::filesystem::path HostStore::file() {
  const auto folder =
      NSFileManager::containerURLForSecurityApplicationGroupIdentifier(groupIdentifier);
  if (!folder) throw HostError("the store's folder can't be made");
  return *folder / "Velloro-CloudKit.sqlite";
}

std::vector<std::shared_ptr<TaskEntity>> HostStore::tasks(
    const EnumSet<TaskStatus>& statuses) const {
  const TaskFetchRequest request{.direction = TaskFetchRequest::SortDirection::displayOrder,
                                 .includeStatuses = statuses};
  auto tasks = context().fetch<TaskEntity>(request.fetchRequest());
  if (!tasks) throw HostError("the tasks can't be read: " + tasks.error()->localizedDescription());
  return *std::move(tasks);
}

void HostStore::save() const {
  if (!context().hasChanges()) return;
  const auto saved = context().save();
  if (!saved) throw HostError("nothing was saved: " + saved.error()->localizedDescription());
}

}  // namespace velloro
