#pragma once

#include "Foundation/Dispatch/Block.h"
#include "Foundation/Dispatch/DispatchQueue.h"

#include <cstddef>
#include <memory>
#include <string>

namespace platform {

class NSOperation;

/// Runs operations in the background, as many at once as it is allowed to: each when it is ready,
/// and among ready ones the one that was added first. A queue that is destroyed still runs what was
/// added to it, unless it is suspended. All members may be called from any thread.
///
///     std::string done;
///     NSOperationQueue queue("velloro.history");
///     queue.setMaxConcurrentOperationCount(1);
///     queue.addOperation([&] { done += "a"; });
///     queue.addOperation([&] { done += "b"; });
///     queue.waitUntilAllOperationsAreFinished();
///     done;    // "ab"
class NSOperationQueue {
 public:
  /// As many at once as there are workers.
  static constexpr int defaultMaxConcurrentOperationCount = -1;

  explicit NSOperationQueue(std::string name = "",
                            QualityOfService qualityOfService = QualityOfService::default_);
  ~NSOperationQueue();
  NSOperationQueue(const NSOperationQueue&) = delete;
  NSOperationQueue& operator=(const NSOperationQueue&) = delete;

  /// An operation is added to one queue, once. A finished operation is ignored.
  void addOperation(std::shared_ptr<NSOperation> operation);
  void addOperation(Block block);

  /// Does not end what is executing beyond the new number.
  void setMaxConcurrentOperationCount(int count);
  /// A suspended queue starts no operations; those that execute continue.
  void setSuspended(bool suspended);
  [[nodiscard]] bool isSuspended() const;

  void cancelAllOperations();
  /// Not on a thread that an operation needs, and not while suspended with operations waiting.
  void waitUntilAllOperationsAreFinished() const;

  /// How many operations are not finished.
  [[nodiscard]] std::size_t operationCount() const;
  [[nodiscard]] const std::string& name() const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace platform
