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
  /// Takes a file that makes no sense out of the way: ".corrupt" behind its name, or ".corrupt.2",
  /// … where that is taken.
  [[nodiscard]] Result<void> moveAside() const;
  /// @}

  /// Tells `Environment::report`, unless that was the last thing told.
  void reportOnce(const std::string& problem);
  /// What goes wrong from now on is told again.
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
