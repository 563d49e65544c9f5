#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/String.h"

#include <future>

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::ElementsAre;

/// What happened on the main thread, each with its time since the start.
struct Script {
  VirtualEnvironment environment;
  Date start = Date::now();
  std::vector<std::string> events;

  void note(const std::string& event) {
    events.push_back(stringWithFormat("%.2f ", Date::now().timeIntervalSince(start)) + event);
  }
};

TEST(VirtualEnvironment, RunsEachThingAtItsTimeWithAllThatFollowsFromIt) {
  Script script;
  const DispatchQueue& main = DispatchQueue::main();
  const DispatchQueue background("background");
  main.asyncAfter(0.5, [&] { script.note("late"); });
  main.asyncAfter(0.2, [&] {
    script.note("first of two");
    main.asyncAfter(0.1, [&] { script.note("scheduled on the way"); });
    main.asyncAfter(9, [&] { script.note("never"); });
    background.async([&] { main.async([&] { script.note("back from the background"); }); });
  });
  main.asyncAfter(0.2, [&] { script.note("second of two"); });
  background.asyncAfter(0.4, [&] { main.sync([&] { script.note("waited for"); }); });
  main.async([&] { script.note("posted"); });
  script.environment.advance(0.4);
  script.note("stopped");
  for (int i = 0; i < 10; ++i) script.environment.advance(0.01);
  script.environment.setNow(script.start + 60);
  script.environment.settle();
  script.note("nothing is due by the wall clock");
  EXPECT_THAT(script.events,
              ElementsAre("0.00 posted", "0.20 first of two", "0.20 back from the background",
                          "0.20 second of two", "0.30 scheduled on the way", "0.40 waited for",
                          "0.40 stopped", "0.50 late", "60.00 nothing is due by the wall clock"));
}

TEST(VirtualEnvironment, LoopRunsUntilStoppedOrUntilNothingIsLeft) {
  Script script;
  MainLoop& loop = script.environment.mainLoop();
  const DispatchQueue& main = DispatchQueue::main();
  main.asyncAfter(5, [&] {
    script.note("stop");
    loop.stop();
  });
  main.asyncAfter(7200, [&] { script.note("last"); });
  loop.run();
  EXPECT_THAT(script.events, ElementsAre("5.00 stop"));
  loop.stop();
  loop.run();
  EXPECT_THAT(script.events, ElementsAre("5.00 stop"));
  loop.run();
  EXPECT_THAT(script.events, ElementsAre("5.00 stop", "7200.00 last"));
}

TEST(VirtualEnvironment, EndsAfterTheBackgroundWorkAndDropsTheRest) {
  std::promise<void> ending;
  bool backgroundRan = false;
  bool mainRan = false;
  bool isEnvironmentKept = false;
  struct Ending {
    std::promise<void>& promise;
    ~Ending() { promise.set_value(); }
  };
  {
    VirtualEnvironment environment;
    DispatchQueue::main().async(
        [&mainRan, end = std::make_unique<Ending>(ending)] { mainRan = true; });
    DispatchQueue::main().asyncAfter(0, [&] { mainRan = true; });
    DispatchQueue::global().async([&] {
      ending.get_future().wait();  // until the end has begun to drop what waits
      DispatchQueue::main().async([&] { mainRan = true; });
      isEnvironmentKept = &Environment::current() == &environment;
      backgroundRan = true;
    });
  }
  EXPECT_TRUE(backgroundRan);
  EXPECT_TRUE(isEnvironmentKept);
  EXPECT_FALSE(mainRan);
}

}  // namespace
}  // namespace platform
