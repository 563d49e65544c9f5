#pragma once

#include "Foundation/Files/FileLock.h"
#include "Foundation/Files/NSFileHandle.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <sys/stat.h>

namespace platform {

/// A text file that several processes replace as a whole, under a lock file beside it. A reader
/// looks at the file's identity alone, unless another process has replaced it.
///
///     SharedFile file(NSFileManager::cachesDirectory() / "values.json");
///     const auto lock = file.lock();
///     file.write("{}").has_value();    // true: others see all of it or nothing
///     file.read();                     // "{}"
///     file.isUpToDate();               // true
///
/// Without a lock of its own: for one thread at a time.
class SharedFile {
 public:
  explicit SharedFile(std::filesystem::path path) : path_(std::move(path)) {}

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// Whether the file is still what `read` has read; false before that, and after it failed.
  [[nodiscard]] bool isUpToDate() const;
  /// The content; absent when there is no file.
  [[nodiscard]] Result<std::optional<std::string>> read();

  /// Waits until no other process is about to change the file. Makes the folder where it is
  /// missing.
  [[nodiscard]] Result<FileLock> lock() const;
  /// \name For the holder of the lock
  /// @{
  [[nodiscard]] Result<void> write(std::string_view text) const;
  /// Renames a file that can't be read: appends ".corrupt" to its name, or ".corrupt.2", … if that
  /// name is taken.
  [[nodiscard]] Result<void> moveAside() const;
  /// @}

  /// Calls `Environment::report`, unless the last report was the same.
  void reportOnce(const std::string& problem);
  /// Reports the next problem even if it is the same as the last one.
  void forgetReport() { lastReported_.clear(); }

 private:
  [[nodiscard]] Result<std::optional<std::string>> open();

  std::filesystem::path path_;
  NSFileHandle file_;     ///< The file that was read. While it is open no other gets its inode.
  struct stat state_ {};  ///< How `file_` was then.
  bool isRead_ = false;
  std::string lastReported_;
};

}  // namespace platform
