#include "Foundation/Process/VirtualEnvironment.h"
#include "Support/TaskStore.h"
#include "TimedTasks/CalendarDayWatcher.h"

#include <string>

namespace velloro {
namespace {

Date at(const char* text) {
  return Date::fromISO8601(text).value();
}

TEST(CalendarDayWatching, CallsOnceForEachChangeOfADay) {
  struct Step {
    const char* what;
    const char* setTo;  ///< Null: the clock runs on.
    double seconds;
    int calls;
  };
  struct Script {
    const char* zone;
    const char* from;
    CalendarDayWatcher::DayStarts starts;
    std::vector<Step> steps;
  };
  const HHMMSS four{.h = 4};
  const HHMMSS half{.h = 2, .m = 30};
  const Script scripts[] = {
      {"Europe/Berlin",
       "2024-03-07T22:59:00Z",
       {.times = {HHMMSS::midnight, four}},
       {{"midnight", nullptr, 59.9, 0},
        {"midnight", nullptr, 0.2, 1},
        {"a step back of the time service", "2024-03-07T22:59:59Z", 70, 0},
        {"four o'clock", nullptr, 4 * 3600 - 200, 0},
        {"four o'clock", nullptr, 200, 1},
        {"ten days", nullptr, 10 * 86400, 20}}},
      {"Europe/Berlin",
       "2024-03-07T12:00:00Z",
       {.times = {HHMMSS::midnight}},
       {{"set forth within the day", "2024-03-07T22:00:00Z", 120, 0},
        {"set forth by a month", "2024-04-07T12:00:00Z", 120, 1},
        {"set right again", "2024-03-07T12:00:00Z", 120, 1},
        {"set back over midnight", "2024-03-06T22:50:00Z", 120, 1},
        {"and midnight again", nullptr, 900, 1}}},
      {"Europe/Berlin",
       "2024-03-30T12:00:00Z",
       {.times = {half}},
       {{"a start in the hour that is skipped", nullptr, 86400, 1},
        {"the next", nullptr, 86400, 1}}},
      {"Europe/Berlin",
       "2024-10-26T12:00:00Z",
       {.times = {half}},
       {{"a start in the hour that is repeated", nullptr, 86400, 1},
        {"the next", nullptr, 86400, 1}}},
      {"Europe/Berlin",
       "2024-03-07T12:00:00Z",
       {.times = {HHMMSS::midnight}, .pinned = {{"America/New_York", HHMMSS::midnight}}},
       {{"two days, each by its clock", nullptr, 86400, 2}}},
  };
  for (const Script& script : scripts) {
    VirtualEnvironment environment;
    environment.setTimeZone(TimeZone::fromIdentifier(script.zone).value());
    environment.setNow(at(script.from));
    int calls = 0;
    CalendarDayWatcher watcher([&] { ++calls; });
    watcher.monitor(script.starts);
    for (const Step& step : script.steps) {
      if (step.setTo != nullptr) environment.setNow(at(step.setTo));
      calls = 0;
      environment.advance(step.seconds);
      EXPECT_EQ(calls, step.calls) << script.from << ": " << step.what;
    }
  }
}

TEST_F(TasksTest, EachStartOfADayInUseIsWatched) {
  task_->setValue(TaskAttributes::startOfDayValue, HHMMSS{.h = 4});
  const auto pinned = make<TaskEntity>();
  pinned->setValue(TaskAttributes::currentTimeZoneOverride, TimeZone::fromIdentifier("Asia/Tokyo"));
  const auto starts =
      CalendarDayWatcher::DayStarts::of({task_, pinned, make<TaskEntity>()}, HHMMSS{.h = 3});
  EXPECT_EQ(starts.times, (std::set{HHMMSS::midnight, HHMMSS{.h = 3}, HHMMSS{.h = 4}}));
  EXPECT_EQ(starts.pinned.size(), 1U);
  EXPECT_EQ(starts.pinned.begin()->first, "Asia/Tokyo");

  int calls = 0;
  CalendarDayWatcher watcher([&] { ++calls; });
  watcher.monitor(starts);
  environment_.setNow(Date::now() + 86400);
  NSNotificationCenter::defaultCenter().post({.name = CalendarDayWatcher::clockDidChange});
  environment_.settle();
  EXPECT_EQ(calls, 1) << "told at once, one call for all";
  environment_.setTimeZone(TimeZone::fromIdentifier("Pacific/Kiritimati").value());
  watcher.monitor({.times = {HHMMSS::midnight}});
  environment_.advance(61);
  EXPECT_EQ(calls, 1) << "another choice is no change";
}

}  // namespace
}  // namespace velloro
