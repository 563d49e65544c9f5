#pragma once

#include "Foundation/Time/Date.h"
#include "Host/BackupImport.h"
#include "OxKit/Platform.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// A dated backup beside the store: a document as `BackupExport` writes it, and copies of the
/// store's files, since the document has no place for everything. All of it is of one moment. The
/// document is named after the instant, and takes its name last; a copy is named after the document
/// and the file that it was made of.
///
/// ```
/// const auto document = writeStoreBackup(now);    // velloro-2024-03-07T110000Z.velloro
/// verifyStoreBackup(document);
/// dropStoreBackups(7);
/// restoreStoreBackup(document, now);
/// ```
///
/// On the main thread. All throw HostError, which names the file and the reason.

/// A second one of the same second replaces the first. \returns The document.
std::filesystem::path writeStoreBackup(Date now);

/// Reads everything back: the document must read as what it was written from, and the copies must
/// be sound.
void verifyStoreBackup(const std::filesystem::path& document);

/// Removes all but the newest backups. \param kept At least 1. \returns The documents removed.
std::vector<std::filesystem::path> dropStoreBackups(std::size_t kept);

/// What came back from where.
struct RestoredBackup {
  std::vector<std::filesystem::path> stores;   ///< Files of the store that are now the copies.
  std::optional<BackupImportReport> document;  ///< Of the import, where there are no copies.
};

/// Brings a backup back. With its copies beside it, the store becomes what it was; open programs
/// notice that within two seconds. Copies that are damaged change nothing. Without copies, the
/// document is imported, and its tasks overwrite those of the store.
RestoredBackup restoreStoreBackup(const std::filesystem::path& document, Date now);

}  // namespace velloro
