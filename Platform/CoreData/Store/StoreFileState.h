#pragma once

#include <filesystem>
#include <optional>

#include <sys/stat.h>

namespace platform {

/// Which file has a name, and how it was when it was looked at.
struct StoreFileState {
  dev_t device = 0;
  ino_t number = 0;
  off_t size = 0;
  time_t seconds = 0;
  long nanoseconds = 0;  ///< Of the last change.

  /// Absent where there is no file.
  [[nodiscard]] static std::optional<StoreFileState> of(const std::filesystem::path& path) {
    struct stat state {};
    if (::stat(path.c_str(), &state) != 0) return std::nullopt;
    return StoreFileState{state.st_dev, state.st_ino, state.st_size, state.st_mtim.tv_sec,
                          state.st_mtim.tv_nsec};
  }
  bool operator==(const StoreFileState&) const = default;
  [[nodiscard]] bool isSameFile(const StoreFileState& other) const {
    return device == other.device && number == other.number;
  }
};

}  // namespace platform
