// The words and the content of one reminder, without its image, beside a single message formatted
// by ICU, parsed each time as a program without a cache would.

#include "CoreData/Context/NSPersistentContainer.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Notifications/TaskNotifications.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "Tasks/Rows/VelloroModel.h"

#include <random>

#include <benchmark/benchmark.h>
#include <unicode/msgfmt.h>

namespace velloro {
namespace {

using benchmark::DoNotOptimize;
using benchmark::State;

/// A store with one task: it is to be done every day, or on three days a week over 5 km.
struct Task {
  explicit Task(bool isCounted) {
    environment.setResources(VELLORO_RESOURCES);
    environment.setNow(Date::fromISO8601("2024-03-07T12:00:00Z").value());
    container.setPersistentStoreDescriptions({NSPersistentStoreDescription::inMemory()});
    container.loadPersistentStores([](const auto&, const ErrorPtr&) {});
    NSManagedObjectContext& context = *container.viewContext();
    task = TaskEntity::create(context);
    task->setValue(TaskAttributes::title, "Run");
    if (isCounted) {
      setFrequency(*task, {.dayMode = DayMode::numberOfDaysInWeek, .numCompletions = 3});
      setAutomaticTaskType(
          *task, AutomaticTaskType(HealthType::runOrWalk, TaskTarget{5, TypeUnit::distanceKm}));
    }
    for (const std::int64_t day : {4, 5, 6}) {
      const auto entry = TaskLogEntryEntity::create(context);
      entry->setValue(TaskLogEntryEntity::entryDate, YYYYMMDD{2024, 3, day});
      entry->setValue(TaskLogEntryEntity::entryType, TaskLogEntryType::completedManuallyFull);
      entry->setValue(TaskLogEntryEntity::task, task);
    }
    task->updateTemporalData({2024, 3, 7}, TimeZone::gmt());
    DoNotOptimize(context.save());
  }

  [[nodiscard]] TaskNotifications read() const {
    return TaskNotifications::of(*task, {.now = environment.now()});
  }

  VirtualEnvironment environment;
  NSPersistentContainer container{"Velloro", velloroModel()};
  std::shared_ptr<TaskEntity> task;
  /// So far ahead that no image is made.
  TaskNotifications::Reminder reminder{
      .id = NotificationID::badge(0),
      .trigger = NotificationTrigger{environment.now() + 3 * 86400}};
};

constexpr YYYYMMDD saturday{2024, 3, 9};

/// One after another for a task and a day that were read once, as a plan has them.
void contents(State& state, bool isCounted) {
  const Task task(isCounted);
  const TaskNotifications notifications = task.read();
  const auto day = notifications.day(saturday);
  std::mt19937_64 generator(1);
  for (auto _ : state) {
    DoNotOptimize(notifications.reminder(day, task.reminder, [&] { return generator(); }));
  }
}
BENCHMARK_CAPTURE(contents, daily, false)->Name("reminder_content/velloro");
BENCHMARK_CAPTURE(contents, counted, true)->Name("reminder_content/velloro_counted");

/// One alone, with the reading of its task.
void single(State& state, bool isCounted) {
  const Task task(isCounted);
  std::mt19937_64 generator(1);
  for (auto _ : state) {
    const TaskNotifications notifications = task.read();
    DoNotOptimize(notifications.reminder(notifications.day(saturday), task.reminder,
                                         [&] { return generator(); }));
  }
}
BENCHMARK_CAPTURE(single, daily, false)->Name("reminder_content/velloro_read");
BENCHMARK_CAPTURE(single, counted, true)->Name("reminder_content/velloro_counted_read");

void message(State& state) {
  const icu::Locale locale("en_US");
  for (auto _ : state) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::MessageFormat format("{0} (streak: {1}, best: {2})", locale, status);
    const icu::Formattable arguments[] = {"Your streak is worth keeping", 12, 20};
    icu::UnicodeString text;
    icu::FieldPosition position;
    format.format(arguments, 3, text, position, status);
    DoNotOptimize(text);
  }
}
BENCHMARK(message)->Name("reminder_content/icu_message");

}  // namespace
}  // namespace velloro
