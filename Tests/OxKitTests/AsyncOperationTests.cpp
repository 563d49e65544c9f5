#include "OxKit/AsyncOperation.h"

#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Steps = std::vector<std::string>;

/// What observers of an operation heard: the flag that changed, with its new value.
struct Changes {
  explicit Changes(AsyncOperation& it)
      : executing(it.addObserver("isExecuting",
                                 [&] { heard.push_back(it.isExecuting() ? "runs" : "rests"); })),
        finished(it.addObserver("isFinished",
                                [&] { heard.push_back(it.isFinished() ? "ended" : "back"); })) {}

  Steps heard;
  NSNotificationCenter::Token executing, finished;
};

TEST(AsyncOperation, EndsOnceWhenItSaysSo) {
  std::shared_ptr<AsyncBlockOperation> given;
  const auto operation = std::make_shared<AsyncBlockOperation>([&](auto self) { given = self; });
  const Changes changes(*operation);
  operation->start();
  EXPECT_EQ(given, operation);
  EXPECT_EQ(changes.heard, (Steps{"runs"}));
  std::vector<std::jthread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back([&] { operation->complete(); });
  operation->waitUntilFinished();
  threads.clear();
  operation->start();
  EXPECT_EQ(changes.heard, (Steps{"runs", "rests", "ended"}));
}

TEST(AsyncOperation, CompletesWithoutAStartOrABlock) {
  AsyncBlockOperation unstarted, empty;
  const Changes changes(unstarted);
  unstarted.complete();
  EXPECT_EQ(changes.heard, (Steps{"ended"}));
  empty.start();
  EXPECT_TRUE(empty.isFinished());

  AsyncBlockOperation early([](const auto&) { ADD_FAILURE() << "it had ended"; });
  const auto meanwhile = early.addObserver("isExecuting", [&] { early.complete(); });
  const Changes earlyChanges(early);
  early.start();
  EXPECT_EQ(earlyChanges.heard, (Steps{"runs", "rests", "ended"}));
}

TEST(AsyncOperation, IsOverForGoodWhenItsEndMeetsItsStart) {
  for (int i = 0; i < 2000; ++i) {
    const auto operation = std::make_shared<AsyncBlockOperation>([](const auto&) {});
    const Changes changes(*operation);
    std::latch together(2);
    std::thread ending([&] {
      together.arrive_and_wait();
      operation->complete();
    });
    together.arrive_and_wait();
    operation->start();
    ending.join();
    const bool neverRan = changes.heard == Steps{"ended"};
    ASSERT_TRUE(neverRan || changes.heard == (Steps{"runs", "rests", "ended"}));
  }
}

TEST(AsyncOperation, IsStartedEvenWhenCancelled) {
  bool sawIt = false;
  const auto operation =
      std::make_shared<AsyncBlockOperation>([&](const auto& self) { sawIt = self->isCancelled(); });
  operation->cancel();
  operation->start();
  EXPECT_TRUE(sawIt);
}

}  // namespace
}  // namespace velloro
