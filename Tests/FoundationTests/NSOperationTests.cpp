#include "Foundation/NSOperation.h"
#include "Foundation/NSOperationQueue.h"
#include "Foundation/TestEnvironment.h"

#include <latch>
#include <thread>

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What ran, in order, from any thread.
class Events {
 public:
  void note(const std::string& event) {
    const std::scoped_lock lock(mutex_);
    events_.push_back(event);
  }
  std::vector<std::string> take() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(events_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> events_;
};

class Noting : public NSOperation {
 public:
  Noting(Events& events, std::string name) : events_(events), name_(std::move(name)) {
    setCompletionBlock([this] { events_.note(name_ + " finished"); });
  }
  void main() override { events_.note(name_); }

 private:
  Events& events_;
  std::string name_;
};

/// Ends when it is told to.
class Asynchronous : public NSOperation {
 public:
  explicit Asynchronous(std::function<void(Asynchronous&)> work = {}) : work_(std::move(work)) {}
  bool isAsynchronous() const override { return true; }
  bool isExecuting() const override { return executing_; }
  bool isFinished() const override { return finished_; }
  void start() override {
    if (isCancelled()) return complete();
    changeValue(executing_, true, "isExecuting");
    if (work_) work_(*this);
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

TEST(NSOperation, AnnouncesEachChangeOnceWheneverItIsCompleted) {
  Events events;
  const auto observed = [&](NSOperation& operation) {
    std::vector<NSNotificationCenter::Token> tokens;
    for (const char* key : {"isExecuting", "isFinished"}) {
      tokens.push_back(operation.addObserver(key, [&events, key] { events.note(key); }));
    }
    return tokens;
  };
  const auto started = std::make_shared<Asynchronous>();
  const auto startedTokens = observed(*started);
  started->start();
  EXPECT_TRUE(started->isExecuting());
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back([&] { started->complete(); });
  }
  started->waitUntilFinished();
  EXPECT_FALSE(started->isExecuting());
  EXPECT_THAT(events.take(), ElementsAre("isExecuting", "isExecuting", "isFinished"));

  const auto unstarted = std::make_shared<Asynchronous>();
  const auto unstartedTokens = observed(*unstarted);
  unstarted->complete();
  unstarted->complete();
  NSOperationQueue queue;
  queue.addOperation(unstarted);
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_THAT(events.take(), ElementsAre("isFinished"));
}

TEST(NSOperationQueue, RunsOneAfterTheOtherAsTheyDepend) {
  TestEnvironment environment;
  Events events;
  NSOperationQueue queue;
  NSOperationQueue otherQueue;
  queue.setMaxConcurrentOperationCount(1);
  const auto first = std::make_shared<Noting>(events, "first");
  const auto second = std::make_shared<Noting>(events, "second");
  const auto last = std::make_shared<Noting>(events, "last");
  const auto remote = std::make_shared<Asynchronous>();
  last->addDependency(first);
  last->addDependency(remote);
  queue.addOperation(last);
  queue.addOperation(first);
  queue.addOperation(second);
  otherQueue.addOperation(remote);
  environment.settle();
  EXPECT_THAT(events.take(), ElementsAre("first", "first finished", "second", "second finished"));
  EXPECT_EQ(queue.operationCount(), 1U);
  DispatchQueue::main().asyncAfter(60, [&] { remote->complete(); });
  environment.advance(60);
  EXPECT_THAT(events.take(), ElementsAre("last", "last finished"));
  EXPECT_EQ(queue.operationCount(), 0U);
}

TEST(NSOperationQueue, CancelledOperationsFinishWithoutTheirWork) {
  TestEnvironment environment;
  Events events;
  NSOperationQueue queue;
  const auto never = std::make_shared<Asynchronous>();
  const auto dependent = std::make_shared<Noting>(events, "dependent");
  const auto follower = std::make_shared<Noting>(events, "follower");
  const auto asynchronous =
      std::make_shared<Asynchronous>([&](auto& operation) { operation.complete(); });
  dependent->addDependency(never);
  follower->addDependency(dependent);
  queue.addOperation(dependent);
  queue.addOperation(follower);
  environment.settle();
  EXPECT_THAT(events.take(), IsEmpty());
  dependent->cancel();
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_THAT(events.take(), ElementsAre("dependent finished", "follower", "follower finished"));

  queue.setSuspended(true);
  queue.addOperation(std::make_shared<Noting>(events, "suspended"));
  asynchronous->addDependency(never);
  queue.addOperation(asynchronous);
  queue.cancelAllOperations();
  environment.settle();
  EXPECT_EQ(queue.operationCount(), 2U);
  queue.setSuspended(false);
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_THAT(events.take(), ElementsAre("suspended finished"));
}

TEST(NSOperationQueue, KeepsOperationsUntilTheirEndOnAnotherThread) {
  TestEnvironment environment;
  Events events;
  const DispatchQueue service("service");
  {
    NSOperationQueue queue;
    queue.setMaxConcurrentOperationCount(1);
    queue.addOperation(std::make_shared<Asynchronous>(
        [&](Asynchronous& operation) { service.asyncAfter(5, [&] { operation.complete(); }); }));
    queue.addOperation([&] { events.note("after the queue's handle has gone"); });
    NSOperationQueue suspended;
    suspended.setSuspended(true);
    suspended.addOperation([&] { events.note("never"); });
  }
  environment.settle();
  EXPECT_THAT(events.take(), IsEmpty());
  environment.advance(5);
  EXPECT_THAT(events.take(), ElementsAre("after the queue's handle has gone"));
}

TEST(NSOperationQueue, ManyThreadsAddUpToTheLimit) {
  constexpr int limit = 3;
  NSOperationQueue queue;
  queue.setMaxConcurrentOperationCount(limit);
  std::atomic<int> running = 0;
  std::atomic<int> ran = 0;
  std::atomic<bool> isInOrder = true;
  const auto add = [&] {
    std::shared_ptr<NSOperation> previous;
    for (int i = 0; i < 100; ++i) {
      const auto operation = std::make_shared<Asynchronous>([&, previous](Asynchronous& self) {
        if (previous && !previous->isFinished()) isInOrder = false;
        if (++running > limit) isInOrder = false;
        DispatchQueue::global().async([&] {
          --running;
          ++ran;
          self.complete();
        });
      });
      if (previous) operation->addDependency(previous);
      queue.addOperation(operation);
      previous = operation;
    }
  };
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back(add);
  }
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_EQ(ran, 400);
  EXPECT_TRUE(isInOrder);
}

}  // namespace
}  // namespace platform
