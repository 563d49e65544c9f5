#include "Foundation/FileLock.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace platform {
namespace {

bool hasItsName(const NSFileHandle& file) {
  struct stat held {};
  struct stat named {};
  return file.getStatus(held) && ::stat(file.path().c_str(), &named) == 0 &&
         held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

}  // namespace

Result<FileLock> FileLock::exclusive(const std::filesystem::path& path) {
  return take(path, O_RDWR | O_CREAT | O_NOFOLLOW);
}

Result<FileLock> FileLock::exclusiveForAppending(const std::filesystem::path& path) {
  return take(path, O_WRONLY | O_APPEND);
}

Result<FileLock> FileLock::take(const std::filesystem::path& path, int flags) {
  for (;;) {
    auto file = NSFileHandle::open(path, flags);
    if (!file) return std::unexpected(file.error());
    while (::flock(file->fileDescriptor(), LOCK_EX) != 0) {
      if (errno != EINTR) return fileFailure("cannot lock", path);
    }
    if (hasItsName(*file)) return FileLock(std::move(*file));
  }
}

FileLock::~FileLock() {
  // Closing alone would leave the lock with a child that was forked meanwhile and shares the file.
  if (file_.isOpen()) ::flock(file_.fileDescriptor(), LOCK_UN);
}

}  // namespace platform
