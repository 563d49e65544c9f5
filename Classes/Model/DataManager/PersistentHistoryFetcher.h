#pragma once

#include "CoreData/NSManagedObjectContext.h"
#include "OxKit/Platform.h"

#include <memory>
#include <vector>

namespace velloro {

/// Reads what was saved since a bookmark, oldest first. On the context's queue. What a context with
/// a name or an author has saved itself, it doesn't get; one without either gets everything.
///
///     const auto transactions = PersistentHistoryFetcher{context, bookmark}.fetch();
struct PersistentHistoryFetcher {
  std::shared_ptr<NSManagedObjectContext> context;
  Date fromDate;

  /// Or the store's error.
  [[nodiscard]] Result<std::vector<NSPersistentHistoryTransaction>> fetch() const;
};

}  // namespace velloro
