#include "OxKit/AsyncOperation.h"

#include <utility>

namespace velloro {

void AsyncOperation::start() {
  if (completeCalled_) return;
  changeValue(executing_, true, "isExecuting");
  // A `complete` that came in between found nothing to take back.
  if (completeCalled_) return changeValue(executing_, false, "isExecuting");
  main();
}

void AsyncOperation::complete() {
  if (completeCalled_.exchange(true)) return;
  changeValue(executing_, false, "isExecuting");
  changeValue(finished_, true, "isFinished");
}

AsyncBlockOperation::AsyncBlockOperation(OperationBlock operationBlock)
    : block(std::move(operationBlock)) {}

void AsyncBlockOperation::main() {
  // A block that holds its own operation would keep both alive for ever.
  OperationBlock work = std::exchange(block, nullptr);
  if (!work) return complete();
  work(std::static_pointer_cast<AsyncBlockOperation>(shared_from_this()));
}

}  // namespace velloro
