#pragma once

#include "Foundation/Values/Error.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

struct stat;

namespace platform {

/// Who may use a file or a folder that is made. One that is there already keeps its permissions.
enum class NewItemAccess {
  owner,    ///< The owner alone, whatever the umask: what a program keeps about a person is theirs.
  byUmask,  ///< As the umask has it: for what a person asks to have written somewhere.
};

/// An open file, closed when the handle goes. Failures are `PosixError`s that name the file and the
/// system's reason; calls that a signal interrupts are taken up again.
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

  /// \param flags Those of open(2), such as `O_RDONLY` or `O_WRONLY | O_CREAT`. No handle reaches a
  ///   program that this process starts.
  [[nodiscard]] static Result<NSFileHandle> open(const std::filesystem::path& path, int flags,
                                                 NewItemAccess access = NewItemAccess::owner);

  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  [[nodiscard]] int fileDescriptor() const { return descriptor_; }
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// What `readToEnd` reads at most: 256 MiB.
  static constexpr std::size_t largestRead = std::size_t{256} << 20;

  /// What follows the handle's place, all of it. More than `limit` bytes, of a file or of a pipe
  /// that never ends, is an error that names the limit.
  [[nodiscard]] Result<std::string> readToEnd(std::size_t limit = largestRead);
  /// Writes all of `bytes` at the handle's place, in one system call unless the system takes less.
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
