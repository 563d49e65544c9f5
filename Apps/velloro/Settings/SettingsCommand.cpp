#include "velloro/Settings/SettingsCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Host/NotificationUpdates.h"
#include "Host/StoreSwitch.h"
#include "OxLog/LogManager.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Output/Output.h"
#include "velloro/Settings/DebugLogChoice.h"
#include "velloro/Settings/SettingRule.h"
#include "velloro/Settings/SettingsArgument.h"
#include "velloro/Settings/SettingsReport.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

struct SettingsOptions {
  std::string key, value;
  bool all = false;
  bool json = false;
};

/// Where the store can't be opened, the defaults must not be taken for what the person has set.
SettingsReport read(const Setting& setting) {
  auto report = SettingsReport::of(SettingsStorage::shared(), setting);
  if (report.tier == SettingSource::cloud) (void)HostStore();
  return report;
}

void list(const SettingsOptions& options) {
  std::vector<SettingsReport> reports;
  for (const Setting& setting : listedSettings()) {
    auto report = read(setting);
    if (options.all || report.hasValue()) reports.push_back(std::move(report));
  }
  if (auto log = debugLogReport(); options.all || log.hasValue()) reports.push_back(std::move(log));
  print(options.json ? JSONEncoder{}.encode(reports) + "\n" : table(reports, /*isDescribed=*/true));
}

void showOne(const SettingsOptions& options) {
  const bool isLog = options.key == debugLogName;
  const auto report = isLog ? debugLogReport() : read(settingArgument(options.key));
  print(options.json ? JSONEncoder{}.encode(report) + "\n" : table({report}));
}

/// The choice of the store is the application's, and tasks follow it.
void chooseStoreAndReport(bool isCloud) {
  const auto [copied, found] = chooseStore(DataManager::shared(), isCloud);
  Environment& environment = Environment::current();
  if (copied > 0)
    environment.report("tasks copied into the chosen store: " + std::to_string(copied));
  if (found > 0) {
    environment.report("the chosen store has tasks of its own: " + std::to_string(found) +
                       "; nothing was copied");
  }
}

/// The tiers themselves only log a failure.
void expectSaved(const std::string& name, const ErrorPtr& error) {
  if (error == nullptr) return;
  throw HostError(inQuotes(name) + " was not saved: " + error->localizedDescription());
}

void writeDebugLog(const std::optional<std::string>& value) {
  chooseDebugLog(value);
  expectSaved(std::string(debugLogName), NSUserDefaults::standardUserDefaults().saveError());
  const auto& file = LogManager::shared().debugLogUrl();
  if (value) Environment::current().report("log lines are written to " + inQuotes(file.string()));
}

void write(const std::string& key, const std::optional<std::string>& value) {
  if (key == debugLogName) return writeDebugLog(value);
  const Setting setting = settingArgument(key);
  auto& storage = SettingsStorage::shared();
  finishChoosingStore(DataManager::shared());  // which moves settings
  if (setting.name != Setting::cloudSyncTasksEnabled) {
    setArgument(storage, setting, value);
    NotificationUpdates::shared().noteSettings();
    expectSaved(settingName(setting), SettingsStorage::saveError());
  } else if (storage.isExtension()) {
    throw UsageError("--process: only the application chooses the store");
  } else {
    if (value) SettingRule::of(setting.name).expect(*value);
    chooseStoreAndReport(value == "true");
  }
}

void set(const SettingsOptions& options) {
  write(options.key, options.value);
  showOne(options);
}

void unset(const SettingsOptions& options) {
  write(options.key, std::nullopt);
  showOne(options);
}

}  // namespace

void addSettingsCommand(const Command& app) {
  const Command family = app.subcommand("settings", "Lists, shows and changes the settings");
  const auto addOfOne = [&](const char* name, const char* help,
                            void (*work)(const SettingsOptions&)) {
    const auto part = family.subcommand(name, help, work);
    part.command.json(part.options.json);
    part.command
        .option("key", part.options.key, "KEY", "A setting's name, or the key it is stored under")
        .required();
    return part;
  };
  const auto listing = family.subcommand(
      "list", "Lists the settings that have a value, with tier, description and default", list);
  listing.command.json(listing.options.json);
  listing.command.flag("--all", listing.options.all, "Also list settings without a value");
  addOfOne("get", "Shows the value of a setting, and the tier it is read from", showOne);
  const auto setting = addOfOne("set", "Changes a setting, and shows it as it is then read", set);
  setting.command
      .option("value", setting.options.value, "VALUE",
              "true or false, a number, a text or JSON, by the setting; a start of day also as "
              "4:00 or 04:00:00")
      .required();
  addOfOne("unset", "Removes the value of a setting", unset);
  family.footer(
      "Tiers: local is this program's own, shared is the copy for its extensions, and cloud is\n"
      "what all devices share.\n\n"
      "Examples:\n"
      "  velloro settings list --all --json\n"
      "  velloro settings set startOfDay 04:00:00\n"
      "  velloro settings get Settings_StartOfDay\n"
      "  velloro settings set selectedTheme.2 blue.white\n"
      "  velloro settings unset selectedTheme.2\n"
      "  velloro settings set debugLog debug                  every line, in debug.log\n"
      "  velloro settings set debugLog info:database,settings those of some categories\n"
      "  velloro settings unset debugLog");
}

}  // namespace velloro
