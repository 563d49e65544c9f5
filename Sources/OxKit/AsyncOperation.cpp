#include "OxKit/AsyncOperation.h"

#include <utility>

namespace velloro {

void AsyncOperation::start() {
  if (!advance(Phase::waiting, Phase::starting)) return;
  changeValue(executing_, true, "isExecuting");
  if (advance(Phase::starting, Phase::executing)) return main();
  finish();
}

void AsyncOperation::complete() {
  // In the order of an operation's life: when a phase is over before it is looked at, the next is.
  if (advance(Phase::waiting, Phase::over)) return finish();
  if (advance(Phase::starting, Phase::startOver)) return;
  if (advance(Phase::executing, Phase::over)) finish();
}

void AsyncOperation::finish() {
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
