#pragma once

#include "CoreData/NSManagedObjectContext.h"
#include "Foundation/UUID.h"
#include "OxKit/Platform.h"

#include <optional>

namespace velloro {

/// Cleans up after the mirror has brought in rows of other devices: provisional log entries whose
/// real twin has arrived go, and what is kept of those tasks' logs follows.
///
///     container->performBackgroundTask([id](NSManagedObjectContext& context) {
///       TaskDeduplicator{id}.run(context);
///     });
struct TaskDeduplicator {
  std::optional<UUID> deduplicationId = std::nullopt;  ///< Of the run: the mirror's event.

  /// On the context's queue. A failure is logged, and nothing is changed then.
  void run(NSManagedObjectContext& context) const;
};

}  // namespace velloro
