#include "Foundation/Files/NSFileManager.h"

#include "Foundation/Files/FileLock.h"
#include "Foundation/Files/NSFileHandle.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Text/String.h"
#include "Foundation/Values/Try.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

namespace fs = std::filesystem;

Result<void> outcome(const char* attempt, const fs::path& path, const std::error_code& reason) {
  errno = reason.value();
  if (reason) return fileFailure(attempt, path);
  return {};
}

fs::path madeIfMissing(const fs::path& folder) {
  (void)NSFileManager::createDirectory(folder);
  return folder;
}

/// The folders above are made in the same way.
bool makeForOwner(const fs::path& folder) {
  constexpr mode_t mode = 0700;
  if (::mkdir(folder.c_str(), mode) == 0) return ::chmod(folder.c_str(), mode) == 0;
  if (errno == ENOENT && folder.has_relative_path() && makeForOwner(folder.parent_path())) {
    return makeForOwner(folder);
  }
  if (errno != EEXIST) return false;
  std::error_code ignored;
  errno = ENOTDIR;
  return fs::is_directory(folder, ignored);
}

fs::path hiddenSibling(const fs::path& path, const std::string& mark) {
  return path.parent_path() / ("." + path.filename().string() + mark);
}

fs::path newHiddenSibling(const fs::path& path) {
  static std::atomic<unsigned> count = 0;
  return hiddenSibling(path, "." + std::to_string(::getpid()) + "-" + std::to_string(++count));
}

/// A new name is safe from a power cut only once its folder is.
Result<void> synchronizeFolder(const fs::path& path) {
  const fs::path folder = path.has_parent_path() ? path.parent_path() : ".";
  auto handle = TRY(NSFileHandle::open(folder, O_RDONLY | O_DIRECTORY));
  return handle.synchronize();
}

Result<void> fill(NSFileHandle& file, std::string_view bytes, const fs::path& target,
                  NewItemAccess access, NSFileManager::Durability durability) {
  // What a killed writer left may be in it.
  if (::ftruncate(file.fileDescriptor(), 0) != 0) return fileFailure("cannot empty", file.path());
  struct stat replaced {};
  const bool replaces = ::stat(target.c_str(), &replaced) == 0;
  const mode_t mode = replaces ? replaced.st_mode & 07777 : 0600;
  if ((replaces || access == NewItemAccess::owner) && ::fchmod(file.fileDescriptor(), mode) != 0) {
    return fileFailure("cannot set the permissions of", file.path());
  }
  auto written = file.write(bytes);
  if (!written || durability == NSFileManager::Durability::process) return written;
  return file.synchronize();
}

std::string quoted(const char* before, const fs::path& path, const char* after) {
  return std::string(before) + " " + inQuotes(path.string()) + " " + after;
}

Result<void> renameOver(const fs::path& from, const fs::path& to) {
  if (::rename(from.c_str(), to.c_str()) == 0) return {};
  return fileFailure(quoted("cannot put", from, "in the place of"), to);
}

Result<void> renameUnlessThere(const fs::path& from, const fs::path& to) {
  int answer = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
  if (answer != 0 && errno == EINVAL) {  // this file system can't promise that nothing is replaced
    if (NSFileManager::exists(to)) {
      errno = EEXIST;
    } else {
      answer = ::rename(from.c_str(), to.c_str());
    }
  }
  if (answer == 0) return {};
  return fileFailure(quoted("cannot move", from, "to"), to);
}

using Rename = Result<void> (*)(const fs::path& from, const fs::path& to);

/// A complete copy under a name of its own beside `to`, to be renamed.
Result<fs::path> copyBeside(const fs::path& to, const fs::path& from) {
  const fs::path copy = newHiddenSibling(to);
  std::error_code reason;
  fs::copy(from, copy, fs::copy_options::recursive | fs::copy_options::copy_symlinks, reason);
  if (!reason) return copy;
  std::error_code ignored;
  fs::remove_all(copy, ignored);
  return std::unexpected(outcome("cannot copy", from, reason).error());
}

Result<void> copy(const fs::path& from, const fs::path& to, Rename rename) {
  const auto copied = TRY(copyBeside(to, from));
  auto renamed = rename(copied, to);
  std::error_code ignored;
  if (!renamed) fs::remove_all(copied, ignored);
  return renamed;
}

/// Renames, and where the two lie in different file systems copies and removes.
Result<void> move(const fs::path& from, const fs::path& to, Rename rename) {
  auto moved = rename(from, to);
  if (moved || moved.error()->code() != EXDEV) return moved;
  TRY(copy(from, to, rename));
  return NSFileManager::removeItem(from);
}

}  // namespace

