#pragma once

#include "OxCache/DataCacheKey.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string_view>

namespace velloro {

/// Where a cache keeps its files: "v", the version, "-", the key's number and the extension, in a
/// folder of its own inside the caches folder. Files of another version are never found.
struct CacheFolder {
  std::string_view name;
  std::string_view extension;
  std::string_view versionKey;  ///< Of the version last used, in the standard defaults.

  /// The folder, made when it is missing.
  [[nodiscard]] std::filesystem::path url() const;
  [[nodiscard]] std::filesystem::path file(int version, const DataCacheKey& key) const;
  void removeAllFiles() const;
  /// Notes that `version` is in use from now on. Files of a lower one are removed when so asked.
  void setVersion(int version, bool shouldClearOldFiles) const;
};

/// Keeps the files of a folder within a bound: the oldest ones beyond it are removed in the
/// background. Between two looks at the folder it may grow by a sixteenth. Several processes may
/// trim one folder. Safe from any thread.
class CacheTrimmer {
 public:
  /// \param folder Must outlive this.
  CacheTrimmer(const CacheFolder& folder, std::uint64_t most) : mostBytes(most), folder_(folder) {}

  /// To be called for each file of so many bytes that was put into the folder.
  void fileWasAdded(std::uint64_t bytes);
  /// Returns when the folders have been looked at for all that was added up to now.
  static void waitUntilTrimmed();

  std::atomic<std::uint64_t> mostBytes;

 private:
  const CacheFolder& folder_;
  std::atomic<std::uint64_t> bytesUntilTrimming_ = 0;
};

}  // namespace velloro
