#include "Foundation/Dispatch/NSOperation.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace platform {

void NSOperation::start() {
  if (isFinished()) return;
  assert(isReady() && !isExecuting() && "an operation is started once, when it is ready");
  if (!isCancelled()) {
    changeValue(executing_, true, "isExecuting");
    main();
    changeValue(executing_, false, "isExecuting");
  }
  changeValue(finished_, true, "isFinished");
}

void NSOperation::cancel() {
  if (!isFinished()) changeValue(cancelled_, true, "isCancelled");
}

void NSOperation::changeValue(std::atomic<bool>& flag, bool value, std::string_view key) {
  if (flag.exchange(value) == value) return;
  const auto self = weak_from_this().lock();  // an observer may drop the last handle
  if (key == "isFinished") didFinish();
  changes_.post({.name = std::string(key), .object = this});
}

void NSOperation::didFinish() {
  Block completion;
  std::vector<std::shared_ptr<NSOperation>> dependencies;  // a chain of them is freed link by link
  {
    const std::scoped_lock lock(mutex_);
    completion = std::exchange(completionBlock_, nullptr);
    dependencies.swap(dependencies_);
  }
  if (completion) completion();
  const std::scoped_lock lock(mutex_);
  hasEnded_ = true;
  ended_.notify_all();
}

bool NSOperation::isReady() const {
  if (isCancelled()) return true;
  const std::scoped_lock lock(mutex_);
  return std::ranges::all_of(dependencies_, [](const auto& other) { return other->isFinished(); });
}

void NSOperation::addDependency(std::shared_ptr<NSOperation> other) {
  const std::scoped_lock lock(mutex_);
  dependencies_.push_back(std::move(other));
}

std::vector<std::shared_ptr<NSOperation>> NSOperation::dependencies() const {
  const std::scoped_lock lock(mutex_);
  return dependencies_;
}

void NSOperation::setCompletionBlock(Block block) {
  const std::scoped_lock lock(mutex_);
  completionBlock_ = std::move(block);
}

void NSOperation::waitUntilFinished() const {
  std::unique_lock lock(mutex_);
  ended_.wait(lock, [this] { return hasEnded_; });
}

NSNotificationCenter::Token NSOperation::addObserver(std::string key,
                                                     std::function<void()> callback) {
  return changes_.addObserver(
      std::move(key), [callback = std::move(callback)](const Notification&) { callback(); });
}

}  // namespace platform
