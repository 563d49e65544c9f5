#pragma once

#include "Tasks/Rows/TaskEntity.h"
#include "VelloroCore/Log/TaskLogWalk.h"

#include <vector>

namespace velloro {

struct TaskLogFetchRequest;

/// Fetched entries as the rows that the rules of the log read, the newest first, with the outlook
/// of the task come true. It keeps the entries, whose texts the rows refer to.
class StoredLog {
 public:
  /// Without the entries that are to be deleted with the next save. Never fails: what can't be
  /// fetched is logged, and reads as an empty log.
  StoredLog(const TaskEntity& task, const TaskLogFetchRequest& request);

  [[nodiscard]] TaskLogRows rows() const { return rows_; }

 private:
  TaskEntity::Entries entries_;
  std::vector<TaskLogRow> rows_;
};

}  // namespace velloro
