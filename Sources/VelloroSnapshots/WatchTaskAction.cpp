#include "VelloroSnapshots/WatchTaskAction.h"

namespace velloro {
namespace {

struct TaskOf {
  UniqueID operator()(const WatchTaskAction::CompletionInfo& info) const { return info.taskID; }
  UniqueID operator()(const WatchTaskAction::TimingInfo& info) const {
    return info.summary.taskIdentifier;
  }
  UniqueID operator()(const WatchTaskAction::NoteInfo& info) const { return info.taskID; }
};

}  // namespace

UniqueID WatchTaskAction::taskID() const {
  return std::visit(TaskOf{}, actionType.value);
}

}  // namespace velloro
