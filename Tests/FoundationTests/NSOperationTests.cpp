#include "Foundation/Dispatch/NSOperation.h"
#include "Foundation/Dispatch/NSOperationQueue.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxKit/AsyncOperation.h"

#include <thread>

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using velloro::AsyncBlockOperation;

/// Ends when it is told to, or when it was cancelled before its start.
std::shared_ptr<AsyncBlockOperation> asynchronous() {
  return std::make_shared<AsyncBlockOperation>([](const auto& operation) {
    if (operation->isCancelled()) operation->complete();
  });
}

/// Operations that note when they run (their name) and that they have finished ("/" and the name).
class NSOperationTest : public testing::Test {
 protected:
  struct Noting : NSOperation {
    explicit Noting(Block work) : work_(std::move(work)) {}
    void main() override { work_(); }
    Block work_;
  };

  std::shared_ptr<NSOperation> noting(const std::string& name) {
    const auto operation = std::make_shared<Noting>([=, this] { note(name); });
    operation->setCompletionBlock([=, this] { note("/" + name); });
    return operation;
  }
  void note(const std::string& event) {
    lock.sync([&] { events.push_back(event); });
  }
  std::vector<std::string> takeEvents() {
    return lock.sync([&] { return std::exchange(events, {}); });
  }

  const DispatchQueue lock{"events"};
  std::vector<std::string> events;
  VirtualEnvironment environment;
  NSOperationQueue queue;
};

TEST_F(NSOperationTest, RunOneAfterTheOtherAsTheyDepend) {
  NSOperationQueue otherQueue;
  queue.setMaxConcurrentOperationCount(1);
  const auto first = noting("first");
  const auto last = noting("last");
  const auto remote = asynchronous();
  last->addDependency(first);
  last->addDependency(remote);
  for (const auto& operation : {last, first, noting("second")}) queue.addOperation(operation);
  otherQueue.addOperation(remote);
  environment.settle();
  EXPECT_THAT(takeEvents(), ElementsAre("first", "/first", "second", "/second"));
  EXPECT_EQ(queue.operationCount(), 1U);
  DispatchQueue::main().asyncAfter(60, [&] { remote->complete(); });
  environment.advance(60);
  EXPECT_THAT(takeEvents(), ElementsAre("last", "/last"));
  EXPECT_EQ(queue.operationCount(), 0U);
}

TEST_F(NSOperationTest, FinishWithoutTheirWorkWhenCancelled) {
  const auto never = asynchronous();
  const auto cancelled = noting("cancelled");
  const auto follower = noting("follower");
  cancelled->addDependency(never);
  follower->addDependency(cancelled);
  queue.addOperation(cancelled);
  queue.addOperation(follower);
  environment.settle();
  EXPECT_THAT(takeEvents(), IsEmpty());
  cancelled->cancel();
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_THAT(takeEvents(), ElementsAre("/cancelled", "follower", "/follower"));
  follower->cancel();
  EXPECT_FALSE(follower->isCancelled()) << "it had finished";

  queue.setSuspended(true);
  queue.addOperation(noting("suspended"));
  queue.addOperation(asynchronous());
  queue.cancelAllOperations();
  environment.settle();
  EXPECT_EQ(queue.operationCount(), 2U);
  queue.setSuspended(false);
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_THAT(takeEvents(), ElementsAre("/suspended"));
}

TEST_F(NSOperationTest, OutliveTheirQueuesHandle) {
  {
    NSOperationQueue gone;
    gone.setMaxConcurrentOperationCount(1);
    gone.addOperation(std::make_shared<AsyncBlockOperation>([this](const auto& operation) {
      lock.asyncAfter(5, [operation] { operation->complete(); });
    }));
    gone.addOperation(noting("next"));
    NSOperationQueue suspended;
    suspended.setSuspended(true);
    suspended.addOperation(noting("never"));
  }
  environment.settle();
  EXPECT_THAT(takeEvents(), IsEmpty());
  environment.advance(5);
  EXPECT_THAT(takeEvents(), ElementsAre("next", "/next"));
}

TEST_F(NSOperationTest, KeepToTheLimitAndTheirOrderFromManyThreads) {
  constexpr int limit = 3;
  queue.setMaxConcurrentOperationCount(limit);
  std::atomic<int> running = 0;
  std::atomic<bool> isInOrder = true;
  const auto addChain = [&] {
    std::shared_ptr<NSOperation> previous;
    for (int i = 0; i < 100; ++i) {
      auto operation = std::make_shared<AsyncBlockOperation>([&, previous](const auto& self) {
        if (++running > limit || (previous && !previous->isFinished())) isInOrder = false;
        DispatchQueue::global().async([&, self] {
          --running;
          self->complete();
        });
      });
      if (previous) operation->addDependency(previous);
      queue.addOperation(operation);
      previous = std::move(operation);
    }
  };
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back(addChain);
  }
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(isInOrder);
}

}  // namespace
}  // namespace platform
