#include "velloro/Store/DemoCommand.h"

#include "Host/Demo.h"

#include <CLI/CLI.hpp>

namespace velloro {

void addDemoCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(
      "demo", "Fills an empty store with eight tasks and 120 days of log, to try things with");
  command->footer(
      "Example:\n"
      "  velloro demo --store tryout && velloro status --store tryout");
  command->callback([] { fillDemoStore(HostStore()); });
}

}  // namespace velloro
