#pragma once

#include "Foundation/Time/Date.h"
#include "OxKit/Platform.h"
#include "VelloroBackup/BackupOptions.h"
#include "VelloroBackup/VelloroJSONBackup.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace platform {
class NSManagedObjectContext;
}

namespace velloro {

class TaskEntity;

/// Reads a store into a backup, one task after another, so that no more than one log is in memory.
///
/// Everything stands in an order that does not depend on the store's file: tasks by their places,
/// then by age and identifier; entries and notes by day, second and identifier; categories and
/// settings by identifier and key. So equal stores give equal documents.
///
///     BackupExport(*context, {.settings = false}).backup(now).tasks.size();    // 1
class BackupExport {
 public:
  using Sink = std::function<void(std::string_view)>;
  /// Something that a backup can't hold, and of how many it was left out.
  struct LeftOut {
    std::string what;
    std::size_t count = 0;
  };

  /// \param context On its queue, within one transaction if nothing is to change meanwhile.
  BackupExport(NSManagedObjectContext& context, BackupExportOptions options);

  /// The document, compact. \throws Error where the store can't be read, or what the sink throws
  void write(const Sink& sink, Date now);
  /// The same as a record. \throws Error
  [[nodiscard]] VelloroJSONBackup backup(Date now);
  /// What was left out by now.
  [[nodiscard]] const std::vector<LeftOut>& leftOut() const { return leftOut_; }

 private:
  using Tasks = std::vector<std::shared_ptr<TaskEntity>>;

  [[nodiscard]] Tasks tasks() const;
  [[nodiscard]] VelloroJSONBackupTask taskOf(const TaskEntity& task);
  void addAppearance(const TaskEntity& task, VelloroJSONBackupTask& record);
  void addLog(const TaskEntity& task, VelloroJSONBackupTask& record);
  void addNotes(const TaskEntity& task, VelloroJSONBackupTask& record);
  void addOthers(const TaskEntity& task, VelloroJSONBackupTask& record);
  void noteWhatIsLeftOut(const TaskEntity& task);
  [[nodiscard]] VelloroJSONBackup frame(Date now);
  [[nodiscard]] std::vector<VelloroJSONBackupCategory> categories();
  [[nodiscard]] VelloroJSONBackupSettingsContainer settings() const;
  void leaveOut(const std::string& what, std::size_t count = 1);

  NSManagedObjectContext& context_;
  const BackupExportOptions options_;
  std::vector<LeftOut> leftOut_;
};

}  // namespace velloro
