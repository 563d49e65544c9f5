#pragma once

#include "Foundation/Time/Date.h"
#include "Foundation/Values/Error.h"
#include "OxKit/Platform.h"

#include <optional>

namespace velloro {

/// That another store is being chosen, as all processes see it from before the first task is copied
/// until everything is done. Until then the former store is the active one, for every process, even
/// if the one that chose was killed. So the end of the choice is what makes the chosen store the
/// active one, everywhere at once.
struct StoreChoice {
  bool isCloud = false;  ///< The store that is chosen; the other one is the former.
  /// The chosen store has tasks of its own, which stay. Otherwise its tasks are only a copy, which
  /// is repeated if the choice is completed later, since the former store may have been written to.
  bool keepsTasks = false;
  /// What is copied is later in the history of the chosen store.
  Date began = Date::distantFuture();

  /// Absent if none is in progress.
  [[nodiscard]] static std::optional<StoreChoice> underWay();
  /// On failure, none is in progress.
  [[nodiscard]] Result<void> begin() const;
  /// On failure it is still under way, for other processes.
  [[nodiscard]] static Result<void> end();
};

}  // namespace velloro
