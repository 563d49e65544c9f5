#include "CoreDataTests/FailingDisk.h"

#include <atomic>
#include <cerrno>

#include <sqlite3.h>

namespace {

// A store looks for changes on a thread of its own.
std::atomic<FailingDisk::Mode> mode;
std::atomic<int> operationsUntilFailure = 0;  // 0 when nothing is to fail
std::atomic<bool> failed = false;

struct File {
  sqlite3_file base;
  sqlite3_file* real;
};

sqlite3_file* realOf(sqlite3_file* file) {
  return reinterpret_cast<File*>(file)->real;
}

/// Whether the operation that is just asked for goes wrong.
bool failsNow() {
  if (failed && mode == FailingDisk::Mode::powerCut) return true;
  if (operationsUntilFailure == 0 || --operationsUntilFailure > 0) return false;
  return failed = true;
}

bool writeFailsNow() {
  using enum FailingDisk::Mode;
  return mode != unreadable && mode != noRoomForIndex && failsNow();
}

/// With the system's reason.
int noRoom(int code) {
  using enum FailingDisk::Mode;
  errno = mode == powerCut ? EIO : mode == overQuota ? EDQUOT : ENOSPC;
  return code;
}

template <auto Method>
struct Forward;
template <typename Value, typename... Arguments,
          Value (*sqlite3_io_methods::*Method)(sqlite3_file*, Arguments...)>
struct Forward<Method> {
  static Value call(sqlite3_file* file, Arguments... arguments) {
    sqlite3_file* real = realOf(file);
    return (real->pMethods->*Method)(real, arguments...);
  }
};

int read(sqlite3_file* file, void* bytes, int count, sqlite3_int64 offset) {
  sqlite3_file* real = realOf(file);
  if (mode == FailingDisk::Mode::unreadable && failsNow()) return SQLITE_IOERR_READ;
  return real->pMethods->xRead(real, bytes, count, offset);
}

int write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
  sqlite3_file* real = realOf(file);
  const bool wasCut = failed;
  if (!writeFailsNow()) return real->pMethods->xWrite(real, bytes, count, offset);
  if (mode == FailingDisk::Mode::full) return SQLITE_FULL;
  if (mode == FailingDisk::Mode::overQuota) return noRoom(SQLITE_IOERR_WRITE);
  if (!wasCut) real->pMethods->xWrite(real, bytes, count / 2, offset);
  return SQLITE_IOERR_WRITE;
}

int sync(sqlite3_file* file, int flags) {
  sqlite3_file* real = realOf(file);
  return writeFailsNow() ? noRoom(SQLITE_IOERR_FSYNC) : real->pMethods->xSync(real, flags);
}

int truncate(sqlite3_file* file, sqlite3_int64 size) {
  sqlite3_file* real = realOf(file);
  return writeFailsNow() ? noRoom(SQLITE_IOERR_TRUNCATE) : real->pMethods->xTruncate(real, size);
}

int mapIndex(sqlite3_file* file, int page, int size, int mayExtend, void volatile** place) {
  if (mode == FailingDisk::Mode::noRoomForIndex && operationsUntilFailure > 0) {
    return noRoom(SQLITE_IOERR_SHMSIZE);
  }
  sqlite3_file* real = realOf(file);
  return real->pMethods->xShmMap(real, page, size, mayExtend, place);
}

using Methods = sqlite3_io_methods;
constexpr Methods methods = {
    .iVersion = 2,
    .xClose = Forward<&Methods::xClose>::call,
    .xRead = read,
    .xWrite = write,
    .xTruncate = truncate,
    .xSync = sync,
    .xFileSize = Forward<&Methods::xFileSize>::call,
    .xLock = Forward<&Methods::xLock>::call,
    .xUnlock = Forward<&Methods::xUnlock>::call,
    .xCheckReservedLock = Forward<&Methods::xCheckReservedLock>::call,
    .xFileControl = Forward<&Methods::xFileControl>::call,
    .xSectorSize = Forward<&Methods::xSectorSize>::call,
    .xDeviceCharacteristics = Forward<&Methods::xDeviceCharacteristics>::call,
    .xShmMap = mapIndex,
    .xShmLock = Forward<&Methods::xShmLock>::call,
    .xShmBarrier = Forward<&Methods::xShmBarrier>::call,
    .xShmUnmap = Forward<&Methods::xShmUnmap>::call,
    .xFetch = nullptr,
    .xUnfetch = nullptr};

sqlite3_vfs* realDisk = nullptr;

int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  auto* own = reinterpret_cast<File*>(file);
  own->real = reinterpret_cast<sqlite3_file*>(own + 1);
  const int code = realDisk->xOpen(realDisk, name, own->real, flags, outFlags);
  own->base.pMethods = own->real->pMethods != nullptr ? &methods : nullptr;
  return code;
}

/// Registered once and kept: connections may outlive the test that opened them.
void install() {
  if (realDisk != nullptr) return;
  realDisk = sqlite3_vfs_find(nullptr);
  static sqlite3_vfs disk = *realDisk;
  disk.zName = "failing";
  disk.szOsFile += static_cast<int>(sizeof(File));
  disk.xOpen = open;
  sqlite3_vfs_register(&disk, 1);
}

[[maybe_unused]] const bool installed = [] {
  install();
  return true;
}();

}  // namespace

FailingDisk::FailingDisk(Mode ofFailure, int failAt) {
  mode = ofFailure;
  operationsUntilFailure = failAt;
  failed = false;
}

FailingDisk::~FailingDisk() {
  operationsUntilFailure = 0;
  failed = false;
}

bool FailingDisk::hasFailed() const {
  return failed;
}
