#include "SQLite/LogOwner.h"

#include "Foundation/Files/FileLock.h"
#include "Foundation/Files/NSFileManager.h"

#include <array>
#include <optional>
#include <string>

#include <sys/xattr.h>

namespace platform {
namespace {

constexpr const char* attribute = "user.velloro.file";

std::string logOf(const std::filesystem::path& store) {
  return store.string() + "-wal";
}

/// The identity of the file that the log is marked for. Absent without a mark, and for a mark that
/// came with a copy of another log.
std::optional<std::string> ownerOf(const std::string& log) {
  std::array<char, 256> kept{};
  const ssize_t size = ::getxattr(log.c_str(), attribute, kept.data(), kept.size());
  if (size <= 0) return std::nullopt;
  const std::string_view mark(kept.data(), static_cast<std::size_t>(size));
  const std::string prefix = NSFileManager::identity(log) + " ";
  if (!mark.starts_with(prefix)) return std::nullopt;
  return std::string(mark.substr(prefix.size()));
}

}  // namespace

void markLog(const std::filesystem::path& store) {
  const std::string log = logOf(store);
  if (ownerOf(log)) return;
  const std::string mark = NSFileManager::identity(log) + " " + NSFileManager::identity(store);
  (void)::setxattr(log.c_str(), attribute, mark.data(), mark.size(), 0);
}

bool hasForeignLog(const std::filesystem::path& store) {
  const auto owner = ownerOf(logOf(store));
  return owner && *owner != NSFileManager::identity(store);
}

void dropForeignLog(const std::filesystem::path& store) {
  if (!hasForeignLog(store)) return;
  // Somebody else may have done so since, and have begun the log of the new file.
  const auto alone = FileLock::exclusiveOfFolder(store.parent_path());
  if (!hasForeignLog(store)) return;
  // The log last: who finds none any more goes on without this lock, and would share the index.
  std::error_code ignored;
  for (const char* suffix : {"-shm", "-wal"}) {
    std::filesystem::remove(store.string() + suffix, ignored);
  }
}

}  // namespace platform
