#pragma once

#include "Foundation/Dispatch/NSOperation.h"
#include "OxKit/Platform.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

namespace velloro {

/// An operation that ends when `complete` is called: `main` may return while the work continues
/// elsewhere. Made by `std::make_shared`, run by an `NSOperationQueue` or by `start`.
///
///     class Download : public AsyncOperation {
///       void main() override {
///         if (isCancelled()) return complete();
///         DispatchQueue::global().async([self = shared_from_this(), this] { complete(); });
///       }
///     };
///
/// A cancelled operation is started too and must complete itself, so that its callers get an
/// answer. Every `main` must lead to `complete`: until then it keeps its place in the queue.
class AsyncOperation : public NSOperation {
 public:
  [[nodiscard]] bool isAsynchronous() const override { return true; }
  [[nodiscard]] bool isExecuting() const override { return executing_; }
  [[nodiscard]] bool isFinished() const override { return finished_; }

  /// Executes and calls `main`. No effect once completed.
  void start() override;
  /// Ends the operation, started or not: `isExecuting` falls, then `isFinished` rises. From any
  /// thread; only the first call counts. While `start` announces that the operation executes, this
  /// returns at once, and `start` ends the operation in the place of calling `main`.
  void complete();

 private:
  enum class Phase : std::uint8_t {
    waiting,
    starting,   ///< Between the two announcements nothing else may be announced.
    startOver,  ///< Completed amid the start, which will say so.
    executing,
    over,
  };

  /// Whether the operation went from one phase to another; another thread may have been faster.
  bool advance(Phase from, Phase to) { return phase_.compare_exchange_strong(from, to); }
  void finish();

  std::atomic<Phase> phase_ = Phase::waiting;
  std::atomic<bool> executing_ = false;
  std::atomic<bool> finished_ = false;
};

/// An operation whose work is a block, which is given the operation and must lead to its
/// `complete`. Without a block it completes at once.
///
///     std::make_shared<AsyncBlockOperation>([](auto operation) {
///       DispatchQueue::global().async([operation] { operation->complete(); });
///     })->start();
class AsyncBlockOperation : public AsyncOperation {
 public:
  using OperationBlock = std::move_only_function<void(std::shared_ptr<AsyncBlockOperation>)>;

  explicit AsyncBlockOperation(OperationBlock operationBlock = nullptr);

  void main() override;

  /// Set before the start; given up when it runs.
  OperationBlock block;
};

}  // namespace velloro
