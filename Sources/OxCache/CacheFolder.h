#pragma once

#include "OxCache/DataCacheKey.h"

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
  /// Removes the oldest files of a folder until the others are no more than so many bytes. Files
  /// that go meanwhile are no failure: several processes may trim one folder.
  static void trim(const std::filesystem::path& folder, std::uint64_t mostBytes);
  /// Notes that `version` is in use from now on. Files of a lower one are removed when so asked.
  void setVersion(int version, bool shouldClearOldFiles) const;
};

}  // namespace velloro
