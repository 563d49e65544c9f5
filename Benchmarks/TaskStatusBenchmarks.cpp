// The walk over ten years of a daily task, beside a walk that visits each day and looks it up in a
// map; the same with the rows read from a store, beside SQLite reading them alone; and where a
// thousand tasks stand, beside SQLite reading their rows.

#include "CoreData/Context/NSPersistentContainer.h"
#include "Foundation/Process/Environment.h"
#include "Tasks/Requests/TaskFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/VelloroModel.h"
#include "VelloroCore/Status/StreakRecord.h"
#include "VelloroCore/Status/TaskLogSummary.h"

#include <filesystem>
#include <map>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

namespace velloro {
namespace {

using benchmark::DoNotOptimize;
using benchmark::State;

constexpr std::int64_t numRows = 3650;
constexpr int numTasks = 1000;
constexpr YYYYMMDD lastDay{2024, 3, 7};
constexpr const char* zone = "Europe/Berlin";

/// One in ten days missed, one in seven skipped, the others completed.
TaskLogEntryType typeOf(std::int64_t row) {
  if (row % 10 == 3) return TaskLogEntryType::missedAutomaticallyFull;
  return row % 7 == 5 ? TaskLogEntryType::skippedManuallyFull
                      : TaskLogEntryType::completedManuallyFull;
}

const std::vector<TaskLogRow>& memoryRows() {
  static const auto rows = [] {
    std::vector<TaskLogRow> list;
    for (std::int64_t row = 0; row < numRows; ++row) {
      const auto date = static_cast<std::int32_t>(lastDay.add(-row, {}).intValue());
      list.push_back(
          {.entryDate = date,
           .entryPeriodFrom = date,
           .entryPeriodTo = date,
           .entryType = static_cast<std::int16_t>(rawValue(typeOf(row))),
           .entryPeriodType = TaskFrequencyPeriodType::day,
           .createdTimestamp = Date::since1970(1.7e9 - 86400.0 * static_cast<double>(row)),
           .createdTimeZone = zone});
    }
    return list;
  }();
  return rows;
}

TaskLogRules rules() {
  return {.timeZone = TimeZone::fromIdentifier(zone).value(), .now = Date::now()};
}

void walkRows(State& state) {
  const TaskLogRules own = rules();
  for (auto _ : state) {
    DoNotOptimize(TaskLogSummary::fromLog(memoryRows(), {.rules = own, .to = lastDay}));
  }
}

/// Only the runs, by looking up each day.
StreakRecord runsByMap(const TaskLogRules& own) {
  std::map<YYYYMMDD, TaskLogEntryType> found;
  for (const TaskLogRow& row : memoryRows()) {
    if (const auto date = row.date(); date && isFull(row.type())) {
      found.emplace(own.period(*date).startDate, row.type());
    }
  }
  std::int64_t best = 0, run = 0;
  std::optional<std::int64_t> current;
  for (auto p = own.period(lastDay); p.startDate >= found.begin()->first; p = p.previous({})) {
    const auto entry = found.find(p.startDate);
    if (entry == found.end()) continue;
    if (isCompletedFull(entry->second)) best = std::max(best, ++run);
    if (!isMissedFull(entry->second)) continue;
    if (!current) current = run;
    run = 0;
  }
  return {current.value_or(run), best};
}

void walkRowsByMap(State& state) {
  const TaskLogRules own = rules();
  const auto summary = TaskLogSummary::fromLog(memoryRows(), {.rules = own, .to = lastDay});
  if (runsByMap(own) != summary.streak) return state.SkipWithError("another run");
  for (auto _ : state) DoNotOptimize(runsByMap(own));
}

std::filesystem::path path() {
  return Environment::current().directories().temporary /
         ("velloro-status-bench-" + std::to_string(getpid()) + ".sqlite");
}

std::unique_ptr<NSPersistentContainer> openStore() {
  auto container = std::make_unique<NSPersistentContainer>(velloroModelName, velloroModel());
  container->setPersistentStoreDescriptions({NSPersistentStoreDescription::initWithURL(path())});
  container->loadPersistentStores([](const auto&, const ErrorPtr& error) {
    if (error) throw Error(*error);
  });
  return container;
}

void addEntry(NSManagedObjectContext& context, const std::shared_ptr<TaskEntity>& task,
              const TaskLogRow& row) {
  const auto entry = TaskLogEntryEntity::create(context);
  entry->setValue(TaskLogEntryEntity::uniqueId, UniqueID::create());
  entry->setStored(TaskLogEntryEntity::entryDate, row.entryDate);
  entry->setStored(TaskLogEntryEntity::entryType, row.entryType);
  entry->setStored(TaskLogEntryEntity::entryPeriodFrom, row.entryPeriodFrom);
  entry->setStored(TaskLogEntryEntity::entryPeriodTo, row.entryPeriodTo);
  entry->setStored(TaskLogEntryEntity::entryPeriodType, "d");
  entry->setValue(TaskLogEntryEntity::createdTimestamp, row.createdTimestamp);
  entry->setStored(TaskLogEntryEntity::createdTimeZone, zone);
  entry->setValue(TaskLogEntryEntity::task, task);
}

/// The store's files, gone before it is made and when the process ends.
struct StoreFiles {
  StoreFiles() { remove(); }
  ~StoreFiles() { remove(); }
  StoreFiles(const StoreFiles&) = delete;
  StoreFiles& operator=(const StoreFiles&) = delete;

