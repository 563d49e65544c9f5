// The object store beside the same work in SQLite alone: a log of ten years in one task's order.

#include "CoreData/Context/NSPersistentContainer.h"
#include "CoreData/Model/EntityClass.h"
#include "Foundation/Process/Environment.h"

#include <filesystem>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

namespace velloro {
namespace {

using namespace platform;

constexpr int rows = 3650;
constexpr const char* zone = "Europe/Berlin";

class Entry;

class Owner : public NSManagedObject {
 public:
  inline static auto description = NSEntityDescription::of<Owner>();
  inline static const Attribute<std::optional<std::string>> title{description, "title"};
  inline static const ToMany<Entry> entries{description, "entries", "task", NSDeleteRule::cascade};
};

class Entry : public EntityClass<Entry> {
 public:
  inline static auto description = NSEntityDescription::of<Entry>();
  inline static const Attribute<std::optional<std::string>> uniqueId{description, "uniqueId"};
  inline static const Attribute<std::int32_t> entryDate{description, "entryDate"};
  inline static const Attribute<std::int16_t> entryType{description, "entryType"};
  inline static const Attribute<std::int32_t> from{description, "entryPeriodFrom"};
  inline static const Attribute<std::int32_t> to{description, "entryPeriodTo"};
  inline static const Attribute<std::optional<std::string>> period{description, "entryPeriodType"};
  inline static const Attribute<double> progress{description, "progress"};
  inline static const Attribute<double> total{description, "progressTotal"};
  inline static const Attribute<std::optional<Date>> created{description, "createdTimestamp"};
  inline static const Attribute<std::optional<std::string>> zoneName{description,
                                                                     "createdTimeZone"};
  inline static const Attribute<std::optional<std::string>> cloudStatus{description, "cloudStatus"};
  inline static const Attribute<std::optional<Date>> cloudDate{description, "cloudStatusDate"};
  inline static const ToOne<Owner> task{description, "task", "entries"};
  inline static const FetchIndex log{description, {"task", "-entryDate", "-createdTimestamp"}};
};

const NSManagedObjectModel& model() {
  static const NSManagedObjectModel instance({&Owner::description, &Entry::description});
  return instance;
}

std::filesystem::path path() {
  return Environment::current().directories().temporary /
         ("velloro-bench-" + std::to_string(getpid()) + ".sqlite");
}

void removeStore() {
  for (const char* suffix : {"", "-wal", "-shm", "-changes"}) {
    std::filesystem::remove(path().string() + suffix);
  }
}

std::unique_ptr<NSPersistentContainer> openStore() {
  auto container = std::make_unique<NSPersistentContainer>("Benchmark", model());
  auto description = NSPersistentStoreDescription::initWithURL(path());
  description.setOption(true, NSPersistentStoreRemoteChangeNotificationPostOptionKey);
  container->setPersistentStoreDescriptions({description});
  container->loadPersistentStores([](const auto&, const ErrorPtr& error) {
    if (error) throw Error(*error);
  });
  return container;
}

std::string uniqueId(int row) {
  return "1B4E28BA-2FA1-11D2-883F-" + std::to_string(100000000000 + row);
}

void fill(NSManagedObjectContext& context) {
  const auto owner = context.insert<Owner>();
  for (int row = 0; row < rows; ++row) {
    const auto entry = context.insert<Entry>();
    entry->setValue(Entry::uniqueId, uniqueId(row));
    entry->setValue(Entry::entryDate, 20150101 + row);
    entry->setValue(Entry::entryType, 1);
    entry->setValue(Entry::from, 20150101 + row);
    entry->setValue(Entry::to, 20150101 + row);
    entry->setValue(Entry::period, "d");
    entry->setValue(Entry::progress, 1.5);
    entry->setValue(Entry::total, 1.5);
    entry->setValue(Entry::created, Date::sinceReferenceDate(86400.0 * row));
    entry->setValue(Entry::zoneName, zone);
    entry->setValue(Entry::task, owner);
  }
  if (const auto saved = context.save(); !saved) throw Error(*saved.error());
}

/// SQLite as one would use it by hand: the same tables, statements prepared once.
class Raw {
 public:
  Raw() {
    sqlite3_open(path().c_str(), &handle_);
    run("PRAGMA journal_mode=WAL");
    run("PRAGMA synchronous=FULL");
  }
  Raw(const Raw&) = delete;
  Raw& operator=(const Raw&) = delete;
  ~Raw() { sqlite3_close(handle_); }

  void run(const char* sql) { sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr); }
  sqlite3_stmt* prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(handle_, sql, -1, &statement, nullptr);
    return statement;
  }

  void createTables() {
    run("CREATE TABLE Owner (pk INTEGER PRIMARY KEY, title TEXT)");
    run("CREATE TABLE Entry (pk INTEGER PRIMARY KEY, uniqueId TEXT, entryDate INTEGER, entryType "
        "INTEGER, entryPeriodFrom INTEGER, entryPeriodTo INTEGER, entryPeriodType TEXT, progress "
        "REAL, progressTotal REAL, createdTimestamp REAL, createdTimeZone TEXT, cloudStatus TEXT, "
        "cloudStatusDate REAL, task INTEGER)");
    run("CREATE INDEX log ON Entry (task, entryDate DESC, createdTimestamp DESC)");
  }

