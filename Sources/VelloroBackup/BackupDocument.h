#pragma once

#include "OxKit/FunctionRef.h"
#include "VelloroBackup/VelloroJSONBackup.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velloro {

/// A backup whose tasks are decoded one after another, each time that they are asked for, so that
/// a large document needs little memory beside its text.
///
///     const BackupDocument document(std::string(
///         R"({"version":1,"timestamp":"2024-03-07T03:00:00Z","tasks":[{"status":"N"}]})"));
///     document.frame().tasks.size();    // 0
///     std::size_t tasks = 0;
///     document.forEachTask([&](const VelloroJSONBackupTask&) { ++tasks; });
///     tasks;                            // 1
class BackupDocument {
 public:
  /// Decodes all of it once, so that nothing fails later. \throws DecodingError, that of
  /// `VelloroJSONBackup::fromJSON`
  explicit BackupDocument(std::string json);
  BackupDocument(VelloroJSONBackup backup);  // NOLINT(google-explicit-constructor): a document too

  /// All but the tasks.
  [[nodiscard]] const VelloroJSONBackup& frame() const { return frame_; }
  void forEachTask(FunctionRef<void(const VelloroJSONBackupTask&)> visit) const;

 private:
  std::string json_;
  std::vector<std::pair<std::size_t, std::size_t>> places_ = {};  ///< Start and length, by task.
  VelloroJSONBackup frame_;
  std::vector<VelloroJSONBackupTask> tasks_ = {};  ///< Without a text.
};

}  // namespace velloro
