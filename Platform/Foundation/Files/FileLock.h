#pragma once

#include "Foundation/Files/NSFileHandle.h"

namespace platform {

/// A lock by way of a file, held until the object goes or its process dies. It keeps out threads
/// and processes alike, for every lock has an open file of its own.
///
///     const auto path = NSFileManager::cachesDirectory() / ".counter.lock";
///     const auto lock = FileLock::exclusive(path);    // or why it failed
///     FileLock::isHeldExclusively(path);              // true
///
/// The file is made when it is missing, in a folder that must be there, and stays behind. The
/// holder may rename or remove it: whoever waits for it then takes the file that has the name now.
class FileLock {
 public:
  /// Waits for as long as another holds it, shared or not. A thread that asks again for what it
  /// holds waits for ever.
  [[nodiscard]] static Result<FileLock> exclusive(const std::filesystem::path& path,
                                                  NewItemAccess access = NewItemAccess::owner);
  /// Waits for as long as another holds it exclusively; several may hold it shared.
  [[nodiscard]] static Result<FileLock> shared(const std::filesystem::path& path);
  /// Whether somebody holds it exclusively at this moment. Makes no file.
  [[nodiscard]] static bool isHeldExclusively(const std::filesystem::path& path);
  /// The same by way of a file that must be there (`ENOENT`), or of what a link leads to. What is
  /// written to `file` goes to its end.
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
