#pragma once

#include "Foundation/Time/Date.h"
#include "Foundation/Values/UUID.h"
#include "OxKit/Platform.h"

#include <string>
#include <vector>

namespace velloro {

/// The clean-ups after imports that are not done yet, as all processes see them: whoever cleans up
/// next does what a process that was killed, or that failed, has left undone.
///
///     PendingCleanUps::add(UUID{}, now);
///     const auto pending = PendingCleanUps::kept();
///     if (TaskDeduplicator{}.run(*context, pending.since)) pending.remove();
struct PendingCleanUps {
  Date since = Date::distantFuture();  ///< When the first of their imports began.

  [[nodiscard]] static PendingCleanUps kept();
  [[nodiscard]] bool isEmpty() const { return keys_.empty(); }

  /// \param since From when on the import may have written.
  static void add(const UUID& id, Date since);
  /// Of those that were added later by another process, none.
  void remove() const;

 private:
  std::vector<std::string> keys_;
};

}  // namespace velloro
