#include "Foundation/Files/NSFileHandle.h"

#include "Foundation/Text/String.h"
#include "Foundation/Values/Try.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

/// The call's answer once no signal has cut it short.
template <typename Call>
auto uninterrupted(Call call) {
  auto answer = call();
  while (answer < 0 && errno == EINTR) answer = call();
  return answer;
}

}  // namespace

std::unexpected<ErrorPtr> fileFailure(std::string_view attempt, const std::filesystem::path& path) {
  const int reason = errno;
  return failure<PosixError>(std::string(attempt) + " " + inQuotes(path.string()), reason);
}

NSFileHandle& NSFileHandle::operator=(NSFileHandle&& other) noexcept {
  std::swap(path_, other.path_);
  std::swap(descriptor_, other.descriptor_);
  return *this;
}

NSFileHandle::~NSFileHandle() {
  if (isOpen()) ::close(descriptor_);
}

Result<NSFileHandle> NSFileHandle::open(const std::filesystem::path& path, int flags,
                                        NewItemAccess access) {
  const bool isForOwner = access == NewItemAccess::owner;
  const mode_t mode = isForOwner ? 0600 : 0666;
  const auto opened = [&](int how) {
    return uninterrupted([&] { return ::open(path.c_str(), how | O_CLOEXEC, mode); });
  };
  // A file is known to be new only when it is asked for as new.
  const bool mayMake = isForOwner && (flags & O_CREAT) != 0;
  int descriptor = mayMake ? opened(flags | O_EXCL) : opened(flags);
  if (mayMake && descriptor >= 0) {
    ::fchmod(descriptor, mode);  // the umask may have taken even the owner's permissions away
  } else if (mayMake && errno == EEXIST && (flags & O_EXCL) == 0) {
    descriptor = opened(flags);
  }
  if (descriptor < 0) return fileFailure("cannot open", path);
  return NSFileHandle(path, descriptor);
}

Result<std::string> NSFileHandle::readToEnd(std::size_t limit) {
  const auto tooLarge = [&] {
    errno = EFBIG;
    return fileFailure("cannot read more than " + std::to_string(limit >> 20) + " MiB of", path_);
  };
  std::string bytes;
  struct stat status {};
  TRY(getStatus(status));
  if (status.st_size > 0 && static_cast<std::size_t>(status.st_size) > limit) return tooLarge();
  // More than expected, so that the end shows without a further turn of growing. What stays free
  // saves readers of JSON a copy.
  constexpr std::size_t spare = 4096;
  std::size_t room = static_cast<std::size_t>(status.st_size) + spare;
  for (std::size_t filled = 0;;) {
    bytes.resize(filled + room);
    const ssize_t count =
        uninterrupted([&] { return ::read(descriptor_, bytes.data() + filled, room); });
    if (count < 0) return fileFailure("cannot read", path_);
    filled += static_cast<std::size_t>(count);
    if (filled > limit) return tooLarge();
    room = std::max(room - static_cast<std::size_t>(count), spare);
    if (count == 0) {
      bytes.resize(filled);
      return bytes;
    }
  }
}

Result<void> NSFileHandle::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count =
        uninterrupted([&] { return ::write(descriptor_, bytes.data(), bytes.size()); });
    if (count < 0) return fileFailure("cannot write", path_);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return {};
}

Result<void> NSFileHandle::synchronize() {
  // A folder, or a file of a kind that is not kept on a disk, may not know how to; nothing is lost.
  const bool done = uninterrupted([&] { return ::fsync(descriptor_); }) == 0 || errno == EINVAL;
  if (!done) return fileFailure("cannot bring to the disk", path_);
  return {};
}

Result<void> NSFileHandle::getStatus(struct stat& status) const {
  if (::fstat(descriptor_, &status) != 0) return fileFailure("cannot examine", path_);
  return {};
}

}  // namespace platform
