#pragma once

#include <memory>

#include <CLI/CLI.hpp>

namespace velloro {

/// Adds a command with the flag `--json`, which runs `work` with the options that were given.
///
///     struct Options { bool json = false; };
///     CLI::App command;
///     addSubcommand<Options>(command, "list", "Lists the tasks", std::make_shared<Options>(),
///                            [](const Options& options) {});
template <typename Options>
CLI::App* addSubcommand(CLI::App& command, const char* name, const char* help,
                        const std::shared_ptr<Options>& options, void (*work)(const Options&)) {
  CLI::App* added = command.add_subcommand(name, help);
  added->add_flag("--json", options->json, "Prints JSON")->disable_flag_override();
  added->callback([options, work] { work(*options); });
  return added;
}

}  // namespace velloro
