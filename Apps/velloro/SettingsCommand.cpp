#include "velloro/SettingsCommand.h"

#include "Foundation/JSON.h"
#include "Host/HostStore.h"
#include "Host/StoreSwitch.h"
#include "Settings/SettingsStorageCoreData.h"
#include "velloro/Arguments.h"
#include "velloro/Output.h"
#include "velloro/SettingsArgument.h"
#include "velloro/SettingsReport.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct SettingsOptions {
  std::string key, value;
  bool all = false;
  bool json = false;
};

/// What a store that can't be opened holds is nothing that the person set: they are told.
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
  print(options.json ? JSONEncoder{}.encode(reports) + "\n" : table(reports));
}

void tell(const SettingsOptions& options, const Setting& setting) {
  const auto report = read(setting);
  print(options.json ? JSONEncoder{}.encode(report) + "\n" : table({report}));
}

void get(const SettingsOptions& options) {
  tell(options, settingArgument(options.key));
}

/// The choice of the store is the application's, and tasks follow it.
void chooseStoreAndTell(bool isCloud) {
  const auto [copied, found] = chooseStore(DataManager::shared(), isCloud);
  Environment& environment = Environment::current();
  if (copied > 0)
    environment.report("tasks copied into the chosen store: " + std::to_string(copied));
  if (found > 0) {
    environment.report("the chosen store has tasks of its own: " + std::to_string(found) +
                       "; nothing was copied");
  }
}

/// What is in memory must be in the store as well: the tier itself only logs a failure.
void expectSaved(const SettingsStorage& storage, const Setting& setting) {
  auto* const cloud = dynamic_cast<SettingsStorageCoreData*>(storage.cloudStorage());
  if (cloud == nullptr || &storage.container(setting) != cloud) return;
  const JSONEncoder encoder{};
  const std::string written = encoder.encode(SettingsReport::of(storage, setting));
  cloud->updateSettings();
  if (encoder.encode(SettingsReport::of(storage, setting)) == written) return;
  throw HostError("\"" + settingName(setting) + "\" was not saved: the store can't be written now");
}

void write(const Setting& setting, const std::optional<std::string>& value) {
  auto& storage = SettingsStorage::shared();
  if (setting != Setting(Setting::cloudSyncTasksEnabled)) {
    setArgument(storage, setting, value);
    return expectSaved(storage, setting);
  }
  if (storage.isExtension()) throw UsageError("--process: only the application chooses the store");
  chooseStoreAndTell(value && flagArgument(*value));
}

void set(const SettingsOptions& options) {
  const Setting setting = settingArgument(options.key);
  write(setting, options.value);
  tell(options, setting);
}

void unset(const SettingsOptions& options) {
  const Setting setting = settingArgument(options.key);
  write(setting, std::nullopt);
  tell(options, setting);
}

}  // namespace

void addSettingsCommand(CLI::App& app) {
  auto options = std::make_shared<SettingsOptions>();
  CLI::App* command = app.add_subcommand("settings", "Tells what is set, and sets it");
  command->require_subcommand(1);
  const auto add = [&](const char* name, const char* description,
                       void (*work)(const SettingsOptions&)) {
    CLI::App* part = command->add_subcommand(name, description);
    part->add_flag("--json", options->json, "Prints JSON")->disable_flag_override();
    part->callback([options, work] { work(*options); });
    return part;
  };
  const auto addOfOne = [&](const char* name, const char* description,
                            void (*work)(const SettingsOptions&)) {
    CLI::App* part = add(name, description, work);
    part->add_option("key", options->key, "A setting's name, or the key it is stored under")
        ->type_name("KEY")
        ->required();
    return part;
  };
  add("list", "Lists the settings that have a value, and the tier each is read from", list)
      ->add_flag("--all", options->all, "Those without a value as well")
      ->disable_flag_override();
  addOfOne("get", "Tells the value of one setting, and the tier it is read from", get);
  addOfOne("set", "Sets one, and tells it as it is then read", set)
      ->add_option("value", options->value,
                   "true or false, a number, a text or JSON, by the setting; a start of day also "
                   "as 04:00:00")
      ->type_name("VALUE")
      ->required();
  addOfOne("unset", "Takes the value of one away", unset);
  command->footer(
      "Tiers: local is this program's own, shared is the copy for its extensions, cloud is what "
      "all\n"
      "devices share.\n\n"
      "Examples:\n"
      "  velloro settings list --all --json\n"
      "  velloro settings set startOfDay 04:00:00\n"
      "  velloro settings get Settings_StartOfDay\n"
      "  velloro settings set selectedTheme.2 blue.white\n"
      "  velloro settings unset selectedTheme.2");
}

}  // namespace velloro
