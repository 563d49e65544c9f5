#pragma once

#include <filesystem>

namespace platform {

// Which file a write-ahead log belongs to. SQLite takes whatever log lies beside a file for that
// file's. When another file takes the name of a store, as when a backup is put in its place, the
// log of the former file stays behind and would spoil the new one. So a log carries a mark: the
// identities of its file and of the log itself, in an extended attribute. A copy of the log is
// another file, and counts as not marked; so does every log where the file system keeps no such
// attributes, and then SQLite's rule applies.

/// Marks the log as that of the file that has the name now, unless it is marked already.
void markLog(const std::filesystem::path& store);
/// Whether the log beside the store is marked as that of another file.
[[nodiscard]] bool hasForeignLog(const std::filesystem::path& store);
/// Removes such a log, and its index.
void dropForeignLog(const std::filesystem::path& store);

}  // namespace platform
