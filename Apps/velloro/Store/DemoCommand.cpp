#include "velloro/Store/DemoCommand.h"

#include "Host/Demo.h"
#include "velloro/Options/Command.h"

namespace velloro {

void addDemoCommand(const Command& app) {
  const Command command =
      app.subcommand("demo", "Fills an empty store with eight example tasks and 120 days of log");
  command.footer(
      "Example:\n"
      "  velloro demo --store tryout && velloro status --store tryout");
  command.runs([] { fillDemoStore(HostStore()); });
}

}  // namespace velloro
