#include "Foundation/Files/SharedFile.h"

#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Values/Try.h"

#include <cerrno>

#include <fcntl.h>

namespace platform {
namespace {

/// Whether two looks at a name saw the same file in the same state. The size and the time notice a
/// person's editor that writes into the file; our own writes always make a new one.
bool isSameState(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino && one.st_size == other.st_size &&
         one.st_mtim.tv_sec == other.st_mtim.tv_sec && one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

}  // namespace

bool SharedFile::isUpToDate() const {
  if (!isRead_) return false;
  struct stat state {};
  if (::stat(path_.c_str(), &state) == 0) return file_.isOpen() && isSameState(state, state_);
  return errno == ENOENT && !file_.isOpen();
}

Result<std::optional<std::string>> SharedFile::read() {
  auto text = open();
  isRead_ = text.has_value();
  if (!text || !*text) file_ = NSFileHandle();
  return text;
}

Result<std::optional<std::string>> SharedFile::open() {
  auto file = NSFileHandle::open(path_, O_RDONLY);
  if (!file && file.error()->code() == ENOENT) return std::nullopt;
  if (!file) return std::unexpected(file.error());
  file_ = std::move(*file);
  // Before the content, so that a change in between shows at the next look.
  TRY(file_.getStatus(state_));
  return file_.readToEnd();
}

Result<FileLock> SharedFile::lock() const {
  TRY(NSFileManager::createDirectory(path_.parent_path()));
  return FileLock::exclusive(path_.parent_path() / ("." + path_.filename().string() + ".lock"));
}

Result<void> SharedFile::write(std::string_view text) const {
  return NSFileManager::write(text, path_);
}

Result<void> SharedFile::moveAside() const {
  for (int count = 1;; ++count) {
    const std::string mark = count == 1 ? ".corrupt" : ".corrupt." + std::to_string(count);
    auto moved = NSFileManager::moveItem(path_, path_.string() + mark);
    if (moved || moved.error()->code() != EEXIST) return moved;
  }
}

void SharedFile::reportOnce(const std::string& problem) {
  if (problem == lastReported_) return;
  lastReported_ = problem;
  Environment::current().report(problem);
}

}  // namespace platform
