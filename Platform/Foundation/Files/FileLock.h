#pragma once

#include "Foundation/Files/NSFileHandle.h"

namespace platform {

/// A lock on a file, held until the object is destroyed or its process dies. It excludes other
/// threads as well as other processes, since every lock has an open file of its own.
///
///     const auto path = NSFileManager::cachesDirectory() / ".counter.lock";
///     const auto lock = FileLock::exclusive(path);    // or why it failed
///     FileLock::isHeldExclusively(path);              // true
///
/// The file is made when it is missing, in a folder that must be there, and stays behind. The
/// holder may rename or remove it: a process that waits for it then locks the file that has the
/// name at that time.
class FileLock {
 public:
  /// Waits for as long as another holds it, shared or not. A thread that asks again for a lock that
  /// it holds waits for ever.
  [[nodiscard]] static Result<FileLock> exclusive(const std::filesystem::path& path,
                                                  NewItemAccess access = NewItemAccess::owner);
  /// Waits for as long as another holds it exclusively; several may hold it shared.
  [[nodiscard]] static Result<FileLock> shared(const std::filesystem::path& path);
  /// Whether somebody holds it exclusively at this moment. Makes no file.
  [[nodiscard]] static bool isHeldExclusively(const std::filesystem::path& path);
  /// Locks a file that must exist (`ENOENT`); links are followed. What is written to `file` is
  /// appended.
  [[nodiscard]] static Result<FileLock> exclusiveForAppending(const std::filesystem::path& path);

  /// The same by way of a folder, in which nothing is made. There is nothing to read or write.
  [[nodiscard]] static Result<FileLock> exclusiveOfFolder(const std::filesystem::path& folder);

  FileLock(FileLock&&) noexcept = default;
  FileLock& operator=(FileLock&&) = delete;
  ~FileLock();

  /// The locked file, open for reading and writing, or for appending.
  [[nodiscard]] NSFileHandle& file() { return file_; }

 private:
  static Result<FileLock> take(const std::filesystem::path& path, int flags, int operation,
                               NewItemAccess access = NewItemAccess::owner);
  explicit FileLock(NSFileHandle file) : file_(std::move(file)) {}

  NSFileHandle file_;
};

}  // namespace platform
