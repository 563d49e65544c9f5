#pragma once

#include "Foundation/Time/Date.h"
#include "VelloroBackup/BackupDocument.h"
#include "VelloroImport/ImportedBackup.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// What a file holds, and which form it has.
struct ImportSource {
  const char* format;
  BackupDocument document;
  std::vector<ImportDecision> decisions = {};
};

/// The names that `--from` takes, with commas between them.
[[nodiscard]] std::string importFormats();

/// Reads a file or folder in full. Its form is the one named, else that of its extension, else that
/// of its content. \param file `-` is the standard input. \throws HostError, UsageError
[[nodiscard]] ImportSource readImportSource(const std::string& file,
                                            const std::optional<std::string>& from, Date now);

}  // namespace velloro
