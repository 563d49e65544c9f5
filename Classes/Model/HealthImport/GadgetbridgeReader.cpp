#include "Foundation/Text/String.h"
#include "Foundation/Values/Try.h"
#include "HealthImport/OtherReaders.h"
#include "HealthKit/HealthDetails.h"
#include "OxHealthKit/HKObjects.h"
#include "SQLite/Sqlite.h"

#include <map>

namespace velloro {
namespace {

using Quantity = OxHKSampleType::QuantityType;

std::string identifierOf(Quantity type) {
  return hkObjectType(OxHKSampleType::quantity(type)).identifier;
}

Result<std::vector<std::string>> names(SqliteConnection& database, std::string_view sql) {
  std::vector<std::string> found;
  auto row = TRY(database.prepare(sql));
  while (TRY(row.step())) found.emplace_back(row.text(0));
  return found;
}

class Database {
 public:
  Database(SqliteConnection& connection, ImportSink& sink) : database_(connection), sink_(sink) {}

  Result<void> read(const std::function<void(double)>& progress) {
    const auto tables =
        TRY(names(database_, "SELECT name FROM sqlite_master WHERE type='table' ORDER BY name"));
    TRY(readDevices(tables));
    bool isAny = false;
    for (std::size_t i = 0; i < tables.size(); ++i) {
      if (progress) progress(static_cast<double>(i) / static_cast<double>(tables.size()));
      if (tables[i].ends_with("_ACTIVITY_SAMPLE")) {
        TRY(readSamples(tables[i]));
        isAny = true;
      } else if (tables[i] == "BASE_ACTIVITY_SUMMARY") {
        TRY(readWorkouts());
        isAny = true;
      }
    }
    if (isAny) return {};
    return failure<Error>("velloro.health", 2, "the file is no database of Gadgetbridge");
  }

 private:
  Result<bool> has(const std::string& table, std::string_view column) {
    const auto found = TRY(
        database_.integer("SELECT count(*) FROM pragma_table_info(?) WHERE name=? COLLATE NOCASE",
                          std::string_view(table), column));
    return found.value_or(0) > 0;
  }

  Result<void> readDevices(const std::vector<std::string>& tables) {
    if (std::ranges::find(tables, "DEVICE") == tables.end()) return {};
    auto row = TRY(database_.prepare("SELECT _id, NAME FROM DEVICE"));
    while (TRY(row.step())) devices_[row.integer(0)] = repairedUTF8(row.text(1));
    return {};
  }

  std::string sourceOf(std::int64_t device) {
    const auto found = devices_.find(device);
    return found != devices_.end() && !found->second.empty()
               ? found->second
               : "Gadgetbridge " + std::to_string(device);
  }

  /// One row for each minute.
  Result<void> readSamples(const std::string& table) {
    const bool hasSteps = TRY(has(table, "STEPS"));
    const bool hasRate = TRY(has(table, "HEART_RATE"));
    static const std::string steps = identifierOf(Quantity::stepCount);
    static const std::string rates = identifierOf(Quantity::heartRate);
    auto row = TRY(database_.prepare(
        "SELECT TIMESTAMP, DEVICE_ID, " + std::string(hasSteps ? "STEPS" : "0") + ", " +
        (hasRate ? "HEART_RATE" : "0") + " FROM " + sqlName(table) + " ORDER BY TIMESTAMP"));
    while (TRY(row.step())) {
      constexpr double minute = 60;
      constexpr std::int64_t highestRate = 254;  // what is above is not measured
      const Date start = Date::since1970(static_cast<double>(row.integer(0)));
      const std::string source = sourceOf(row.integer(1));
      if (row.integer(2) > 0) {
        sink_.add(HKSampleRow{.type = steps,
                              .start = start,
                              .end = start + minute,
                              .value = static_cast<double>(row.integer(2)),
                              .unit = "count",
                              .source = source});
      }
      if (row.integer(3) > 0 && row.integer(3) <= highestRate) {
        sink_.add(HKSampleRow{.type = rates,
                              .start = start,
                              .end = start,
                              .value = static_cast<double>(row.integer(3)),
                              .unit = "count/min",
                              .source = source});
      }
      if (sink_.error() != nullptr) return std::unexpected(sink_.error());
    }
    return {};
  }

  static std::string_view activityOf(std::int64_t kind) {
    constexpr std::pair<std::int64_t, std::string_view> kinds[] = {
        {0x10, "running"},    {0x20, "walking"},   {0x40, "swimming"}, {0x80, "cycling"},
        {0x100, "running"},   {0x400, "swimming"}, {0x800, "cycling"}, {0x1000, "elliptical"},
        {0x2000, "jumpRope"}, {0x4000, "yoga"},    {0x8000, "soccer"}, {0x10000, "rowing"}};
    for (const auto& [number, activity] : kinds) {
      if (number == kind) return activity;
    }
    return "other";
  }

  Result<void> readWorkouts() {
    const std::string type = HKObjectType::workoutType().identifier;
    auto row = TRY(database_.prepare(
        "SELECT START_TIME, END_TIME, ACTIVITY_KIND, DEVICE_ID FROM BASE_ACTIVITY_SUMMARY"));
    std::int64_t number = 0;
    while (TRY(row.step())) {
      ++number;
      constexpr double perSecond = 1000;
      const Date start = Date::since1970(static_cast<double>(row.integer(0)) / perSecond);
      const Date end = Date::since1970(static_cast<double>(row.integer(1)) / perSecond);
      if (end < start) {
        sink_.skip(number, "a workout ends before it starts");
        continue;
      }
      const double duration = end.timeIntervalSince(start);
      const std::string source = sourceOf(row.integer(3));
      const std::string details = detailsText(
          {.activityType = std::string(activityOf(row.integer(2))), .duration = duration});
      sink_.add(HKSampleRow{.type = type,
                            .start = start,
                            .end = end,
                            .value = duration,
                            .source = source,
                            .details = details});
    }
    return {};
  }

  SqliteConnection& database_;
  ImportSink& sink_;
  std::map<std::int64_t, std::string> devices_;
};

}  // namespace

Result<void> readGadgetbridge(const std::filesystem::path& file, ImportSink& sink,
                              const std::function<void(double)>& progress) {
  const auto connection =
      TRY(SqliteConnection::open({.path = file, .access = SqliteAccess::atRest}));
  return Database(*connection, sink).read(progress);
}

}  // namespace velloro
