#pragma once

#include "Foundation/Dispatch/Block.h"
#include "Foundation/Dispatch/NSNotificationCenter.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// A piece of work that waits until it is ready, executes once and is then finished. It can be
/// cancelled, depend on others and be observed. Made by `std::make_shared`, run by an
/// `NSOperationQueue` or by `start`. All members may be called from any thread.
///
/// A subclass whose work ends when `main` returns overrides `main` alone. A subclass whose work
/// continues elsewhere stores both flags itself, overrides the functions that return them, and
/// changes them by `changeValue`. It must ensure that "isFinished" is announced last, although its
/// start and its end may run on two threads at the same time. OxKit/AsyncOperation.h does all of
/// this.
class NSOperation : public std::enable_shared_from_this<NSOperation> {
 public:
  NSOperation() = default;
  virtual ~NSOperation() = default;
  NSOperation(const NSOperation&) = delete;
  NSOperation& operator=(const NSOperation&) = delete;

  /// Executes: runs `main`, unless cancelled, and is finished. No effect on a finished operation.
  /// Called once, by the queue, or by hand for an operation that is in no queue.
  virtual void start();
  /// The work. If it takes long, it should check `isCancelled` from time to time. Must not throw.
  virtual void main() {}

  /// Asks the operation to end early. Before its start it becomes ready at once, whatever it
  /// depends on, and then finishes without `main`. No effect on a finished operation.
  virtual void cancel();

  /// Whether the work may continue after `start` has returned.
  [[nodiscard]] virtual bool isAsynchronous() const { return false; }
  [[nodiscard]] virtual bool isExecuting() const { return executing_; }
  [[nodiscard]] virtual bool isFinished() const { return finished_; }
  [[nodiscard]] bool isCancelled() const { return cancelled_; }
  /// Whether all that it depends on is finished, or it was cancelled.
  [[nodiscard]] bool isReady() const;

  /// The operation becomes ready only after `other` has finished. Before it is added to a queue. A
  /// circle of dependencies never becomes ready.
  void addDependency(std::shared_ptr<NSOperation> other);
  /// What it still depends on; empty once it has finished.
  [[nodiscard]] std::vector<std::shared_ptr<NSOperation>> dependencies() const;
  /// Runs once, on the thread on which the operation finishes, before any waiting thread continues.
  /// To be set before that.
  void setCompletionBlock(Block block);
  /// Not on a thread that the operation needs.
  void waitUntilFinished() const;

  /// Calls back after each change of "isExecuting", "isFinished" or "isCancelled", on the thread
  /// that changes it, as long as the token lives.
  [[nodiscard]] NSNotificationCenter::Token addObserver(std::string key,
                                                        std::function<void()> callback);

 protected:
  /// Sets a flag and announces it, if that changes it: of several threads that set the same value,
  /// one does. The last thing that happens to an operation is "isFinished": its queue and its
  /// observers may let go of it then.
  void changeValue(std::atomic<bool>& flag, bool value, std::string_view key);

 private:
  void didFinish();

  std::atomic<bool> executing_ = false;
  std::atomic<bool> finished_ = false;
  std::atomic<bool> cancelled_ = false;
  NSNotificationCenter changes_;

  mutable std::mutex mutex_;
  mutable std::condition_variable ended_;
  bool hasEnded_ = false;
  Block completionBlock_ = nullptr;
  std::vector<std::shared_ptr<NSOperation>> dependencies_;
};

}  // namespace platform
