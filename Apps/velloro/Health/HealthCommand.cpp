#include "velloro/Health/HealthCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/ProgressLine.h"
#include "Health/HealthManager.h"
#include "HealthImport/HealthImport.h"
#include "Host/HealthReader.h"
#include "Host/HealthUpdates.h"
#include "Host/HostStore.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "velloro/Health/HealthReport.h"
#include "velloro/Health/SampleArguments.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/NameList.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

template <typename T>
T valueOf(Result<T> result) {
  if (!result) throw HostError("the health data: " + result.error()->localizedDescription());
  return *std::move(result);
}

struct AddOptions {
  SampleArguments sample;
  bool json = false;
};

void add(const AddOptions& options) {
  const HostStore store;
  const HKSample sample = options.sample.sample(store, Date::now());
  auto saved = sample;
  saved.uuid = UUID::random();
  if (saved.source.bundleIdentifier.empty()) saved.source.bundleIdentifier = ownBundleIdentifier;
  const auto written = valueOf(HealthManager::shared().store()->save({saved}));
  readChangedHealth(Date::now());
  const auto report = SampleReport::of(saved);
  if (options.json) return print(JSONEncoder{}.encode(report) + "\n");
  print((written.added > 0 ? "Added " : "Known already: ") + table(std::vector{report}));
}

struct ImportOptions {
  std::string file;
  std::string from = "auto";
  bool json = false;
};

std::optional<HealthImportForm> formArgument(const std::string& text) {
  if (text == "auto") return std::nullopt;
  if (text == "export") return HealthImportForm::export_;
  if (text == "csv") return HealthImportForm::csv;
  if (text == "gadgetbridge") return HealthImportForm::gadgetbridge;
  throw unknownName("--from", text, "form", {"auto", "export", "csv", "gadgetbridge"});
}

void import(const ImportOptions& options) {
  const auto form = formArgument(options.from);
  const HostStore store;
  const auto imported =
      importHealthData(*HealthManager::shared().store(), options.file, form, progressLine());
  readChangedHealth(Date::now());
  print(options.json ? JSONEncoder{}.encode(imported.report) + "\n" : text(imported.report));
  if (imported.error) throw HostError(imported.error->localizedDescription());
}

struct ListOptions {
  std::optional<std::string> type, from, to;
  bool json = false;
};

std::vector<OxHKSampleType> allSampleTypes() {
  std::vector<OxHKSampleType> types = {OxHKSampleType::workout(), OxHKSampleType::audiogram(),
                                       OxHKSampleType::electrocardiogram()};
  for (const auto one : allCases<OxHKSampleType::QuantityType>()) {
    types.push_back(OxHKSampleType::quantity(one));
  }
  for (const auto one : allCases<OxHKSampleType::CategoryType>()) {
    types.push_back(OxHKSampleType::category(one));
  }
  return types;
}

void list(const ListOptions& options) {
  const HostStore store;
  const auto instantOf = [](const char* name, const std::string& text, bool isEnd) {
    if (text.contains('T')) return instantArgument(name, text);
    const YYYYMMDD day = dayArgument(name, text);
    const TimeZone zone = TimeZone::current();
    return (isEnd ? day.nextDay(zone) : day).startOfDay(HHMMSS::midnight, zone);
  };
  const Date from = options.from ? instantOf("--from", *options.from, false) : Date::distantPast();
  const Date to = options.to ? instantOf("--to", *options.to, true) : Date::distantFuture();
  if (to < from) throw UsageError("--from", *options.from, "after --to");
  const auto types =
      options.type ? std::vector{sampleTypeArgument("TYPE", *options.type)} : allSampleTypes();
  const auto health = HealthManager::shared().store();
  std::vector<SampleReport> reports;
  for (const auto& type : types) {
    for (const HKSample& sample :
         valueOf(samplesOf(*health, type, HKPredicate::samples(from, to)))) {
      reports.push_back(SampleReport::of(sample));
    }
  }
  std::ranges::stable_sort(reports, {},
                           [](const SampleReport& one) { return std::pair(one.start, one.end); });
  print(options.json ? JSONEncoder{}.encode(reports) + "\n" : table(reports));
}

struct SourcesOptions {
  std::optional<std::string> order;
  bool json = false;
};

