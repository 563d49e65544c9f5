#include "Foundation/Files/FileLock.h"

#include "Foundation/Values/Try.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace platform {
namespace {

constexpr int makeIfMissing = O_RDWR | O_CREAT | O_NOFOLLOW;

bool hasItsName(const NSFileHandle& file) {
  struct stat held {};
  struct stat named {};
  return file.getStatus(held) && ::stat(file.path().c_str(), &named) == 0 &&
         held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

}  // namespace

Result<FileLock> FileLock::exclusive(const std::filesystem::path& path, NewItemAccess access) {
  return take(path, makeIfMissing, LOCK_EX, access);
}

Result<FileLock> FileLock::shared(const std::filesystem::path& path) {
  return take(path, makeIfMissing, LOCK_SH);
}

bool FileLock::isHeldExclusively(const std::filesystem::path& path) {
  const auto file = NSFileHandle::open(path, O_RDONLY | O_NOFOLLOW);
  return file && ::flock(file->fileDescriptor(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

Result<FileLock> FileLock::exclusiveForAppending(const std::filesystem::path& path) {
  return take(path, O_WRONLY | O_APPEND, LOCK_EX);
}

Result<FileLock> FileLock::exclusiveOfFolder(const std::filesystem::path& folder) {
  return take(folder, O_RDONLY | O_DIRECTORY, LOCK_EX);
}

Result<FileLock> FileLock::take(const std::filesystem::path& path, int flags, int operation,
                                NewItemAccess access) {
  for (;;) {
    auto file = TRY(NSFileHandle::open(path, flags, access));
    while (::flock(file.fileDescriptor(), operation) != 0) {
      if (errno != EINTR) return fileFailure("cannot lock", path);
    }
    if (hasItsName(file)) return FileLock(std::move(file));
  }
}

FileLock::~FileLock() {
  // Closing alone would leave the lock with a child that was forked meanwhile and shares the file.
  if (file_.isOpen()) ::flock(file_.fileDescriptor(), LOCK_UN);
}

}  // namespace platform
