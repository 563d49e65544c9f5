#include "Foundation/Files/OutputFile.h"

#include "Foundation/Values/Try.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

namespace fs = std::filesystem;

std::optional<struct stat> statusOf(const fs::path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

/// Where the links lead, also if nothing is there yet.
fs::path withoutLinks(fs::path path) {
  constexpr int mostLinks = 40;  // the system's own limit
  std::error_code reason;
  for (int i = 0; i < mostLinks && fs::is_symlink(path, reason); ++i) {
    const fs::path next = fs::read_symlink(path, reason);
    if (reason) break;
    path = path.parent_path() / next;
  }
  return path;
}

fs::path folderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : ".";
}

/// Short, however long the name of the file is: a file system limits the length of a name.
fs::path hiddenName(const fs::path& path, const std::string& mark) {
  const std::size_t name = std::hash<std::string>{}(path.filename().string());
  return path.parent_path() / ("." + std::to_string(name) + mark);
}

Result<void> copyPermissions(const NSFileHandle& file, const struct stat& from) {
  constexpr mode_t permissions = 07777;
  if (::fchmod(file.fileDescriptor(), from.st_mode & permissions) == 0) return {};
  return fileFailure("cannot set the permissions of", file.path());
}

Result<void> renameOver(const fs::path& from, const fs::path& to) {
  if (::rename(from.c_str(), to.c_str()) == 0) return {};
  const int reason = errno;
  ::unlink(from.c_str());
  errno = reason;
  return fileFailure("cannot replace", to);
}

}  // namespace

Result<OutputFile> OutputFile::open(const fs::path& path) {
  const auto known = statusOf(path);
  if (!known && errno != ENOENT) return fileFailure("cannot make", path);
  if (known && !S_ISREG(known->st_mode)) {
    auto file = TRY(NSFileHandle::open(path, O_WRONLY));
    return OutputFile(std::move(file), fs::path());
  }
  fs::path target = withoutLinks(path);
  auto file = NSFileHandle::open(folderOf(target), O_TMPFILE | O_WRONLY, NewItemAccess::byUmask);
  if (file) return OutputFile(std::move(*file), std::move(target));
  const int reason = file.error()->code();
  if (reason == EOPNOTSUPP || reason == EISDIR) return openHidden(target);
  errno = reason;
  return fileFailure("cannot make", target);
}

/// For a file system that knows no files without a name.
Result<OutputFile> OutputFile::openHidden(const fs::path& target) {
  const bool replaces = statusOf(target).has_value();
  auto hidden = TRY(FileLock::exclusive(hiddenName(target, ".tmp"),
                                        replaces ? NewItemAccess::owner : NewItemAccess::byUmask));
  // What a killed writer left may be in it.
  const int descriptor = hidden.file().fileDescriptor();
  const bool isReady =
      (!replaces || ::fchmod(descriptor, 0600) == 0) && ::ftruncate(descriptor, 0) == 0;
  if (!isReady) return fileFailure("cannot empty", hidden.file().path());
  return OutputFile(std::move(hidden), target);
}

OutputFile::~OutputFile() {
  if (hidden_ && hidden_->file().isOpen()) ::unlink(hidden_->file().path().c_str());
}

Result<void> OutputFile::finish() {
  if (target_.empty()) return {};
  if (const auto replaced = statusOf(target_)) {
    TRY(copyPermissions(handle(), *replaced));
  }
  TRY(handle().synchronize());
  if (!hidden_) return link();
  auto done = renameOver(hidden_->file().path(), target_);
  hidden_.reset();
  return done;
}

/// A link never replaces a file, so it is made beside one and renamed.
Result<void> OutputFile::link() {
  const std::string self = "/proc/self/fd/" + std::to_string(unnamed_.fileDescriptor());
  const auto linkTo = [&](const fs::path& name) {
    return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
  };
  if (linkTo(target_)) return {};
  if (errno != EEXIST) return fileFailure("cannot make", target_);
  const fs::path beside = hiddenName(target_, "." + std::to_string(::getpid()));
  ::unlink(beside.c_str());
  if (!linkTo(beside)) return fileFailure("cannot make", beside);
  return renameOver(beside, target_);
}

}  // namespace platform
