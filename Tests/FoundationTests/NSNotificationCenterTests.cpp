#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Process/VirtualEnvironment.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::ElementsAre;

class NSNotificationCenterTest : public testing::Test {
 protected:
  NSNotificationCenter::Handler note(const std::string& who) {
    return [this, who](const Notification&) { heard.push_back(who); };
  }

  NSNotificationCenter center;
  std::vector<std::string> heard;
};

TEST_F(NSNotificationCenterTest, ReachesThoseWhoAskedForTheNameAndTheObject) {
  const int mine = 0;
  const int other = 0;
  const auto any = center.addObserver("saved", [&](const Notification& notification) {
    EXPECT_THAT(*notification.value<std::vector<int>>("ids"), ElementsAre(1, 2));
    EXPECT_EQ(notification.value<int>("ids"), nullptr);
    EXPECT_EQ(notification.value<int>("count"), nullptr);
    heard.push_back("any");
  });
  const auto ofMine = center.addObserver("saved", &mine, {}, note("mine"));
  const auto ofOther = center.addObserver("saved", &other, {}, note("other"));
  center.post({.name = "saved", .object = &mine, .userInfo = {{"ids", std::vector{1, 2}}}});
  center.post({.name = "saved", .userInfo = {{"ids", std::vector{1, 2}}}});
  center.post({.name = "nobody asked"});
  EXPECT_THAT(heard, ElementsAre("any", "mine", "any"));
}

TEST_F(NSNotificationCenterTest, ObserversComeAndGoDuringAPost) {
  NSNotificationCenter::Token own, second, added;
  own = center.addObserver("saved", [&, kept = std::string("own")](const Notification&) {
    own.remove();
    second.remove();
    added = center.addObserver("saved", note("added"));
    center.post({.name = "again"});
    heard.push_back(kept);  // still there, though its observer is gone
  });
  second = center.addObserver("saved", note("second"));
  auto again = center.addObserver("again", note("again"));
  center.post({.name = "saved"});
  EXPECT_THAT(heard, ElementsAre("again", "own"));
  again = {};
  center.post({.name = "saved"});
  center.post({.name = "again"});
  EXPECT_THAT(heard, ElementsAre("again", "own", "added"));
}

TEST_F(NSNotificationCenterTest, DeliversOnTheObserversQueue) {
  VirtualEnvironment environment;
  const DispatchQueue queue("observer");
  const auto onMain = center.addObserver("saved", nullptr, DispatchQueue::main(), note("main"));
  auto onQueue = center.addObserver("saved", nullptr, queue, [&](const Notification&) {
    EXPECT_TRUE(queue.isCurrent());
    DispatchQueue::main().async([&] { heard.push_back("queue"); });
  });
  center.post({.name = "saved"});
  EXPECT_THAT(heard, ElementsAre("main")) << "at once where the queue is current";
  environment.settle();
  EXPECT_THAT(heard, ElementsAre("main", "queue"));
  DispatchQueue::global().async([&] { center.post({.name = "saved"}); });
  environment.settle();
  EXPECT_EQ(heard.size(), 4U);
  queue.async([&] { onQueue.remove(); });
  center.post({.name = "saved"});
  environment.settle();
  EXPECT_EQ(heard.size(), 5U) << "removed while the notification waited its turn";
}

TEST_F(NSNotificationCenterTest, SurvivesThreadsThatPostAndComeAndGo) {
  std::atomic<int> calls = 0;
  const auto steady = center.addObserver("saved", [&](const Notification&) { ++calls; });
  const auto comeAndGo = [this] {
    for (int i = 0; i < 250; ++i) {
      const auto token =
          center.addObserver("saved", [text = std::string("held by the handler")](const auto&) {
            EXPECT_EQ(text.size(), 19U);
          });
      if (i % 5 == 0) center.post({.name = "saved"});
    }
  };
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) threads.emplace_back(comeAndGo);
  }
  EXPECT_EQ(calls, 200);
}

}  // namespace
}  // namespace platform
