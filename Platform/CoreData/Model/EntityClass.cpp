#include "CoreData/Model/EntityClass.h"

#include "CoreData/Context/NSManagedObjectContext.h"
#include "CoreData/Context/NSPersistentStoreCoordinator.h"
#include "CoreData/Model/NSManagedObjectModel.h"

namespace platform {

const NSEntityDescription* entityNamed(std::string_view name,
                                       const NSManagedObjectContext& context) {
  return context.persistentStoreCoordinator()->managedObjectModel().entity(name);
}

std::shared_ptr<NSManagedObject> insertObject(std::string_view entityName,
                                              NSManagedObjectContext& context) {
  return context.insert(entityName);
}

}  // namespace platform
