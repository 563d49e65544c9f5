// The notification centre beside SQLite alone with the same bytes: the 5,000 requests of a plan of
// 1,000 tasks, one more among them, and a look at what is due next.

#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "UserNotifications/NotificationStore.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

namespace velloro {
namespace {

using namespace platform;

constexpr int requests = 5000;

/// With about 3 KB of `userInfo`. The due times are a minute apart.
UNNotificationRequest request(int number) {
  PropertyList::Dictionary task;
  for (int key = 0; key < 40; ++key) {
    task["key" + std::to_string(key)] = "a value of the task that the notification carries, " +
                                        std::to_string(number) + "." + std::to_string(key);
  }
  return {.identifier = "r" + std::to_string(number),
          .content = {.categoryIdentifier = "nm.c.r",
                      .title = "Drink water",
                      .body = "Time for a glass",
                      .userInfo = PropertyList::Dictionary{{"velloro", std::move(task)}}},
          .trigger = UNCalendarNotificationTrigger::fromDate(Date::now() + 60 * (number + 1))};
}

std::vector<UNNotificationRequest> plan() {
  std::vector<UNNotificationRequest> plan;
  for (int number = 0; number < requests; ++number) plan.push_back(request(number));
  return plan;
}

std::filesystem::path emptyFolder() {
  const auto folder = Environment::current().directories().temporary / "centre";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  return folder;
}

void add(UNUserNotificationCenter& center, std::vector<UNNotificationRequest> plan) {
  center.requestAuthorizationWithOptions(UNAuthorizationOptions::alert);
  for (auto& request : plan) center.addNotificationRequest(std::move(request));
  center.flush();
}

/// SQLite as one would use it by hand: one table with the texts, and an index of when they fall
/// due.
class Raw {
 public:
  explicit Raw(const std::filesystem::path& folder) {
    sqlite3_open((folder / "raw.sqlite").c_str(), &handle_);
    run("PRAGMA journal_mode=WAL");
    run("PRAGMA synchronous=FULL");
    run("CREATE TABLE requests (number INTEGER PRIMARY KEY, identifier TEXT UNIQUE, due INTEGER, "
        "request TEXT)");
    run("CREATE INDEX byDue ON requests (due)");
    sqlite3_prepare_v2(handle_,
                       "INSERT OR REPLACE INTO requests (identifier, due, request) "
                       "VALUES (?, ?, ?)",
                       -1, &insert_, nullptr);
    sqlite3_prepare_v2(handle_, "SELECT min(due) FROM requests", -1, &next_, nullptr);
  }
  Raw(const Raw&) = delete;
  Raw& operator=(const Raw&) = delete;
  ~Raw() {
    sqlite3_finalize(insert_);
    sqlite3_finalize(next_);
    sqlite3_close(handle_);
  }

  struct Row {
    std::string identifier;
    std::int64_t due = 0;
    std::string text;
  };
  static Row row(const UNNotificationRequest& request) {
    return {.identifier = request.identifier,
            .due = request.trigger->nextTriggerDate()->secondsSince1970(),
            .text = JSONEncoder{}.encode(request)};
  }
  void insert(const std::vector<Row>& rows) {
    run("BEGIN IMMEDIATE");
    for (const Row& row : rows) {
      sqlite3_bind_text(insert_, 1, row.identifier.data(), static_cast<int>(row.identifier.size()),
                        SQLITE_STATIC);
      sqlite3_bind_int64(insert_, 2, row.due);
      sqlite3_bind_text(insert_, 3, row.text.data(), static_cast<int>(row.text.size()),
                        SQLITE_STATIC);
      sqlite3_step(insert_);
      sqlite3_reset(insert_);
    }
    run("COMMIT");
  }
  std::int64_t next() {
    sqlite3_step(next_);
    const std::int64_t due = sqlite3_column_int64(next_, 0);
    sqlite3_reset(next_);
    return due;
  }

 private:
  void run(const char* sql) { sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr); }

  sqlite3* handle_ = nullptr;
  sqlite3_stmt* insert_ = nullptr;
  sqlite3_stmt* next_ = nullptr;
};

std::vector<Raw::Row> rows() {
  std::vector<Raw::Row> rows;
  for (const auto& request : plan()) rows.push_back(Raw::row(request));
  return rows;
}

void batch(benchmark::State& state) {
  const VirtualEnvironment environment;
  for (auto _ : state) {
    state.PauseTiming();
    UNUserNotificationCenter center(emptyFolder());
    auto planned = plan();
    state.ResumeTiming();
    add(center, std::move(planned));
  }
}

void batchRaw(benchmark::State& state) {
  const VirtualEnvironment environment;
  const auto all = rows();
  for (auto _ : state) {
    state.PauseTiming();
    Raw raw(emptyFolder());
    state.ResumeTiming();
    raw.insert(all);
  }
}

/// As when a plan has not changed, beside a file that is written again.
void sameBatch(benchmark::State& state) {
  const VirtualEnvironment environment;
  UNUserNotificationCenter center(emptyFolder());
  add(center, plan());
  for (auto _ : state) {
    state.PauseTiming();
    auto planned = plan();
    state.ResumeTiming();
    add(center, std::move(planned));
  }
}

void sameBatchRaw(benchmark::State& state) {
  const VirtualEnvironment environment;
  const auto all = rows();
  Raw raw(emptyFolder());
  for (auto _ : state) raw.insert(all);
}

void addOne(benchmark::State& state) {
  const VirtualEnvironment environment;
  UNUserNotificationCenter center(emptyFolder());
  add(center, plan());
  int number = requests;
  for (auto _ : state) {
    center.addNotificationRequest(request(number++));
    center.flush();
  }
}

void addOneRaw(benchmark::State& state) {
  const VirtualEnvironment environment;
  Raw raw(emptyFolder());
  raw.insert(rows());
  int number = requests;
  for (auto _ : state) raw.insert({Raw::row(request(number++))});
}

void nextDue(benchmark::State& state) {
  const VirtualEnvironment environment;
  const auto folder = emptyFolder();
  UNUserNotificationCenter center(folder);
  add(center, plan());
  NotificationStore store(folder);
  for (auto _ : state) {
    store.read([](NotificationRows& rows) -> Result<void> {
      benchmark::DoNotOptimize(rows.nextDue());
      return {};
    });
  }
}

void nextDueRaw(benchmark::State& state) {
  const VirtualEnvironment environment;
  Raw raw(emptyFolder());
  raw.insert(rows());
  for (auto _ : state) benchmark::DoNotOptimize(raw.next());
}

BENCHMARK(batch)->Name("centre_batch_5000/velloro")->UseRealTime();
BENCHMARK(batchRaw)->Name("centre_batch_5000/sqlite")->UseRealTime();
BENCHMARK(sameBatch)->Name("centre_same_batch_5000/velloro")->UseRealTime();
BENCHMARK(sameBatchRaw)->Name("centre_same_batch_5000/sqlite")->UseRealTime();
BENCHMARK(addOne)->Name("centre_add_one/velloro")->UseRealTime();
BENCHMARK(addOneRaw)->Name("centre_add_one/sqlite")->UseRealTime();
BENCHMARK(nextDue)->Name("centre_next_due/velloro");
BENCHMARK(nextDueRaw)->Name("centre_next_due/sqlite");

}  // namespace
}  // namespace velloro
