#include "velloro/GlobalOptions.h"

#include "velloro/Arguments.h"

#include <CLI/CLI.hpp>

namespace velloro {

void GlobalOptions::addTo(CLI::App& app) {
  const std::string group = "Options of every command";
  app.add_option("--store", store, "Folder of the store (default: the XDG data folder)")
      ->type_name("DIR")
      ->group(group);
  app.add_option("--now", now, "Take this instant for now")->type_name("INSTANT")->group(group);
  app.add_option("--zone", zone, "Take this time zone for the device's")
      ->type_name("ID")
      ->group(group);
  app.add_option("--locale", locale, "Take this locale for the device's, such as de_DE")
      ->type_name("ID")
      ->group(group);
}

ProcessEnvironment::Options GlobalOptions::environment() const {
  ProcessEnvironment::Options options{
      .bundle = {.identifier = "velloro.app", .shortVersion = VELLORO_VERSION, .version = "1"}};
  if (now) options.now = instantArgument("--now", *now);
  if (zone) options.timeZone = zoneArgument("--zone", *zone);
  if (store) options.root = folderArgument("--store", *store);
  if (locale) options.localeIdentifier = localeArgument("--locale", *locale);
  return options;
}

}  // namespace velloro
