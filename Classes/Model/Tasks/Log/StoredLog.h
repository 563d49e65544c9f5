#pragma once

#include "VelloroCore/Log/TaskLogWalk.h"

#include <set>
#include <string>
#include <vector>

namespace velloro {

class TaskEntity;
struct TaskLogFetchRequest;

/// Stored entries as the rows that the rules of the log read, the newest first, with the outlook
/// of the task come true. It keeps the texts that the rows refer to.
class StoredLog {
 public:
  /// Without the entries that are to be deleted with the next save. Never fails: what can't be
  /// read is logged, and reads as an empty log.
  StoredLog(const TaskEntity& task, const TaskLogFetchRequest& request);
  StoredLog(StoredLog&&) = default;
  StoredLog& operator=(StoredLog&&) = default;

  [[nodiscard]] TaskLogRows rows() const { return rows_; }

 private:
  std::set<std::string> zones_;
  std::vector<TaskLogRow> rows_;
};

}  // namespace velloro
