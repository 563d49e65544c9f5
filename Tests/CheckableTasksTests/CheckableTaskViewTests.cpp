#include "CheckableTasks/CheckableTaskView.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxKit/Localization.h"

#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using View = CheckableTaskView;
using enum View::State;
using Behaviour = View::SubProgressBehaviour;

constexpr double tolerance = 1e-9;

/// Writes down each change of state with its time.
struct Recorder : View::Delegate {
  explicit Recorder(VirtualEnvironment& theEnvironment)
      : environment(theEnvironment), start(theEnvironment.mediaTime()) {}

  void checkableTaskViewDidChangeState(View::State state) override {
    const auto milliseconds = std::lround((environment.mediaTime() - start) * 1000);
    changes.emplace_back(state, milliseconds);
  }

  VirtualEnvironment& environment;
  double start;
  std::vector<std::pair<View::State, long>> changes;
};

struct CheckableTaskViewTest : ::testing::Test {
  CheckableTaskViewTest() { view->setDelegate(recorder); }

  void press(double seconds) {
    view->pressBegan();
    environment.advance(seconds);
    view->pressEnded();
  }

  void usePartialCompletions() {
    view->update([](auto& ring) {
      ring.numSegments = 3;
      ring.allowPartialCompletions = true;
    });
  }

  VirtualEnvironment environment;
  std::shared_ptr<View> view = View::make({84, 84});
  std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>(environment);
};

TEST_F(CheckableTaskViewTest, MovesAlongItsCurveAndLandsExactly) {
  view->update([](auto& ring) { ring.subProgressTimingFunction = OxAnimationCurve::linear; });
  view->setProgress(0.2, 0, 0);
  EXPECT_EQ(view->progressCurrent(), 0.2);
  view->setProgress(1, 0.8, 2);
  environment.advance(1);
  EXPECT_NEAR(view->progressCurrent(), 0.6, tolerance);
  EXPECT_NEAR(view->subProgressCurrent(), 0.4, tolerance);
  view->setProgress(1, 0.8, 10);  // where it already goes: the older animation runs on
  environment.advance(1.1);
  EXPECT_EQ(view->progressCurrent(), 1);
  EXPECT_EQ(view->subProgressCurrent(), 0.8);
}

/// Frames a second of a run that takes so long.
struct Rate {
  Behaviour behaviour;
  double duration;
  int rate;
};
constexpr Rate rates[] = {{Behaviour::partialCompletions, 0.55, 120},
                          {Behaviour::partialCompletions, 59, 120},
                          {Behaviour::partialCompletions, 60, 60},
                          {Behaviour::partialCompletions, 300, 30},
                          {Behaviour::partialCompletions, 600, 15},
                          {Behaviour::partialCompletions, 3000, 5},
                          {Behaviour::timer, 0.55, 120},
                          {Behaviour::timer, 600, 120},
                          {Behaviour::timerWithPartialCompletions, 0.55, 30},
                          {Behaviour::timerWithPartialCompletions, 3000, 30}};

TEST_F(CheckableTaskViewTest, RepaintsAtTheRateThatTheDurationAsksFor) {
  for (const auto& [behaviour, duration, rate] : rates) {
    if (duration < 1) continue;
    const auto ring = View::make({84, 84});
    ring->update([&](auto& look) { look.subProgressBehaviour = behaviour; });
    ring->setProgress(1, 0, duration);
    double last = 0;
    int frames = 0;
    for (int step = 0; step < 480; ++step) {
      environment.advance(1.0 / 480);
      frames += ring->progressCurrent() != last ? 1 : 0;
      last = ring->progressCurrent();
    }
    EXPECT_EQ(frames, rate) << duration;
  }
}

TEST_F(CheckableTaskViewTest, LeavesATimersSubProgressAlone) {
  view->setProgress(0, 0.3, 0);
  view->update([](auto& ring) { ring.subProgressBehaviour = Behaviour::timer; });
  view->setProgress(0.5, 0.9, 0);
  view->setProgress(0.7, 0.9, 1);
  environment.advance(2);
  EXPECT_EQ(view->progressCurrent(), 0.7);
  EXPECT_EQ(view->subProgressCurrent(), 0.3);
}

