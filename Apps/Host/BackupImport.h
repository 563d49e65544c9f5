#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/Date.h"
#include "OxKit/Platform.h"
#include "VelloroBackup/BackupDocument.h"
#include "VelloroBackup/BackupOptions.h"
#include "VelloroImport/ImportedBackup.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velloro {

class HostStore;

/// What an import has changed, and what it had to decide by itself.
struct BackupImportReport {
  struct Tasks {
    std::int64_t added = 0, changed = 0, skipped = 0;

    bool operator==(const Tasks&) const = default;
    static constexpr auto codingKeys =
        keys(key("added", &Tasks::added), key("changed", &Tasks::changed),
             key("skipped", &Tasks::skipped));
  };
  struct Rows {
    std::int64_t added = 0, changed = 0, removed = 0;

    bool operator==(const Rows&) const = default;
    static constexpr auto codingKeys = keys(
        key("added", &Rows::added), key("changed", &Rows::changed), key("removed", &Rows::removed));
  };
  using Decision = ImportDecision;

  Tasks tasks = {};
  Rows entries = {}, notes = {}, categories = {}, settings = {};
  std::vector<Decision> decisions = {};
};

/// Applies a backup to the store, all of it or, on failure, nothing. No more than one task's log is
/// decoded at a time.
///
/// An entry with an identifier is that of the store with the same one; without one it is the n-th
/// of its day and type, as it was before the import. Notes go by identifier, or by day and text. A
/// task without identifier is the store's first one of its title. Tasks that are in the store alone
/// are never touched. A rehearsal says what would change, and changes nothing. \throws HostError
BackupImportReport importBackup(const HostStore& store, const BackupDocument& backup,
                                const BackupImportOptions& options, bool isRehearsal, Date now);

}  // namespace velloro
