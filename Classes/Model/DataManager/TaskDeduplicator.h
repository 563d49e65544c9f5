#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "Foundation/Values/UUID.h"
#include "OxKit/Platform.h"

#include <optional>

namespace velloro {

/// Cleans up after the mirror has brought in rows of other devices: provisional log entries whose
/// real twin has arrived go, then the twins of closing entries, and what is kept of the logs that
/// have changed follows. Where nothing differs, nothing is written.
///
///     container->performBackgroundTask([](NSManagedObjectContext& context) {
///       TaskDeduplicator{}.run(context);
///     });
struct TaskDeduplicator {
  std::optional<UUID> deduplicationId = std::nullopt;  ///< Of the run: the mirror's event.

  /// On the context's queue. A failure is logged and ends the run; what is not done yet then stays
  /// as it was. Returns whether all is done.
  /// \param since Tasks whose logs have changed since then, by the store's history, are included.
  bool run(NSManagedObjectContext& context, Date since = Date::distantPast()) const;
};

}  // namespace velloro
