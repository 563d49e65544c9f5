#include "Foundation/Dispatch/DispatchGroup.h"
#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Process/MainLoop.h"
#include "Foundation/Process/VirtualEnvironment.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <latch>
#include <limits>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>

namespace platform {
namespace {

TEST(DispatchQueue, SerialBlocksOfManyThreadsRunInOrderAndAlone) {
  constexpr int blocks = 500;
  const DispatchQueue queue("serial");
  std::array<int, 4> ran{};
  int running = 0;
  const auto submit = [&](int& ranHere) {
    for (int i = 0; i < blocks; ++i) {
      const auto block = [&, i] {
        EXPECT_EQ(++running, 1);
        EXPECT_TRUE(queue.isCurrent());
        EXPECT_EQ(ranHere++, i);
        --running;
      };
      i % 5 == 0 ? queue.sync(block) : queue.async(block);
    }
  };
  {
    std::vector<std::jthread> threads;
    for (int& ranHere : ran) threads.emplace_back(submit, std::ref(ranHere));
  }
  queue.sync([] {});
  EXPECT_THAT(ran, testing::Each(blocks));
}

TEST(DispatchQueue, SyncGivesTheResultAndPassesWhatIsThrown) {
  const DispatchQueue outer("outer");
  const DispatchQueue inner("inner");
  const auto nested = [&] {
    return inner.sync([&] { return outer.isCurrent() && inner.isCurrent(); });
  };
  EXPECT_FALSE(outer.isCurrent());
  EXPECT_TRUE(outer.sync(nested));
  EXPECT_EQ(*outer.sync([] { return std::make_unique<int>(7); }), 7);
  EXPECT_THROW(outer.sync([] { throw std::runtime_error("no"); }), std::runtime_error);
  EXPECT_TRUE(outer.sync(nested)) << "the queue goes on after an exception";

  VirtualEnvironment environment;
  DispatchQueue::global().async([main = DispatchQueue::main()] {
    EXPECT_FALSE(main.isCurrent());
    EXPECT_TRUE(main.sync([&] { return main.isCurrent(); }));
    EXPECT_THROW(main.sync([] { throw std::runtime_error("no"); }), std::runtime_error);
  });
  environment.settle();
}

TEST(DispatchQueue, BlockedWorkersDoNotHoldUpOthers) {
  VirtualEnvironment environment;
  constexpr int blocked = 20;
  std::latch waiting(blocked);
  std::latch release(1);
  for (int i = 0; i < blocked; ++i) {
    const auto wait = [&] {
      waiting.count_down();
      release.wait();
    };
    i % 2 == 0 ? DispatchQueue("blocked").async(wait) : DispatchQueue::global().async(wait);
  }
  DispatchQueue::global(QualityOfService::background).async([&] {
    waiting.wait();
    release.count_down();
  });
  environment.settle();
}

TEST(DispatchQueue, RunsWhatItHoldsWhenTheLastHandleGoes) {
  VirtualEnvironment environment;
  std::promise<void> handleGone;
  int ran = 0;
  {
    const DispatchQueue queue("short lived");
    queue.async([&, self = queue] { handleGone.get_future().wait(); });
    for (int i = 0; i < 100; ++i) queue.async([&] { ++ran; });
  }
  handleGone.set_value();
  environment.settle();
  EXPECT_EQ(ran, 100);
}

TEST(DispatchQueue, WorksInRealTime) {
  MainLoop& loop = Environment::current().mainLoop();
  TimedWork& timedWork = Environment::current().timedWork();
  const double start = Environment::current().mediaTime();
  std::vector<std::string> events;
  const auto note = [&](const char* event) {
    DispatchQueue::main().async([&events, event] { events.emplace_back(event); });
  };
  timedWork.schedule(start + 0.002, [&] { note("second"); });
  timedWork.schedule(start + 0.001, [&] { note("first"); });
  timedWork.schedule(std::numeric_limits<double>::infinity(), [&] { note("never"); });
  DispatchQueue::global().async([&] {
    note("background");
    DispatchQueue::main().asyncAfter(0.004, [&] { loop.stop(); });
  });
  loop.run();
  EXPECT_GE(Environment::current().mediaTime() - start, 0.004);
  EXPECT_THAT(events, testing::UnorderedElementsAre("background", "first", "second"));
}

TEST(DispatchQueueDeathTest, ProcessExitsCleanlyWithWorkPendingAndKeepsWhatWasFlushed) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto exitBusily = [] {
    const DispatchQueue log("log");
    std::latch never(1);
    std::atomic<bool> busy = false;
    log.async([] { std::fputs("flushed", stderr); });
    for (int i = 0; i < 5; ++i) DispatchQueue::global().async([&] { never.wait(); });
    DispatchQueue::global().async([&] {
      for (;;) busy = (busy.notify_all(), true);
    });
    DispatchQueue::global().asyncAfter(0.001, [] {});
    DispatchQueue::global().asyncAfter(3600, [] {});
    DispatchQueue::main().async([] { std::fputs("main thread", stderr); });
    busy.wait(false);
    log.sync([] {});
    std::exit(0);
  };
  EXPECT_EXIT(exitBusily(), testing::ExitedWithCode(0), "^flushed$");
}

#ifndef NDEBUG
TEST(DispatchQueueDeathTest, WaitingForOneselfAsserts) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const DispatchQueue queue("own");
  EXPECT_DEATH(queue.sync([&] { queue.sync([] {}); }), "already current");
  EXPECT_DEATH(DispatchQueue::main().sync([] {}), "main thread");
  EXPECT_DEATH(DispatchGroup().leave(), "more often");
}
#endif

TEST(DispatchGroup, NotifiesWhenAllHaveLeft) {
  VirtualEnvironment environment;
  const DispatchGroup group;
  std::atomic<int> left = 0;
  std::vector<int> leftAtNotification;
  const auto notify = [&] {
    group.notify(DispatchQueue::main(), [&] { leftAtNotification.push_back(left); });
  };
  notify();  // at once, as nobody is inside
  environment.settle();
  group.enter();
  notify();
  notify();
  EXPECT_FALSE(group.wait(0));
  for (int i = 0; i < 50; ++i) {
    group.enter();
    DispatchQueue::global().async([&, group] {
      ++left;
      group.leave();
    });
  }
  group.leave();
  EXPECT_TRUE(group.wait(std::numeric_limits<double>::infinity()));
  environment.settle();
  EXPECT_THAT(leftAtNotification, testing::ElementsAre(0, 50, 50));
}

}  // namespace
}  // namespace platform
