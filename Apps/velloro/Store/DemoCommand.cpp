#include "velloro/Store/DemoCommand.h"

#include "Host/Demo.h"

#include <CLI/CLI.hpp>

namespace velloro {

void addDemoCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(
      "demo", "Fills an empty store with eight example tasks and 120 days of log");
  command->footer(
      "Example:\n"
      "  velloro demo --store tryout && velloro status --store tryout");
  command->callback([] { fillDemoStore(HostStore()); });
}

}  // namespace velloro
