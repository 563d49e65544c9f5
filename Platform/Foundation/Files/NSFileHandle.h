#pragma once

#include "Foundation/Values/Error.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

struct stat;

namespace platform {

/// Who may use a new file or folder. An existing one keeps its permissions.
enum class NewItemAccess {
  owner,    ///< The owner alone, whatever the umask: for what a program stores about its user.
  byUmask,  ///< By the umask: for a file that the user has asked for.
};

/// An open file, closed when the handle is destroyed. Failures are `PosixError`s that name the file
/// and the system's reason; calls that are interrupted by a signal are repeated.
///
///     const auto none = NSFileHandle::open("/none/debug.log", O_WRONLY | O_APPEND);
///     none.error()->code();    // ENOENT
class NSFileHandle {
 public:
  NSFileHandle() = default;  ///< No file; `isOpen` is false.
  NSFileHandle(NSFileHandle&& other) noexcept
      : path_(std::move(other.path_)), descriptor_(std::exchange(other.descriptor_, -1)) {}
  NSFileHandle& operator=(NSFileHandle&& other) noexcept;
  ~NSFileHandle();

  /// \param flags Those of open(2), such as `O_RDONLY` or `O_WRONLY | O_CREAT`. Programs that this
  /// process starts do not inherit handles.
  [[nodiscard]] static Result<NSFileHandle> open(const std::filesystem::path& path, int flags,
                                                 NewItemAccess access = NewItemAccess::owner);

  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  [[nodiscard]] int fileDescriptor() const { return descriptor_; }
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// What `readToEnd` reads at most: 256 MiB.
  static constexpr std::size_t largestRead = std::size_t{256} << 20;

  /// Everything after the current position. More than `limit` bytes, of a file or of an endless
  /// pipe, are an error that names the limit.
  [[nodiscard]] Result<std::string> readToEnd(std::size_t limit = largestRead);
  /// Writes all of `bytes` at the current position, in one system call unless the system writes
  /// less.
  [[nodiscard]] Result<void> write(std::string_view bytes);
  /// Returns when the content has reached the disk.
  [[nodiscard]] Result<void> synchronize();
  /// Size, times, identity: fills `status`, which `<sys/stat.h>` declares.
  [[nodiscard]] Result<void> getStatus(struct stat& status) const;

 private:
  NSFileHandle(std::filesystem::path path, int descriptor)
      : path_(std::move(path)), descriptor_(descriptor) {}

  std::filesystem::path path_;
  int descriptor_ = -1;
};

/// A `PosixError` with the reason of the system call that has just failed (`errno`):
/// `fileFailure("cannot open", "a.log")` reads, for example,
/// cannot open "a.log": Permission denied.
[[nodiscard]] std::unexpected<ErrorPtr> fileFailure(std::string_view attempt,
                                                    const std::filesystem::path& path);

}  // namespace platform
