#pragma once

#include <filesystem>
#include <string>

namespace platform {

/// How SQLite is told to read a file as it lies there: without locks, and without a file made or
/// changed beside it.
struct AtRest {
  std::string name;              ///< The URI to open.
  const char* system = nullptr;  ///< The name of SQLite's view of files; null for the usual one.
};
/// \param path Of the file itself, not of a link.
/// \param ignoresLog Whether it is read without what its write-ahead log adds.
[[nodiscard]] AtRest atRest(const std::filesystem::path& path, bool ignoresLog);

}  // namespace platform
