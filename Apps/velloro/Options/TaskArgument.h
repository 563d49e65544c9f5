#pragma once

#include "Host/HostStore.h"
#include "velloro/Options/Command.h"

#include <memory>
#include <string>

namespace velloro {

/// Adds `TASK`, which must be given.
void addTaskArgument(const Command& command, std::string& text);

/// Adds a command for one task: with `--json` and `TASK`.
template <typename Options>
CommandWithOptions<Options> addTaskSubcommand(const Command& family, const char* name,
                                              const char* help, void (*work)(const Options&)) {
  const auto added = family.subcommand(name, help, work);
  added.command.json(added.options.json);
  addTaskArgument(added.command, added.options.task);
  return added;
}

/// The task of the store that a text names: by its title, its id, or the beginning of its id.
/// \throws UsageError, which names similar titles, if there is none or more than one.
[[nodiscard]] std::shared_ptr<TaskEntity> taskArgument(const HostStore& store,
                                                       const std::string& text);

/// The same, with the periods that are past at that instant closed in memory, for commands that
/// only read.
[[nodiscard]] std::shared_ptr<TaskEntity> currentTaskArgument(const HostStore& store,
                                                              const std::string& text, Date now);

}  // namespace velloro
