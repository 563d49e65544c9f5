#include "Foundation/Dispatch/NSTimer.h"
#include "Foundation/Process/VirtualEnvironment.h"

#include <memory>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::DoubleNear;
using testing::Pointwise;

class NSTimerTest : public testing::Test {
 protected:
  Block note() {
    return [this] { fired.push_back(Date::now().timeIntervalSince(start)); };
  }
  void expectFired(const std::vector<double>& expected) {
    EXPECT_THAT(fired, Pointwise(DoubleNear(1e-5), expected));
  }

  VirtualEnvironment environment;
  Date start = Date::now();
  std::vector<double> fired;
};

TEST_F(NSTimerTest, FiresOnceOrInAFixedRhythm) {
  const NSTimer once = NSTimer::scheduled(0.8, false, note());
  environment.setNow(start - 3600);  // moves no timer
  environment.advance(0.79);
  environment.setNow(start + 0.79);
  EXPECT_TRUE(once.isValid());
  EXPECT_EQ(once.fireDate(), start + 0.8);
  environment.advance(5);
  EXPECT_FALSE(once.isValid());
  EXPECT_FALSE(once.fireDate());
  expectFired({0.8});

  fired.clear();
  start = Date::now();
  const NSTimer rhythm = NSTimer::scheduled(0.1, true, note());
  environment.advance(0.5);
  expectFired({0.1, 0.2, 0.3, 0.4, 0.5});
  EXPECT_NEAR(rhythm.fireDate()->timeIntervalSince(start), 0.6, 1e-6);
}

/// A main thread that is busy until it is told to run what was posted meanwhile.
class BusyEnvironment : public VirtualEnvironment, public MainLoop {
 public:
  MainLoop& mainLoop() override { return *this; }
  void post(Block block) override { posted_.push_back(std::move(block)); }
  bool isCurrent() const override { return true; }
  void run() override {
    for (Block& block : std::exchange(posted_, {})) block();
  }
  void watch(std::weak_ptr<MainLoopSource> /*source*/) override {}
  void stop() override {}

 private:
  std::vector<Block> posted_;
};

TEST_F(NSTimerTest, LeavesOutTheTimesThatPassedWhileTheMainThreadWasBusy) {
  BusyEnvironment busy;
  const NSTimer timer = NSTimer::scheduled(1, true, note());
  for (const double seconds : {3.5, 0.4, 0.1, 1.0}) {
    busy.advance(seconds);
    busy.run();
  }
  expectFired({3.5, 4, 5});
}

TEST_F(NSTimerTest, AFiringOnItsWayToTheMainThreadIsTakenBack) {
  BusyEnvironment busy;
  NSTimer ended = NSTimer::scheduled(1, false, note());
  NSTimer moved = NSTimer::scheduled(1, false, note());
  busy.advance(1);
  ended.invalidate();
  moved.setFireDate(start + 3);
  busy.run();
  busy.advance(2);
  busy.run();
  expectFired({3});
}

TEST_F(NSTimerTest, EndsWithItsHandleAlsoInItsOwnBlock) {
  const auto captured = std::make_shared<int>(0);
  NSTimer timer;
  timer = NSTimer::scheduled(1, true, [&, captured] {
    note()();
    timer.invalidate();
    EXPECT_EQ(captured.use_count(), 2) << "what the running block holds lives on";
  });
  environment.advance(3);
  expectFired({1});
  EXPECT_EQ(captured.use_count(), 1);

  timer = NSTimer::scheduled(1, true, [&] {
    note()();
    timer = NSTimer::scheduled(0.5, false, note());
  });
  environment.advance(3);

  { const NSTimer gone = NSTimer::scheduled(1, false, note()); }
  environment.advance(3);
  expectFired({1, 4, 4.5});
}

TEST_F(NSTimerTest, FiresByHandAndMovesItsFireDate) {
  NSTimer rhythm = NSTimer::scheduled(1, true, note());
  NSTimer once = NSTimer::scheduled(1, false, note());
  rhythm.fire();
  once.fire();
  once.fire();
  expectFired({0, 0});
  rhythm.setFireDate(start + 2.5);
  environment.advance(4);
  rhythm.setFireDate(start);
  environment.advance(1);
  expectFired({0, 0, 2.5, 3.5, 4, 5});
}

}  // namespace
}  // namespace platform
