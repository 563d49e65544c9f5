#include "Foundation/NSOperation.h"
#include "Foundation/NSOperationQueue.h"
#include "Foundation/TestEnvironment.h"

#include <thread>

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Ends when it is told to.
class Asynchronous : public NSOperation {
 public:
  explicit Asynchronous(std::function<void(Asynchronous&)> work = [](auto&) {})
      : work_(std::move(work)) {}
  bool isExecuting() const override { return executing_; }
  bool isFinished() const override { return finished_; }
  void start() override {
    if (isCancelled()) return complete();
    changeValue(executing_, true, "isExecuting");
    work_(*this);
  }
  void complete() {
    if (completed_.exchange(true)) return;
    changeValue(executing_, false, "isExecuting");
    changeValue(finished_, true, "isFinished");
  }

 private:
  std::function<void(Asynchronous&)> work_;
  std::atomic<bool> completed_ = false;
  std::atomic<bool> executing_ = false;
  std::atomic<bool> finished_ = false;
};

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
  TestEnvironment environment;
  NSOperationQueue queue;
};

TEST_F(NSOperationTest, RunOneAfterTheOtherAsTheyDepend) {
  NSOperationQueue otherQueue;
  queue.setMaxConcurrentOperationCount(1);
  const auto first = noting("first");
  const auto last = noting("last");
  const auto remote = std::make_shared<Asynchronous>();
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
  const auto never = std::make_shared<Asynchronous>();
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
  queue.addOperation(std::make_shared<Asynchronous>());
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
    gone.addOperation(std::make_shared<Asynchronous>(
        [this](Asynchronous& operation) { lock.asyncAfter(5, [&] { operation.complete(); }); }));
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
      auto operation = std::make_shared<Asynchronous>([&, previous](Asynchronous& self) {
        if (++running > limit || (previous && !previous->isFinished())) isInOrder = false;
        DispatchQueue::global().async([&] {
          --running;
          self.complete();
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
