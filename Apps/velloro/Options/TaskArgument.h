#pragma once

#include "Host/HostStore.h"

#include <memory>
#include <string>

namespace CLI {
class App;
}

namespace velloro {

/// Adds `TASK`, which must be given.
void addTaskArgument(CLI::App& command, std::string& text);

/// The task of the store that a text names: by its title, its id, or the beginning of its id.
/// \throws UsageError, which names similar titles, if there is none or more than one.
[[nodiscard]] std::shared_ptr<TaskEntity> taskArgument(const HostStore& store,
                                                       const std::string& text);

/// The same, with the periods that are past at that instant closed in memory, for commands that
/// only read.
[[nodiscard]] std::shared_ptr<TaskEntity> currentTaskArgument(const HostStore& store,
                                                              const std::string& text, Date now);

}  // namespace velloro