TEST_F(CheckableTaskViewTest, ChecksByItselfAtEveryTickRate) {
  for (const auto& [behaviour, duration, rate] : rates) {
    SCOPED_TRACE(duration);
    view->setState(checkable);
    view->update([&](auto& ring) { ring.subProgressBehaviour = behaviour; });
    view->setProgress(0.3, 0, 0);
    recorder->changes.clear();
    recorder->start = environment.mediaTime();
    view->checkAutomatically(duration);
    environment.advance(duration * 0.98);
    EXPECT_TRUE(view->currentlyCheckingAuto());
    EXPECT_LT(view->progressCurrent(), 1);
    environment.advance(duration * 0.02 + 1.0 / rate);  // one tick stands behind the end
    EXPECT_EQ(view->progressCurrent(), 1);
    environment.advance(1);
    const auto end = std::lround(duration * 1000);
    EXPECT_THAT(recorder->changes,
                ElementsAre(std::pair(checked, end + 10), std::pair(completed, end + 410)));
    EXPECT_FALSE(view->currentlyCheckingAuto());
  }
  view->setState(checkable);
  recorder->changes.clear();
  recorder->start = environment.mediaTime();
  view->checkAutomatically(0);
  EXPECT_EQ(view->progressCurrent(), 1);
  environment.advance(1);
  EXPECT_THAT(recorder->changes, ElementsAre(std::pair(checked, 10), std::pair(completed, 410)));
}

TEST_F(CheckableTaskViewTest, TellsOfRealChangesOnly) {
  EXPECT_FALSE(view->setState(checkable));
  EXPECT_TRUE(view->setState(completed));
  view->setDelegate({});
  EXPECT_TRUE(view->setState(checkable));
  EXPECT_EQ(recorder->changes.size(), 1U);
}

TEST_F(CheckableTaskViewTest, StepsOfAViewThatHasGoneDoNothing) {
  view->checkAutomatically(0.55);
  view->pressBegan();
  view.reset();
  environment.advance(5);
  EXPECT_THAT(recorder->changes, IsEmpty());
}

TEST_F(CheckableTaskViewTest, APlainTaskIsCheckedByHolding) {
  press(0.6);
  EXPECT_EQ(view->state(), checked);
  environment.advance(1);
  EXPECT_THAT(recorder->changes, ElementsAre(std::pair(checked, 550), std::pair(completed, 1000)));
  view->pressBegan();  // a ring that is done is not pressed again
  EXPECT_FALSE(view->currentlyCheckingManual());
}

TEST_F(CheckableTaskViewTest, AnEarlyReleaseGoesBack) {
  view->setProgress(0.5, 1, 0);
  press(0.3);
  EXPECT_GT(view->progressCurrent(), 0.5);
  environment.advance(2);
  EXPECT_EQ(view->progressCurrent(), 0.5);
  EXPECT_EQ(view->subProgressCurrent(), 0) << "a full one comes back empty";
  EXPECT_THAT(recorder->changes, IsEmpty());
}

TEST_F(CheckableTaskViewTest, ACancelledPressGoesBackToJustWhatWas) {
  view->setProgress(1, 1, 0);
  view->update([](auto& ring) { ring.subProgressBehaviour = Behaviour::timer; });
  view->pressBegan();
  environment.advance(0.3);
  view->pressCancelled();
  environment.advance(2);
  EXPECT_EQ(view->progressCurrent(), 1);
  EXPECT_EQ(view->subProgressCurrent(), 1);
  EXPECT_EQ(view->configuration().subProgressBehaviour, Behaviour::partialCompletions);
  EXPECT_THAT(recorder->changes, IsEmpty());
}

TEST_F(CheckableTaskViewTest, HoldingOnMarksOnePartThenAll) {
  usePartialCompletions();
  view->setProgress(1.0 / 3, 0, 0);
  view->pressBegan();
  environment.advance(0.5);
  EXPECT_NEAR(view->progressCurrent(), 1.0 / 3, tolerance) << "only the part fills";
  environment.advance(2);
  view->pressEnded();
  environment.advance(1);
  EXPECT_THAT(recorder->changes, ElementsAre(std::pair(checkedInner, 550), std::pair(checked, 1700),
                                             std::pair(completed, 2900)));
}

TEST_F(CheckableTaskViewTest, ReleasesDuringTheInnerHold) {
  usePartialCompletions();
  view->setProgress(1.0 / 3, 0, 0);
  // Before the whole task begins to fill, and while it does.
  for (const auto& [seconds, end] : {std::pair(0.8, 1200), std::pair(1.4, 1400)}) {
    recorder->changes.clear();
    recorder->start = environment.mediaTime();
    press(seconds);
    environment.advance(2);
    EXPECT_THAT(recorder->changes,
                ElementsAre(std::pair(checkedInner, 550), std::pair(checkable, end)));
  }
  EXPECT_NEAR(view->progressCurrent(), 1.0 / 3, tolerance);
  EXPECT_EQ(view->subProgressCurrent(), 0);
}

