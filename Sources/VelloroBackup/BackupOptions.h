#pragma once

#include "OxKit/UniqueID.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"

#include <cstdint>
#include <set>
#include <variant>

namespace velloro {

/// What is to go into a backup.
///
///     BackupExportOptions{.tasks = {BackupExportOptions::Page{{1}}}}.tasks.value.index();    // 0
struct BackupExportOptions {
  using Page = TaskPageNumber;
  using Specific = std::set<UniqueID>;
  struct All {
    bool operator==(const All&) const = default;
  };
  struct ExportTasks {
    std::variant<Page, Specific, All> value = All{};

    bool operator==(const ExportTasks&) const = default;
  };

  ExportTasks tasks = {};
  bool categories = true;
  bool settings = true;

  bool operator==(const BackupExportOptions&) const = default;
};

/// How a backup is applied to a store.
///
///     BackupImportOptions().duplicateInBackupStrategy
///         == BackupImportOptions::DuplicateInBackupStrategy::merge;    // true
struct BackupImportOptions {
  /// For a task of the backup whose identifier is in the store already.
  enum class DuplicateInBackupStrategy : std::uint8_t {
    skip,             ///< The store's task stays as it is.
    overwrite,        ///< It becomes the backup's, as far as a backup can say it.
    merge,            ///< It stays, and gets the entries and notes that it lacks.
    importWithNewID,  ///< It stays, and the backup's becomes a task of its own.
  };
  /// What happens to the log of a task that is overwritten.
  enum class EntryImportStrategy : std::uint8_t { clearExistingFirst };

  DuplicateInBackupStrategy duplicateInBackupStrategy = DuplicateInBackupStrategy::merge;
  // Tasks of the backup that stay out, by whether they are archived there.
  std::set<UniqueID> excludeActiveTaskIDs = {}, excludeArchivedTaskIDs = {};

  bool operator==(const BackupImportOptions&) const = default;
};

}  // namespace velloro
