#include "velloro/Store/WatchCommand.h"

#include "Foundation/Process/Interrupts.h"
#include "Foundation/Process/MainLoop.h"
#include "Host/HostStore.h"
#include "velloro/Options/Command.h"
#include "velloro/Output/Output.h"
#include "velloro/Store/WatchReport.h"

#include <cstdio>

namespace velloro {
namespace {

struct WatchOptions {
  bool json = false;
};

void tell(const Notification& merged, NSManagedObjectContext& context, bool json) {
  for (const WatchedChange& change : WatchedChange::of(merged, context)) {
    print(json ? change.json() : change.text());
  }
  std::fflush(stdout);
}

void run(const WatchOptions& options) {
  auto& loop = Environment::current().mainLoop();
  onInterrupt([&loop] { loop.stop(); });
  const HostStore store;
  NSNotificationCenter::Token token;
  // What was saved before is taken over first, and not told.
  DataManager::shared().observer()->processPersistentHistory();
  DispatchQueue::main().async([&] {
    token = NSNotificationCenter::defaultCenter().addObserver(
        NSManagedObjectContext::didMergeChangesObjectIDsNotification, &store.context(),
        std::nullopt,
        [&](const Notification& merged) { tell(merged, store.context(), options.json); });
    Environment::current().report("watching; Ctrl-C ends");
  });
  loop.run();
}

}  // namespace

void addWatchCommand(const Command& app) {
  const auto [command, options] = app.subcommand(
      "watch", "Prints what other processes save, as it arrives, until interrupted", run);
  command.json(options.json, "Prints one JSON object per line");
  command.footer(
      "+ inserted, ~ updated, - deleted rows. Each process has its own place in the store's\n"
      "history; --process chooses whose.\n\n"
      "Examples:\n"
      "  velloro watch\n"
      "  velloro watch --process widget --json");
}

}  // namespace velloro
