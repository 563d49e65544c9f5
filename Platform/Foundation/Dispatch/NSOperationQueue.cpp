#include "Foundation/Dispatch/NSOperationQueue.h"

#include "Foundation/Dispatch/NSOperation.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace platform {
namespace {

class BlockOperation : public NSOperation {
 public:
  explicit BlockOperation(Block block) : block_(std::move(block)) {}
  void main() override { std::exchange(block_, nullptr)(); }

 private:
  Block block_;
};

}  // namespace

/// Lives on after the queue's handle: the observers it puts on its operations hold it until these
/// have finished.
struct NSOperationQueue::State : std::enable_shared_from_this<State> {
  struct Entry {
    std::shared_ptr<NSOperation> operation;
    std::vector<NSNotificationCenter::Token> observers = {};
  };
  using Entries = std::map<std::uint64_t, Entry>;  // by number, in the order of their coming

  const std::string name;
  const DispatchQueue target;
  std::atomic<std::uint64_t> lastNumber = 0;
  mutable std::mutex mutex;
  std::condition_variable becameEmpty;
  Entries waiting;
  Entries running;
  int mostConcurrent = defaultMaxConcurrentOperationCount;
  bool isSuspended = false;

  State(std::string queueName, DispatchQueue queue)
      : name(std::move(queueName)), target(std::move(queue)) {}

  void add(const std::shared_ptr<NSOperation>& operation) {
    const std::uint64_t number = ++lastNumber;
    Entry entry = observed(operation, number);
    {
      const std::scoped_lock lock(mutex);
      waiting.emplace(number, std::move(entry));
    }
    // It may have finished, or become ready, before it was entered.
    operation->isFinished() ? remove(number) : startReadyOperations();
  }

  Entry observed(const std::shared_ptr<NSOperation>& operation, std::uint64_t number) {
    const auto startReady = [self = shared_from_this()] { self->startReadyOperations(); };
    const auto removeIt = [self = shared_from_this(), number] { self->remove(number); };
    Entry entry{.operation = operation};
    entry.observers.push_back(operation->addObserver("isFinished", removeIt));
    entry.observers.push_back(operation->addObserver("isCancelled", startReady));
    for (const auto& other : operation->dependencies()) {
      entry.observers.push_back(other->addObserver("isFinished", startReady));
    }
    return entry;
  }

  void remove(std::uint64_t number) {
    Entries::node_type removed;  // destroyed without the lock: it may hold the last handle
    {
      const std::scoped_lock lock(mutex);
      removed = running.extract(number);
      if (!removed) removed = waiting.extract(number);
      if (isEmpty()) becameEmpty.notify_all();
    }
    startReadyOperations();
  }

  void startReadyOperations() {
    for (const auto& operation : takeReadyOperations()) {
      target.async([operation] {
        if (!operation->isFinished()) operation->start();
      });
    }
  }

  std::vector<std::shared_ptr<NSOperation>> takeReadyOperations() {
    std::vector<std::shared_ptr<NSOperation>> ready;
    const std::scoped_lock lock(mutex);
    for (auto next = waiting.begin(); next != waiting.end() && mayStart();) {
      const auto entry = next++;
      if (!entry->second.operation->isReady()) continue;
      ready.push_back(entry->second.operation);
      running.insert(waiting.extract(entry));
    }
    return ready;
  }

  [[nodiscard]] bool mayStart() const {
    return !isSuspended && (mostConcurrent < 0 || std::cmp_less(running.size(), mostConcurrent));
  }

  [[nodiscard]] bool isEmpty() const { return waiting.empty() && running.empty(); }
};

NSOperationQueue::NSOperationQueue(std::string name, QualityOfService qualityOfService)
    : state_(std::make_shared<State>(std::move(name), DispatchQueue::global(qualityOfService))) {}

NSOperationQueue::~NSOperationQueue() {
  State::Entries dropped;  // nobody could resume them
  const std::scoped_lock lock(state_->mutex);
  if (state_->isSuspended) dropped.swap(state_->waiting);
}

void NSOperationQueue::addOperation(std::shared_ptr<NSOperation> operation) {
  state_->add(operation);
}

void NSOperationQueue::addOperation(Block block) {
  state_->add(std::make_shared<BlockOperation>(std::move(block)));
}

void NSOperationQueue::setMaxConcurrentOperationCount(int count) {
  {
    const std::scoped_lock lock(state_->mutex);
    state_->mostConcurrent = count;
  }
  state_->startReadyOperations();
}

void NSOperationQueue::setSuspended(bool suspended) {
  {
    const std::scoped_lock lock(state_->mutex);
    state_->isSuspended = suspended;
  }
  state_->startReadyOperations();
}

bool NSOperationQueue::isSuspended() const {
  const std::scoped_lock lock(state_->mutex);
  return state_->isSuspended;
}

void NSOperationQueue::cancelAllOperations() {
  std::vector<std::shared_ptr<NSOperation>> operations;
  {
    const std::scoped_lock lock(state_->mutex);
    for (const auto* entries : {&state_->running, &state_->waiting}) {
      for (const auto& [number, entry] : *entries) operations.push_back(entry.operation);
    }
  }
  for (const auto& operation : operations) operation->cancel();
}

void NSOperationQueue::waitUntilAllOperationsAreFinished() const {
  std::unique_lock lock(state_->mutex);
  state_->becameEmpty.wait(lock, [this] { return state_->isEmpty(); });
}

std::size_t NSOperationQueue::operationCount() const {
  const std::scoped_lock lock(state_->mutex);
  return state_->waiting.size() + state_->running.size();
}

const std::string& NSOperationQueue::name() const {
  return state_->name;
}

}  // namespace platform