TEST_F(CheckableTaskViewTest, StepsOfAnEarlierPressDoNothing) {
  press(0.3);
  environment.advance(0.1);
  view->pressBegan();  // 0.4 s: the first press's step at 0.55 s must not check
  environment.advance(0.5);
  EXPECT_THAT(recorder->changes, IsEmpty());
  environment.advance(0.1);
  EXPECT_THAT(recorder->changes, ElementsAre(std::pair(checked, 950)));
}

TEST_F(CheckableTaskViewTest, IsPressedByAFingerThatRestsOnIt) {
  UIWindow window(2);
  window.setContentView(view);
  EXPECT_EQ(view->contentsScale(), 2);
  const auto rest = [&](CGPoint at) {
    recorder->changes.clear();
    recorder->start = environment.mediaTime();
    view->receive({UITouch::Phase::began, at});
    environment.advance(1);
    view->receive({UITouch::Phase::ended, at});
    environment.advance(1);
  };
  rest({90, 10});
  EXPECT_THAT(recorder->changes, IsEmpty()) << "beside the view";
  rest({42, 42});
  EXPECT_THAT(recorder->changes, ElementsAre(std::pair(checked, 750), std::pair(completed, 1400)));

  view->setState(checkable);
  view->update([](auto& ring) { ring.longPressIsEnabled = false; });
  rest({42, 42});
  EXPECT_THAT(recorder->changes, IsEmpty());
}

TEST_F(CheckableTaskViewTest, SaysHowTheTaskStands) {
  environment.setResources(VELLORO_RESOURCES);
  const auto label = [&](bool isNegative, View::State state, double progress, int segments) {
    view->update([&](auto& ring) {
      ring.habitMode = isNegative ? View::HabitMode::negative : View::HabitMode::positive;
      ring.numSegments = segments;
      ring.allowPartialCompletions = segments > 1;
    });
    view->setState(state);
    view->setProgress(progress, 0, 0);
    return view->accessibilityLabel();
  };
  const std::string done = localized("VoiceoverTaskComplete");
  const std::string missed = localized("VoiceoverTaskMissed");
  EXPECT_NE(done, "VoiceoverTaskComplete");
  EXPECT_EQ(label(false, completed, 1, 1), done);
  EXPECT_EQ(label(false, checkedInner, 0, 3), done);
  EXPECT_EQ(label(false, checkable, 0.34, 3),
            localized("VoiceoverTaskCompleteTimesPerDay", {"1", "3"}));
  EXPECT_EQ(label(false, checkable, 0.34, 1), localized("VoiceoverTaskCompletePct", {"34%"}));
  EXPECT_EQ(label(false, checkable, 0, 1), localized("VoiceoverTaskIncomplete"));
  EXPECT_EQ(label(true, completed, 1, 1), missed);
  EXPECT_EQ(label(true, checkable, 0.67, 3),
            localized("VoiceoverTaskMissedTimesPerDay", {"2", "3"}));
  EXPECT_EQ(label(true, checkable, 0.5, 1), localized("VoiceoverTaskMissedPct", {"50%"}));
  EXPECT_EQ(label(true, checkable, 0, 1), done);

  view->update([](auto& ring) {
    ring.accessibilityLabelPrefix = "Read";
    ring.bottomCaption = {.text = "7", .accessibilityLabel = "7 days"};
    ring.topCaption = {.text = "x", .accessibilityLabel = ""};
  });
  EXPECT_EQ(view->accessibilityLabel(), "Read.\n" + done + ".\n7 days.\nx");
  view->update([](auto& ring) { ring.accessibilityLabelIncludeState = false; });
  EXPECT_EQ(view->accessibilityLabel(), "Read.\n7 days.\nx");
}

TEST_F(CheckableTaskViewTest, IsDrawnAnewWhenItLooksDifferent) {
  UIWindow window(1);
  window.setContentView(view);
  ASSERT_TRUE(window.displayIfNeeded());
  EXPECT_FALSE(window.displayIfNeeded());
  view->update([](auto& ring) { ring.allowPartialCompletions = true; });
  EXPECT_FALSE(window.displayIfNeeded());
  view->update([](auto& ring) { ring.normalizedTrackWidth = 0.1; });
  EXPECT_TRUE(window.displayIfNeeded());
  view->setState(completed);
  EXPECT_TRUE(window.displayIfNeeded());
}

}  // namespace
}  // namespace velloro
