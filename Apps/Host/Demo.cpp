#include "Host/Demo.h"

#include "Host/LogWriter.h"
#include "Host/PeriodCloser.h"
#include "Host/TaskWriter.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/TaskSnapshot.h"

#include <cstdint>

namespace velloro {
namespace {

constexpr std::int64_t demoDays = 120;

struct DemoTask {
  TaskFields fields;
  unsigned diligence;  ///< Of 100 days on which something can be logged.
};

std::vector<DemoTask> demoTasks() {
  using enum DayOfWeek;
  const auto water = AutomaticTaskType(HealthType::dietaryDrinkWater,
                                       TaskTarget{.quantity = 8, .unit = TypeUnit::cupsUS});
  const auto color = [](const char* hex) { return OxCodableColor::fromHex(hex); };
  return {
      {{.title = "Read a chapter", .icon = IconManagerIcon::book, .color = color("3F91CC")}, 88},
      {{.title = "Run",
        .frequency = TaskFrequency{.days = {monday, wednesday, saturday}},
        .icon = IconManagerIcon::running,
        .color = color("CE4C4C")},
       80},
      {{.title = "Practise the guitar",
        .frequency = TaskFrequency{.dayMode = DayMode::numberOfDaysInWeek, .numCompletions = 4},
        .automaticTaskType = AutomaticTaskType::timer(1200, 1, TypeUnit::durationMinutes),
        .color = color("D478B9")},
       60},
      {{.title = "Drink water",
        .frequency = TaskFrequency{.numPartialCompletions = 8},
        .automaticTaskType = water,
        .color = color("008BC4")},
       75},
      {{.title = "Water the plants",
        .frequency = TaskFrequency{.dayMode = DayMode::dayInterval, .dayInterval = 3},
        .color = color("99C05E")},
       40},
      {{.title = "No sweets", .isNegative = true, .color = color("9C38D3")}, 7},
      {{.title = "Call grandmother",
        .frequency = TaskFrequency{.dayMode = DayMode::aggregateOverWeek}},
       22},
      {{.title = "Stretch",
        .frequency = TaskFrequency{.numPartialCompletions = 2},
        .startOfDay = HHMMSS{.h = 3},
        .color = color("F9AA00")},
       82},
  };
}

/// Of 100, for a day of a task; any good mixer will do (https://prng.di.unimi.it/splitmix64.c).
unsigned luck(std::uint64_t task, std::uint64_t day) {
  std::uint64_t z = (task * 1000003 + day + 1) * 0x9E3779B97F4A7C15;
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
  return static_cast<unsigned>((z ^ (z >> 31)) % 100);
}

void logDay(TaskEntity& task, YYYYMMDD day, unsigned dice, Date now) {
  const std::int64_t steps = task.frequency().numPartialCompletions;
  const std::int64_t hour = 7 + dice % 13;
  for (std::int64_t i = 0; i < steps; ++i) {
    const Date at = day.dateAt(task.startOfDay(), hour, static_cast<std::int64_t>(i * 5), 0,
                               task.taskCurrentTimeZone());
    if (at <= now) addLogEntry(task, {.date = day, .at = at}, now);
  }
}

bool isDue(const TaskEntity& task, YYYYMMDD day, TimeZone zone) {
  const TaskFrequency frequency = task.frequency();
  return frequency.dayMode != DayMode::specificDaysOfWeek || frequency.hasDay(day.dayOfWeek(zone));
}

void addDemoTask(const HostStore& store, const DemoTask& demo, std::uint64_t number, Date now) {
  const Date created = now - static_cast<double>(demoDays) * 86400;
  const auto task = addTask(store, demo.fields, created);
  const TaskLogRules rules = logRules(*task, now);
  for (std::int64_t i = demoDays; i >= 0; --i) {
    const YYYYMMDD day = rules.today().add(-i, rules.timeZone);
    const unsigned dice = luck(number, static_cast<std::uint64_t>(i));
    if (dice < demo.diligence && isDue(*task, day, rules.timeZone)) logDay(*task, day, dice, now);
  }
  PeriodCloser(store.context(), now).close(*task);
  updateDerivedData(*task, now);
}

}  // namespace

void fillDemoStore(const HostStore& store) {
  store.write([&] {
    const Date now = Date::now();
    if (!store.tasks({}).empty()) {
      throw HostError("the store has tasks already; choose an empty one");
    }
    std::uint64_t number = 0;
    for (const DemoTask& demo : demoTasks()) addDemoTask(store, demo, number++, now);
  });
}

}  // namespace velloro
