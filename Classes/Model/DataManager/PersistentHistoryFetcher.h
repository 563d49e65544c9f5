#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "OxKit/Platform.h"

#include <memory>

namespace velloro {

/// Reads what was saved since a bookmark, oldest first. On the context's queue. What a context with
/// a name or an author has saved itself, it doesn't get; one without either gets everything.
///
///     PersistentHistoryFetcher{context, now}.fetch()->transactions.size();    // 0: nothing since
struct PersistentHistoryFetcher {
  std::shared_ptr<NSManagedObjectContext> context;
  Date fromDate;

  /// Or the store's error.
  [[nodiscard]] Result<NSPersistentHistoryResult> fetch() const;
  /// What others than the context have saved.
  [[nodiscard]] NSFetchRequest fetchRequest() const;
};

}  // namespace velloro
