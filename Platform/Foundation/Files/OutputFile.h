#pragma once

#include "Foundation/Files/FileLock.h"

#include <filesystem>
#include <optional>
#include <string_view>

namespace platform {

/// A file that is written piece by piece and takes its name when it is complete. A process that
/// ends before that leaves nothing behind; in a file system without support for unnamed files, a
/// killed process leaves a hidden file, which the next writer reuses.
///
///     auto file = OutputFile::open(NSFileManager::cachesDirectory() / "check.txt");
///     if (file) (void)file->write("first piece, ");
///     if (file) (void)file->write("last piece");
///     if (file) (void)file->finish();                 // now there is a "check.txt"
///
/// A file that is replaced keeps its permissions; until then nobody but the owner can read the new
/// content. A new file gets the permissions that the umask leaves. A link is followed to the file
/// it leads to. What is not a regular file, such as a pipe or a device, receives each piece at
/// once.
class OutputFile {
 public:
  [[nodiscard]] static Result<OutputFile> open(const std::filesystem::path& path);
  OutputFile(OutputFile&&) noexcept = default;
  OutputFile& operator=(OutputFile&&) = delete;
  ~OutputFile();

  [[nodiscard]] Result<void> write(std::string_view bytes) { return handle().write(bytes); }
  /// Waits until the disk has taken the content, and gives the file its name.
  [[nodiscard]] Result<void> finish();

 private:
  OutputFile(NSFileHandle unnamed, std::filesystem::path target)
      : unnamed_(std::move(unnamed)), target_(std::move(target)) {}
  OutputFile(FileLock hidden, std::filesystem::path target)
      : hidden_(std::move(hidden)), target_(std::move(target)) {}
  static Result<OutputFile> openHidden(const std::filesystem::path& target);

  [[nodiscard]] NSFileHandle& handle() { return hidden_ ? hidden_->file() : unnamed_; }
  [[nodiscard]] Result<void> link();

  NSFileHandle unnamed_;
  std::optional<FileLock> hidden_;  ///< Stands in for `unnamed_`.
  std::filesystem::path target_;    ///< Empty for what receives its content directly.
};

}  // namespace platform