fs::path NSFileManager::cachesDirectory() {
  return madeIfMissing(Environment::current().directories().caches);
}

fs::path NSFileManager::documentDirectory() {
  return madeIfMissing(Environment::current().directories().documents);
}

std::optional<fs::path> NSFileManager::containerURLForSecurityApplicationGroupIdentifier(
    std::string_view identifier) {
  if (!isFileName(identifier)) return std::nullopt;
  fs::path folder = Environment::current().directories().groupContainers / identifier;
  if (!createDirectory(folder)) return std::nullopt;
  return folder;
}

bool NSFileManager::isFileName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && !name.contains('/') &&
         !name.contains('\0');
}

bool NSFileManager::exists(const Path& path) {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

Result<std::uint64_t> NSFileManager::size(const Path& path) {
  std::error_code reason;
  const std::uintmax_t bytes = fs::file_size(path, reason);
  if (reason) return std::unexpected(outcome("cannot measure", path, reason).error());
  return bytes;
}

// An inode number is used again after its file is deleted; with the time of birth it is unique.
std::string NSFileManager::identity(const Path& path) {
  struct statx known {};
  if (::statx(AT_FDCWD, path.c_str(), 0, STATX_INO | STATX_BTIME, &known) != 0) return "";
  return std::to_string(known.stx_ino) + "-" + std::to_string(known.stx_btime.tv_sec) + "." +
         std::to_string(known.stx_btime.tv_nsec);
}

Result<std::string> NSFileManager::contents(const Path& path, std::size_t limit) {
  auto file = TRY(NSFileHandle::open(path, O_RDONLY));
  return file.readToEnd(limit);
}

Result<std::vector<std::string>> NSFileManager::contentsOfDirectory(const Path& path) {
  std::vector<std::string> names;
  std::error_code reason;
  for (fs::directory_iterator item(path, reason), end; !reason && item != end;
       item.increment(reason)) {
    names.push_back(item->path().filename().string());
  }
  if (reason) return std::unexpected(outcome("cannot list", path, reason).error());
  std::ranges::sort(names);
  return names;
}

Result<void> NSFileManager::write(std::string_view bytes, const Path& path, NewItemAccess access,
                                  Durability durability) {
  auto temporary = TRY(FileLock::exclusive(hiddenSibling(path, ".tmp"), access));
  auto done = fill(temporary.file(), bytes, path, access, durability);
  if (done) done = renameOver(temporary.file().path(), path);
  if (!done) {
    ::unlink(temporary.file().path().c_str());
    return done;
  }
  if (durability == Durability::process) return done;
  return synchronizeFolder(path);
}

Result<void> NSFileManager::append(std::string_view bytes, const Path& path) {
  auto lock = TRY(FileLock::exclusiveForAppending(path));
  NSFileHandle& file = lock.file();
  struct stat before {};
  TRY(file.getStatus(before));
  auto written = file.write(bytes);
  // A full disk may have taken a part, which the next piece must not follow.
  if (!written && ::ftruncate(file.fileDescriptor(), before.st_size) != 0) {
    return fileFailure("cannot take back what was added to", path);
  }
  return written;
}

Result<void> NSFileManager::createFile(const Path& path, NewItemAccess access) {
  const auto file = TRY(NSFileHandle::open(path, O_WRONLY | O_CREAT, access));
  return {};
}

Result<void> NSFileManager::createDirectory(const Path& path, NewItemAccess access) {
  std::error_code reason;
  if (access == NewItemAccess::byUmask) {
    fs::create_directories(path, reason);
  } else if (!makeForOwner(path)) {
    reason = std::error_code(errno, std::generic_category());
  }
  return outcome("cannot make the folder", path, reason);
}

Result<void> NSFileManager::makePrivate(const Path& path) {
  std::error_code reason;
  fs::permissions(path, fs::perms::group_all | fs::perms::others_all, fs::perm_options::remove,
                  reason);
  return outcome("cannot set the permissions of", path, reason);
}

Result<void> NSFileManager::removeItem(const Path& path) {
  std::error_code reason;
  const bool missing = fs::remove_all(path, reason) == 0 && !reason;
  if (missing) reason = std::make_error_code(std::errc::no_such_file_or_directory);
  return outcome("cannot remove", path, reason);
}

Result<void> NSFileManager::copyItem(const Path& from, const Path& to) {
  return copy(from, to, renameUnlessThere);
}

Result<void> NSFileManager::moveItem(const Path& from, const Path& to) {
  return move(from, to, renameUnlessThere);
}

Result<void> NSFileManager::replaceItem(const Path& path, const Path& replacement) {
  return move(replacement, path, renameOver);
}

}  // namespace platform