  static void remove() {
    for (const char* suffix : {"", "-wal", "-shm", "-changes"}) {
      std::filesystem::remove(path().string() + suffix);
    }
  }
};

/// A thousand tasks, of which the first one by place has the log.
NSPersistentContainer& store() {
  static const StoreFiles files;  // outlives the container
  static const auto instance = [] {
    auto container = openStore();
    NSManagedObjectContext& context = *container->viewContext();
    for (int number = 0; number < numTasks; ++number) {
      const auto task = TaskEntity::create(context);
      task->setValue(TaskAttributes::uniqueId, UniqueID::create());
      task->setValue(TaskAttributes::displayOrder, static_cast<std::int16_t>(number));
      task->setStored(TaskAttributes::currentTimeZoneOverride, zone);
      task->setValue(TaskAttributes::daysTimesPerDay, 3);
      const auto row = TaskTemporalDataEntity::create(context);
      row->setValue(TaskTemporalDataEntity::activeStreak, number);
      row->setValue(TaskTemporalDataEntity::task, task);
      for (const TaskLogRow& entry : memoryRows()) {
        if (number == 0) addEntry(context, task, entry);
      }
    }
    if (const auto saved = context.save(); !saved) throw Error(*saved.error());
    return container;
  }();
  return *instance;
}

std::vector<std::shared_ptr<TaskEntity>> tasks(NSManagedObjectContext& context,
                                               std::int64_t limit) {
  const TaskFetchRequest request{.fetchLimit = limit};
  return context.fetch<TaskEntity>(request.fetchRequest()).value();
}

void readAndWalk(State& state) {
  for (auto _ : state) {
    // A new context each time: none of the entries is there yet.
    const auto context = store().newBackgroundContext();
    context->performAndWait([&] {
      const auto task = tasks(*context, 1).front();
      DoNotOptimize(task->logSummary({}, lastDay));
    });
  }
}

/// Reads all rows that a statement gives, each column as it comes.
void readBySqlite(State& state, const char* sql) {
  store();
  sqlite3* handle = nullptr;
  sqlite3_stmt* statement = nullptr;
  sqlite3_open(path().c_str(), &handle);
  if (sqlite3_prepare_v2(handle, sql, -1, &statement, nullptr) != SQLITE_OK) {
    state.SkipWithError(sqlite3_errmsg(handle));
  }
  for (auto _ : state) {
    double sum = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        sum += sqlite3_column_type(statement, i) == SQLITE_TEXT
                   ? *sqlite3_column_text(statement, i)
                   : sqlite3_column_double(statement, i);
      }
    }
    sqlite3_reset(statement);
    DoNotOptimize(sum);
  }
  sqlite3_finalize(statement);
  sqlite3_close(handle);
}

void readRowsBySqlite(State& state) {
  readBySqlite(state,
               "SELECT * FROM TaskLogEntry WHERE task = (SELECT task FROM TaskLogEntry LIMIT 1) "
               "ORDER BY entryDate DESC, createdTimestamp DESC");
}

void statusOfTasks(State& state) {
  const auto context = store().newBackgroundContext();
  context->performAndWait([&] {
    const auto all = tasks(*context, numTasks);
    for (auto _ : state) {
      for (const auto& task : all) {
        DoNotOptimize(task->streakedCompletionStatus(task->currentPeriod().period));
      }
    }
  });
}

void statusBySqlite(State& state) {
  readBySqlite(state, "SELECT * FROM Task LEFT JOIN TaskTemporalData ON task = Task.pk");
}

[[maybe_unused]] const bool registered = [] {
  using benchmark::RegisterBenchmark;
  RegisterBenchmark("log_walk_3650/velloro", walkRows);
  RegisterBenchmark("log_walk_3650/map", walkRowsByMap);
  RegisterBenchmark("log_read_and_walk_3650/velloro", readAndWalk);
  RegisterBenchmark("log_read_and_walk_3650/sqlite", readRowsBySqlite);
  RegisterBenchmark("status_1000/velloro", statusOfTasks);
  RegisterBenchmark("status_1000/sqlite", statusBySqlite);
  return true;
}();

}  // namespace
}  // namespace velloro
