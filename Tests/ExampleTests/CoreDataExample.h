#pragma once

#include "CoreData/Context/NSManagedRow.h"
#include "ExampleTests/Example.h"
#include "Support/Library.h"

namespace platform {

/// A library with a book.
class CoreDataExample : public Example {
 protected:
  Library library{NSPersistentStoreDescription::inMemory()};
  std::shared_ptr<NSManagedObjectContext> context = library.viewContext();
  Book book = newBook(*context, "Emma");
};

}  // namespace platform