void sources(const SourcesOptions& options) {
  const HostStore store;
  const auto health = HealthManager::shared().store();
  if (options.order) {
    const auto unknown = valueOf(health->setSourceOrder(namesIn(*options.order)));
    if (!unknown.empty()) throw UsageError("--order", unknown.front(), "not a source");
    readChangedHealth(Date::now());
  }
  std::vector<SourceReport> reports;
  for (const auto& row : valueOf(health->sources())) {
    reports.push_back({row.source.name, row.device, row.numSamples});
  }
  print(options.json ? JSONEncoder{}.encode(reports) + "\n" : table(reports));
}

struct ReadOptions {
  std::string task;
  std::optional<std::string> date;
  bool json = false;
};

struct ReadFailure {
  std::string error;

  static constexpr auto codingKeys = keys(key("error", &ReadFailure::error));
};

void read(const ReadOptions& options) {
  const HostStore store;
  const Date now = Date::now();
  const auto task = taskArgument(store, options.task);
  const TaskLogRules rules = logRules(*task, now);
  const YYYYMMDD day = options.date ? dayArgument("--date", *options.date) : rules.today();
  const auto info = readHealth(*task, rules.period(day), now);
  if (info) {
    return print(options.json ? JSONEncoder{}.encode(*info) + "\n" : text(*info, now));
  }
  if (options.json) {
    print(JSONEncoder{}.encode(ReadFailure{info.error()->localizedDescription()}) + "\n");
  }
  throw HostError("the task can't be read from health data: " +
                  info.error()->localizedDescription());
}

void addAdd(const Command& family) {
  const auto [command, options] = family.subcommand("add", "Adds a sample", add);
  command.json(options.json);
  SampleArguments& sample = options.sample;
  command.option("type", sample.type, "TYPE", "Such as stepCount, sleepAnalysis or workout")
      .required();
  command.option("value", sample.value, "VALUE", "The amount");
  command.option("unit", sample.unit, "UNIT", "Its unit: count, L, mL, kcal, kJ, km, min, degC …");
  command.option("--start", sample.start, "INSTANT", "When it began (default: now)");
  command.option("--end", sample.end, "INSTANT", "When it ended (default: it is a moment)");
  command.option("--category", sample.category, "NAME",
                 "The state: asleepCore or the like, stood or idle");
  command.option("--source", sample.source, "BUNDLE-ID", "Who says so (default: velloro.app)");
  command.option("--task", sample.task, "TASK", "The task that it was written for");
  command.option("--metadata", sample.metadata, "KEY=VALUE", "What else is known");
  command.option("--activity", sample.activity, "NAME", "What was done in a workout: running");
  command.option("--distance", sample.distance, "VALUE UNIT", "How far a workout went");
  command.option("--energy", sample.energy, "VALUE UNIT", "What a workout burnt");
  command.flag("--indoor", sample.isIndoor, "The workout was indoors");
  command.flag("--outdoor", sample.isOutdoor, "The workout was outdoors").excludes({"--indoor"});
  command.footer(
      "Examples:\n"
      "  velloro health add dietaryWater 250 mL\n"
      "  velloro health add sleepAnalysis --category asleepCore --start 2024-03-06T22:30:00Z "
      "--end 2024-03-07T06:30:00Z\n"
      "  velloro health add workout --activity running --start 2024-03-07T07:00:00Z "
      "--end 2024-03-07T07:40:00Z --distance 8 km");
}

}  // namespace

void addHealthCommand(const Command& app) {
  const Command family = app.subcommand("health", "Keeps health data, and reads tasks from them");
  addAdd(family);
  {
    const auto [command, options] = family.subcommand(
        "import", "Imports a health export, a CSV or a Gadgetbridge database", import);
    command.json(options.json);
    command.option("file", options.file, "FILE", "The archive, its export.xml, or a database")
        .required();
    command.option("--from", options.from, "FORM", "auto, export, csv or gadgetbridge")
        .showsDefault();
  }
  {
    const auto [command, options] = family.subcommand("list", "Lists samples", list);
    command.json(options.json);
    command.option("type", options.type, "TYPE", "One type (default: all)");
    command.option("--from", options.from, "YYYYMMDD|INSTANT", "Only later samples");
    command.option("--to", options.to, "YYYYMMDD|INSTANT", "Only earlier samples");
  }
  {
    const auto [command, options] =
        family.subcommand("sources", "Shows or sets whom totals believe first", sources);
    command.json(options.json);
    command.option("--order", options.order, "NAME,…", "These come first, in this order");
  }
  const auto [command, options] = addTaskSubcommand(
      family, "read", "Reads how far a task has come by health data, and writes nothing", read);
  command.option("--date", options.date, "YYYYMMDD", "A day of the period (default: today)");
}

}  // namespace velloro
