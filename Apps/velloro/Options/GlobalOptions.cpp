#include "velloro/Options/GlobalOptions.h"

#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"

#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct ProcessRow {
  std::string_view name;
  const char* identifier;
};

constexpr ProcessRow processes[] = {
    {"app", "velloro.app"},
    {"today", "velloro.app.today"},
    {"widget", "velloro.app.widgets"},
    {"siri", "velloro.app.siri"},
    {"siriui", "velloro.app.siriui"},
    {"notification", "velloro.app.notification"},
    {"deviceactivity", "velloro.app.deviceactivity"},
};

std::string bundleIdentifier(const std::string& process) {
  std::vector<std::string_view> names;
  for (const auto& [name, identifier] : processes) {
    if (name == lowercased(process)) return identifier;
    names.push_back(name);
  }
  throw unknownName("--process", process, "process", names);
}

}  // namespace

void GlobalOptions::addTo(CLI::App& app) {
  const std::string group = "Options of every command";
  app.add_option("--store", store, "The folder of the store (default: the XDG data folder)")
      ->type_name("DIR")
      ->group(group);
  app.add_option("--now", now, "Use this instant as the current time")
      ->type_name("INSTANT")
      ->group(group);
  app.add_option("--zone", zone, "Use this time zone instead of the device's")
      ->type_name("ID")
      ->group(group);
  app.add_option("--process", process,
                 "Run in the place of that program: app (default), today, widget, siri, siriui, "
                 "notification (default where a reminder is shown) or deviceactivity")
      ->type_name("NAME")
      ->group(group);
  app.add_option("--locale", locale, "Use this locale instead of the device's, such as de_DE")
      ->type_name("ID")
      ->group(group);
}

ProcessEnvironment::Options GlobalOptions::environment(const std::string& usualProcess) const {
  ProcessEnvironment::Options options{
      .bundle = {.identifier = bundleIdentifier(process.value_or(usualProcess)),
                 .shortVersion = VELLORO_VERSION,
                 .version = "1"}};
  if (now) options.now = instantArgument("--now", *now);
  if (zone) options.timeZone = zoneArgument("--zone", *zone);
  if (store) options.root = folderArgument("--store", *store);
  if (locale) options.localeIdentifier = localeArgument("--locale", *locale);
  return options;
}

}  // namespace velloro
