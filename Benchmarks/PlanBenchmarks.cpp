// A rebuild of all notifications, from the open store to the written centre, and the plan of one
// task that has changed, beside SQLite reading the same rows and libical expanding the same times:
// a thousand tasks with two reminders a day and thirty days of log. Images are cached.

#include "Containers/SaveIfChanged.h"
#include "DataManager/DataManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Host/LogEntryRow.h"
#include "Notifications/Planning/NotificationManager.h"
#include "Settings/SiriExtensionUtilities.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <memory>
#include <string>

#include <benchmark/benchmark.h>
#include <libical/ical.h>
#include <sqlite3.h>

namespace velloro {
namespace {

using benchmark::DoNotOptimize;
using benchmark::State;

constexpr int numTasks = 1000;
constexpr std::int64_t numDays = 30;
constexpr YYYYMMDD today{2024, 3, 7};
constexpr HHMMSS morning{.h = 7, .m = 30};
constexpr HHMMSS evening{.h = 18};

/// Every second task learns its two times from its log; those of the others are chosen.
TaskNotificationSettings settings(bool isAutomatic) {
  TaskNotificationSettings settings{
      .badgeMode = BadgeMode::includeWhenIncomplete,
      .reminderType = isAutomatic ? ReminderType::automatic : ReminderType::custom};
  for (const HHMMSS time : {morning, evening}) {
    if (isAutomatic) break;
    settings.reminders.push_back({.uniqueId = UniqueID::create(),
                                  .trigger = TaskReminder::Trigger::fromTimeOfDay(time),
                                  .daysOfWeek = everyDay()});
  }
  return settings;
}

void addEntry(TaskEntity& task, YYYYMMDD day, HHMMSS time, TaskLogEntryType type, double total) {
  (void)LogEntryRow{.id = UniqueID::create(),
                    .period = logRules(task, Date::now()).period(day),
                    .date = day,
                    .at = day.startOfDay(time, TimeZone::gmt()),
                    .step = {.type = type, .amount = 1},
                    .total = total}
      .insert(task);
}

std::shared_ptr<TaskEntity> addTask(NSManagedObjectContext& context, int number) {
  auto task = TaskEntity::create(context);
  task->setValue(TaskAttributes::uniqueId, UniqueID::create());
  task->setValue(TaskAttributes::title, "Task " + std::to_string(number));
  const bool isAutomatic = number % 2 == 0;
  setFrequency(*task, {.numPartialCompletions = isAutomatic ? 2 : 1});
  setTaskStatus(*task, TaskStatus::normal, Date::now());
  task->setValue(TaskAttributes::created, Date::now() - 86400.0 * numDays);
  task->setValue(TaskAttributes::lastProcessedDate, Date::now());
  setNotificationSettings(*task, settings(isAutomatic));
  for (std::int64_t i = numDays; i > 0; --i) {
    const YYYYMMDD day = today.add(-i, TimeZone::gmt());
    if (isAutomatic) {
      addEntry(*task, day, {.h = 7, .m = i}, TaskLogEntryType::completedManuallyPartial, 1);
    }
    addEntry(*task, day, {.h = 17, .m = i}, TaskLogEntryType::completedManuallyFull,
             isAutomatic ? 2 : 1);
  }
  task->updateTemporalData(today, TimeZone::gmt());
  return task;
}

/// The store, open, with a centre into which all was planned once.
struct Plan {
  Plan() {
    environment.setResources(VELLORO_RESOURCES);
    environment.setTimeZone(TimeZone::gmt());
    environment.setNow(Date::fromISO8601("2024-03-07T06:00:00Z").value());
    data = DataManager::make();
    environment.settle();
    manager = std::make_unique<NotificationManager>(*data, SiriExtensionUtilities::shared());
    auto& context = *data->viewContext();
    for (int number = 0; number < numTasks; ++number) {
      task = addTask(context, number);
      if (number % 20 == 19) saveIfChanged(context);
    }
    manager->requestAuthorization(true);
    finish();
  }

  void finish() {
    environment.settle();
    UNUserNotificationCenter::currentNotificationCenter().flush();
  }

  VirtualEnvironment environment;
  std::shared_ptr<DataManager> data;
  std::unique_ptr<NotificationManager> manager;
  std::shared_ptr<TaskEntity> task;
};

void rebuild(State& state) {
  Plan plan;
  for (auto _ : state) {
    plan.manager->rebuildNotifications(false);
    plan.finish();
  }
}
BENCHMARK(rebuild)->Name("plan_1000_tasks/velloro")->UseRealTime();

void planOne(State& state) {
  Plan plan;
  for (auto _ : state) {
    plan.manager->scheduleNotificationsForTasksImmediate({plan.task->objectID()});
    plan.finish();
  }
}
BENCHMARK(planOne)->Name("plan_1000_tasks/velloro_one_of_them")->UseRealTime();

/// Every column of the tasks, their reminders and their log.
void readRows(State& state) {
  Plan plan;
  sqlite3* store = nullptr;
  sqlite3_open_v2(DataManager::activeStoreUrl().c_str(), &store, SQLITE_OPEN_READONLY, nullptr);
  for (auto _ : state) {
    std::int64_t rows = 0;
    for (const char* table :
         {"Task", "TaskNotificationSettings", "TaskNotificationReminders", "TaskLogEntry"}) {
      sqlite3_stmt* read = nullptr;
      sqlite3_prepare_v2(store, ("SELECT * FROM " + std::string(table)).c_str(), -1, &read,
                         nullptr);
      while (sqlite3_step(read) == SQLITE_ROW) {
        for (int column = 0; column < sqlite3_column_count(read); ++column) {
          DoNotOptimize(sqlite3_column_text(read, column));
        }
        ++rows;
      }
      sqlite3_finalize(read);
    }
    if (rows < numTasks * numDays) {
      state.SkipWithError("rows are missing");
      break;
    }
  }
  sqlite3_close(store);
}
BENCHMARK(readRows)->Name("plan_1000_tasks/sqlite_read")->UseRealTime();

/// The three days of each task, as instants of a zone.
void expandTimes(State& state) {
  icaltimezone* const zone = icaltimezone_get_builtin_timezone("Europe/Berlin");
  const auto rule = icalrecurrencetype_from_string("FREQ=DAILY;BYHOUR=7,18;BYMINUTE=30;BYSECOND=0");
  for (auto _ : state) {
    for (int number = 0; number < numTasks; ++number) {
      icalrecur_iterator* const times =
          icalrecur_iterator_new(rule, icaltime_from_string("20240307T060000"));
      for (int i = 0; i < 6; ++i) {
        DoNotOptimize(icaltime_as_timet_with_zone(icalrecur_iterator_next(times), zone));
      }
      icalrecur_iterator_free(times);
    }
  }
}
BENCHMARK(expandTimes)->Name("plan_1000_tasks/libical")->UseRealTime();

}  // namespace
}  // namespace velloro
