#include "Support/Fixtures.h"
#include "Tasks/Columns/StoredAutomaticTaskType.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Text = std::optional<std::string>;

TEST(StoredAutomaticTaskType, IsMadeOutOfItsColumns) {
  const struct {
    Text name;
    double target;
    Text unit, speed;
    const char* read;
  } cases[] = {
      {{}, 10, {}, "run", "none"},
      {{}, 10, {}, "timed", "type=timer quantity=10 unit=seconds speeds=[timed] extra=none"},
      {{}, 10, "hour", "timed", "type=timer quantity=10 unit=seconds speeds=[timed] extra=none"},
      {{}, 10, "hours", "timed", "type=timer quantity=10 unit=hours speeds=[timed] extra=none"},
      {"screentime", 0, "hours", {}, "none"},
      {"screentime", 2, "hours", "?", "type=screenTime quantity=2 unit=hours speeds=[] extra=none"},
      {"", 1, {}, {}, "none"},
      {"hk_new", 1, {}, {}, "none"},
      {"hk_water", 2, "litres", {}, "type=hk_water quantity=2 unit=litres speeds=[] extra=none"},
      {".hk_water.", 2, "km", {}, "type=hk_water quantity=2 unit=cups_us speeds=[] extra=none"},
      {"hk_activity", 2, "km", {}, "type=hk_activity quantity=0 unit=none speeds=[] extra=none"},
      {"hk_distance", 5, "km", "walk,jog,timed",
       "type=hk_distance quantity=5 unit=km speeds=[walk] extra=none"},
  };
  for (const auto& [name, target, unit, speed, read] : cases) {
    const auto type = _buildAutomaticTaskType(name, target, unit, speed);
    EXPECT_EQ(type ? type->debugDescription() : "none", read) << name.value_or("-");
  }
}

TEST(StoredAutomaticTaskType, TellsWhichDataCount) {
  using enum AutomaticTaskType::DataSource;
  const std::pair<const char*, std::optional<AutomaticTaskType::DataSource>> cases[] = {
      {"hk_water", std::nullopt},
      {"hk_water.", std::nullopt},
      {"hk_water.all", allData},
      {"hk_water.curr", currentTask},
      {"hk_water.x", std::nullopt}};
  for (const auto& [name, source] : cases) {
    EXPECT_EQ(_buildAutomaticTaskType(name, 1, {}, {})->dataSource, source) << name;
  }
}

TEST(StoredAutomaticTaskType, ListsWorkoutsByNameOrAsJSON) {
  const WorkoutType yoga = WorkoutType::healthKit(OxHKWorkoutActivityType::yoga);
  const WorkoutType own = WorkoutType::velloroWorkout(
      {.id = VelloroWorkoutWorkoutType::ID::system(VelloroWorkoutWorkoutType::System::hard),
       .title = "Hard, and long"});
  const std::pair<const char*, std::set<WorkoutType>> cases[] = {
      {"yoga,flying", {yoga}},
      {"flying", {}},
      {R"(["yoga"])", {yoga}},
      {R"([{"id":{"system":"hard"},"title":"Hard, and long"},"yoga"])", {own, yoga}}};
  for (const auto& [text, workouts] : cases) {
    const auto type = _buildAutomaticTaskType("hk_workout", 30, "minutes", text);
    EXPECT_EQ(type->extra.value_or(TypeExtra()).workoutTypes, workouts) << text;
    EXPECT_EQ(StoredAutomaticTaskType::from(type).automaticTaskType(), type) << text;
  }
}

TEST(StoredAutomaticTaskType, EveryTypeIsReadAsItWasWritten) {
  const TypeExtra screen{.screenTimeSettings =
                             ScreenTimeSettings{PropertyList::fromJSON(R"({"apps":[1,2]})")}};
  for (const TaskType type : TaskType::all()) {
    AutomaticTaskType written(type, type.defaultTarget());
    if (!type.usesHealthKit()) {
      written.setTaskTarget(TaskTarget{.quantity = 60});
      if (type == TaskType::timer()) written.speeds = {TypeSpeed::timed};
      if (type == TaskType::screenTime()) written.extra = screen;
    } else {
      written.dataSource = AutomaticTaskType::DataSource::currentTask;
    }
    EXPECT_EQ(StoredAutomaticTaskType::from(written).automaticTaskType(), written)
        << written.debugDescription();
  }
}

}  // namespace
}  // namespace velloro
