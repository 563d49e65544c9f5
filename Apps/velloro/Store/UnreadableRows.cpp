#include "velloro/Store/UnreadableRows.h"

#include "CoreData/Context/NSPersistentStoreCoordinator.h"
#include "CoreData/Model/NSManagedObjectModel.h"
#include "Foundation/Values/Try.h"

namespace velloro {
namespace {

/// By attribute in the order of their declaration, and then by row.
void addFindings(std::vector<std::string>& findings, const NSEntityDescription& entity,
                 const NSManagedObject::Objects& rows) {
  for (std::size_t slot = 0; slot < entity.attributes().size(); ++slot) {
    for (const auto& row : rows) {
      if (row->canRead(slot)) continue;
      findings.push_back("can't be read: " + entity.name() + " " +
                         std::to_string(row->objectID().key) + " " +
                         entity.attributes()[slot].name);
    }
  }
}

}  // namespace

Result<std::vector<std::string>> unreadableRows(NSManagedObjectContext& context) {
  std::vector<std::string> findings;
  const auto& model = context.persistentStoreCoordinator()->managedObjectModel();
  for (const NSEntityDescription* entity : model.entities()) {
    const auto rows = TRY(context.fetch(NSFetchRequest(entity->name())));
    addFindings(findings, *entity, rows);
  }
  return findings;
}

}  // namespace velloro
