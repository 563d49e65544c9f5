// `velloro status` on a thousand tasks with two years of log, a month and a day after somebody last
// wrote to them, beside the same on the day on which nothing is to be closed; and `velloro stats`
// of all of them, beside SQLite reading their rows.

#include "CoreData/Context/NSPersistentContainer.h"
#include "Foundation/Process/ProcessEnvironment.h"
#include "Host/LogEntryRow.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "Tasks/Rows/VelloroModel.h"
#include "Tasks/Status/TaskSnapshot.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

namespace velloro {
namespace {

using benchmark::State;

constexpr int numTasks = 1000;
constexpr std::int64_t numDays = 730;
constexpr YYYYMMDD lastDay{2024, 3, 7};

TaskFrequency frequencyOf(int number) {
  using enum DayMode;
  constexpr DayMode modes[] = {specificDaysOfWeek, specificDaysOfWeek, numberOfDaysInWeek,
                               dayInterval,        numberOfDaysInYear, aggregateOverWeek};
  return {.dayMode = modes[number % 6], .numCompletions = 4, .dayInterval = 3};
}

/// Each period is settled: one in ten of those of an ordinary task is missed.
void fill(TaskEntity& task, int number) {
  task.setValue(TaskAttributes::uniqueId, UniqueID::create());
  task.setValue(TaskAttributes::title, "Task " + std::to_string(number));
  task.setValue(TaskAttributes::displayOrder, static_cast<std::int16_t>(101 + number % 99));
  setFrequency(task, frequencyOf(number));
  task.setValue(TaskAttributes::isNegative, number % 5 == 4);
  setTaskStatus(task, TaskStatus::normal, Date::now());
  task.setValue(TaskAttributes::created, Date::now() - 86400.0 * numDays);
  task.setValue(TaskAttributes::lastProcessedDate, Date::now());
  const TaskLogRules rules = logRules(task, Date::now());
  for (auto period = rules.period(lastDay.add(-numDays, {})); period.endsBefore(lastDay);
       period = period.next({})) {
    const bool isMissed = period.startDate.d % 10 == 3;
    (void)LogEntryRow{.id = UniqueID::create(),
                      .period = period,
                      .date = period.finishDate,
                      .at = period.finishDate.startOfDay(HHMMSS::midday, TimeZone::gmt()),
                      .step = {.type = isMissed ? TaskLogEntryType::missedAutomaticallyFull
                                                : TaskLogEntryType::completedManuallyFull,
                               .amount = 1},
                      .total = 1}
        .insert(task);
  }
  task.updateTemporalData(lastDay, TimeZone::gmt());
}

/// Made once, and gone when the process ends.
class Store {
 public:
  Store() {
    std::filesystem::remove_all(folder_);
    run("task list", "2022-01-01");  // makes the files
    ProcessEnvironment environment(
        {.now = Date::fromISO8601("2024-03-07T12:00:00Z"), .timeZone = TimeZone::gmt()});
    Environment* const before = Environment::install(&environment);
    fillFile();
    Environment::install(before);
  }
  ~Store() { std::filesystem::remove_all(folder_); }
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  void run(const std::string& command, const std::string& day) const {
    const std::string line = std::string("'") + VELLORO_PROGRAM + "' " + command + " --store '" +
                             folder_.string() + "' --zone GMT --now " + day +
                             "T12:00:00Z >/dev/null";
    if (std::system(line.c_str()) != 0) throw std::runtime_error(command + " fails");
  }
  [[nodiscard]] std::filesystem::path file() const {
    return folder_ / "groups" / "group.velloro.app.today" / "Velloro-CloudKit.sqlite";
  }

 private:
  void fillFile() const {
    NSPersistentContainer container(velloroModelName, velloroModel());
    container.setPersistentStoreDescriptions({NSPersistentStoreDescription::initWithURL(file())});
    container.loadPersistentStores([](const auto&, const ErrorPtr& error) {
      if (error) throw Error(*error);
    });
    for (int number = 0; number < numTasks; ++number) {
      const auto context = container.newBackgroundContext();
      context->performAndWait([&] {
        fill(*TaskEntity::create(*context), number);
        if (const auto saved = context->save(); !saved) throw Error(*saved.error());
      });
    }
  }

  const std::filesystem::path folder_ = Environment::current().directories().temporary /
                                        ("velloro-status-bench-" + std::to_string(getpid()));
};

const Store& theStore() {
  static const Store store;
  return store;
}

void command(State& state, const char* name, const char* day) {
  const Store& store = theStore();
  for (auto _ : state) store.run(name, day);
}

void readRows(State& state) {
  const std::string file = theStore().file();
  for (auto _ : state) {
    sqlite3* database = nullptr;
    sqlite3_stmt* rows = nullptr;
    sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_prepare_v2(database,
                       "SELECT task, entryDate, entryType, createdTimestamp, createdTimeZone "
                       "FROM TaskLogEntry ORDER BY task, entryDate DESC",
                       -1, &rows, nullptr);
    double sum = 0;
    while (sqlite3_step(rows) == SQLITE_ROW) {
      for (int column = 0; column < 5; ++column) sum += sqlite3_column_double(rows, column);
    }
    benchmark::DoNotOptimize(sum);
    sqlite3_finalize(rows);
    sqlite3_close(database);
  }
}

[[maybe_unused]] const bool registered = [] {
  const auto add = [](const char* name, const char* day, const char* what = "status") {
    benchmark::RegisterBenchmark(name, [=](State& state) { command(state, what, day); })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
  };
  add("status_after_30_days_1000/velloro", "2024-04-06");
  add("status_after_30_days_1000/nothing_to_close", "2024-03-07");
  add("status_after_1_day_1000/velloro", "2024-03-08");
  add("status_after_1_day_1000/nothing_to_close", "2024-03-07");
  add("stats_command_1000/velloro", "2024-03-07", "stats");
  benchmark::RegisterBenchmark("stats_command_1000/sqlite", readRows)
      ->Unit(benchmark::kMillisecond);
  return true;
}();

}  // namespace
}  // namespace velloro