  void fill() {
    run("BEGIN IMMEDIATE");
    run("INSERT INTO Owner (pk) VALUES (1)");
    sqlite3_stmt* insert = prepare(
        "INSERT INTO Entry (uniqueId, entryDate, entryType, entryPeriodFrom, "
        "entryPeriodTo, entryPeriodType, progress, progressTotal, createdTimestamp, "
        "createdTimeZone, task) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 1)");
    for (int row = 0; row < rows; ++row) {
      const std::string id = uniqueId(row);
      sqlite3_bind_text(insert, 1, id.data(), static_cast<int>(id.size()), SQLITE_STATIC);
      sqlite3_bind_int(insert, 2, 20150101 + row);
      sqlite3_bind_int(insert, 3, 1);
      sqlite3_bind_int(insert, 4, 20150101 + row);
      sqlite3_bind_int(insert, 5, 20150101 + row);
      sqlite3_bind_text(insert, 6, "d", 1, SQLITE_STATIC);
      sqlite3_bind_double(insert, 7, 1.5);
      sqlite3_bind_double(insert, 8, 1.5);
      sqlite3_bind_double(insert, 9, 86400.0 * row);
      sqlite3_bind_text(insert, 10, zone, -1, SQLITE_STATIC);
      sqlite3_step(insert);
      sqlite3_reset(insert);
    }
    run("COMMIT");
    sqlite3_finalize(insert);
  }

 private:
  sqlite3* handle_ = nullptr;
};

constexpr const char* rawFetch =
    "SELECT entryDate, entryType, progress, createdTimestamp FROM Entry WHERE task = 1 "
    "ORDER BY entryDate DESC, createdTimestamp DESC";

NSFetchRequest logRequest(const Owner& owner) {
  return NSFetchRequest::of<Entry>(Entry::task == owner,
                                   {Entry::entryDate.descending(), Entry::created.descending()});
}

void insertRows(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    removeStore();
    const auto store = openStore();
    state.ResumeTiming();
    fill(*store->viewContext());
  }
}

void insertRowsRaw(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    removeStore();
    Raw raw;
    raw.createTables();
    state.ResumeTiming();
    raw.fill();
  }
}

void fetchRows(benchmark::State& state) {
  removeStore();
  const auto store = openStore();
  fill(*store->viewContext());
  for (auto _ : state) {
    // A new context each time: none of the objects is there yet.
    const auto context = store->newBackgroundContext();
    context->performAndWait([&] {
      const auto owner = context->fetch<Owner>(NSFetchRequest("Owner"))->front();
      double sum = 0;
      const auto entries = context->fetch<Entry>(logRequest(*owner)).value();
      for (const auto& entry : entries) {
        sum += entry->value(Entry::entryDate) + entry->value(Entry::entryType) +
               entry->value(Entry::progress) +
               entry->value(Entry::created)->timeIntervalSinceReferenceDate();
      }
      benchmark::DoNotOptimize(sum);
    });
  }
}

void fetchRowsRaw(benchmark::State& state) {
  removeStore();
  Raw raw;
  raw.createTables();
  raw.fill();
  sqlite3_stmt* select = raw.prepare(rawFetch);
  for (auto _ : state) {
    double sum = 0;
    while (sqlite3_step(select) == SQLITE_ROW) {
      sum += sqlite3_column_int(select, 0) + sqlite3_column_int(select, 1) +
             sqlite3_column_double(select, 2) + sqlite3_column_double(select, 3);
    }
    sqlite3_reset(select);
    benchmark::DoNotOptimize(sum);
  }
  sqlite3_finalize(select);
}

void openAndFetch(benchmark::State& state) {
  removeStore();
  fill(*openStore()->viewContext());
  for (auto _ : state) {
    const auto store = openStore();
    NSFetchRequest request("Entry");
    request.setFetchLimit(1);
    benchmark::DoNotOptimize(store->viewContext()->fetch<Entry>(request)->size());
  }
}

void openAndFetchRaw(benchmark::State& state) {
  removeStore();
  fill(*openStore()->viewContext());
  for (auto _ : state) {
    Raw raw;
    sqlite3_stmt* select = raw.prepare("SELECT * FROM Entry LIMIT 1");
    benchmark::DoNotOptimize(sqlite3_step(select));
    sqlite3_finalize(select);
  }
}

void changeOne(benchmark::State& state) {
  removeStore();
  const auto store = openStore();
  const auto& context = store->viewContext();
  fill(*context);
  NSFetchRequest request("Entry");
  request.setFetchLimit(1);
  const auto entry = context->fetch<Entry>(request)->front();
  for (auto _ : state) {
    entry->setValue(Entry::progress, entry->value(Entry::progress) + 1);
    if (!context->save()) state.SkipWithError("not saved");
  }
}

void changeOneRaw(benchmark::State& state) {
  removeStore();
  Raw raw;
  raw.createTables();
  raw.fill();
  sqlite3_stmt* update = raw.prepare("UPDATE Entry SET progress = progress + 1 WHERE pk = 1");
  for (auto _ : state) {
    raw.run("BEGIN IMMEDIATE");
    sqlite3_step(update);
    sqlite3_reset(update);
    raw.run("COMMIT");
  }
  sqlite3_finalize(update);
}

[[maybe_unused]] const bool registered = [] {
  using benchmark::RegisterBenchmark;
  RegisterBenchmark("store_insert_3650/velloro", insertRows);
  RegisterBenchmark("store_insert_3650/sqlite", insertRowsRaw);
  RegisterBenchmark("store_fetch_3650/velloro", fetchRows);
  RegisterBenchmark("store_fetch_3650/sqlite", fetchRowsRaw);
  RegisterBenchmark("store_open/velloro", openAndFetch);
  RegisterBenchmark("store_open/sqlite", openAndFetchRaw);
  RegisterBenchmark("store_change_one/velloro", changeOne);
  RegisterBenchmark("store_change_one/sqlite", changeOneRaw);
  return true;
}();

}  // namespace
}  // namespace velloro
