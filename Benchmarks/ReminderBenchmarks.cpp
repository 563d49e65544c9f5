// The words and the content of one reminder, without its image, beside a single message formatted
// by ICU, parsed each time as a program without a cache would.

#include "CoreData/Context/NSPersistentContainer.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Notifications/TaskNotifications.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/VelloroModel.h"

#include <random>

#include <benchmark/benchmark.h>
#include <unicode/msgfmt.h>

namespace velloro {
namespace {

using benchmark::DoNotOptimize;
using benchmark::State;

struct Readers {
  Readers() {
    environment.setResources(VELLORO_RESOURCES);
    environment.setNow(Date::fromISO8601("2024-03-07T12:00:00Z").value());
    container.setPersistentStoreDescriptions({NSPersistentStoreDescription::inMemory()});
    container.loadPersistentStores([](const auto&, const ErrorPtr&) {});
    NSManagedObjectContext& context = *container.viewContext();
    task = TaskEntity::create(context);
    task->setValue(TaskAttributes::title, "Read");
    task->updateTemporalData({2024, 3, 7}, TimeZone::gmt());
    const auto kept = task->value(TaskAttributes::taskTemporalData);
    kept->setValue(TaskTemporalDataEntity::activeStreak, 12);
    kept->setValue(TaskTemporalDataEntity::bestStreak, 20);
  }

  VirtualEnvironment environment;
  NSPersistentContainer container{"Velloro", velloroModel()};
  std::shared_ptr<TaskEntity> task;
};

void content(State& state) {
  const Readers readers;
  const TaskNotifications notifications{.builder = {.now = readers.environment.now()}};
  // So far ahead that no image is made.
  const TaskNotifications::Reminder reminder{
      .id = NotificationID::reminder({2024, 3, 10}, readers.task->uniqueId(), 0),
      .day = {2024, 3, 10},
      .trigger = NotificationTrigger{readers.environment.now() + 3 * 86400}};
  std::mt19937_64 generator(1);
  for (auto _ : state) {
    DoNotOptimize(notifications.reminder(*readers.task, reminder, [&] { return generator(); }));
  }
}
BENCHMARK(content)->Name("reminder_content/velloro");

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
