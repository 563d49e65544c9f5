#include "velloro/Options/GlobalOptions.h"

#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/Command.h"

#include <string_view>
#include <vector>

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

void GlobalOptions::addTo(const Command& app) {
  const Command every = app.group("Options of every command");
  every.option("--store", store, "DIR", "The folder of the store (default: the XDG data folder)");
  every.option("--now", now, "INSTANT", "Use this instant as the current time");
  every.option("--zone", zone, "ID", "Use this time zone instead of the device's");
  every.option("--process", process, "NAME",
               "Run in the place of that program: app (default), today, widget, siri, siriui, "
               "notification (default where a reminder is shown) or deviceactivity");
  every.option("--locale", locale, "ID", "Use this locale instead of the device's, such as de_DE");
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
