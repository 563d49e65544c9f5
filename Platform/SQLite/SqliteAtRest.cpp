#include "SQLite/SqliteAtRest.h"

#include "Foundation/Text/String.h"
#include "SQLite/LogOwner.h"

#include <sqlite3.h>

namespace platform {
namespace {

/// A file as the usual view has it, but without locks. The usual view closes it: closing a file
/// in any other way would give up the locks that other connections of this process hold on it.
struct File {
  sqlite3_file base;
  sqlite3_file* usual;
};

sqlite3_file* usual(sqlite3_file* file) {
  return reinterpret_cast<File*>(file)->usual;
}

using Methods = sqlite3_io_methods;

template <auto Method>
struct Forward;
template <typename Value, typename... Arguments,
          Value (*Methods::*Method)(sqlite3_file*, Arguments...)>
struct Forward<Method> {
  static Value call(sqlite3_file* file, Arguments... arguments) {
    return (usual(file)->pMethods->*Method)(usual(file), arguments...);
  }
};

// Of version 1, thus without shared memory.
constexpr Methods methods = {
    .iVersion = 1,
    .xClose = Forward<&Methods::xClose>::call,
    .xRead = Forward<&Methods::xRead>::call,
    .xWrite = [](sqlite3_file*, const void*, int, sqlite3_int64) { return SQLITE_READONLY; },
    .xTruncate = [](sqlite3_file*, sqlite3_int64) { return SQLITE_READONLY; },
    .xSync = [](sqlite3_file*, int) { return SQLITE_OK; },
    .xFileSize = Forward<&Methods::xFileSize>::call,
    .xLock = [](sqlite3_file*, int) { return SQLITE_OK; },
    .xUnlock = [](sqlite3_file*, int) { return SQLITE_OK; },
    .xCheckReservedLock =
        [](sqlite3_file*, int* isLocked) {
          *isLocked = 0;
          return SQLITE_OK;
        },
    .xFileControl = Forward<&Methods::xFileControl>::call,
    .xSectorSize = Forward<&Methods::xSectorSize>::call,
    .xDeviceCharacteristics = Forward<&Methods::xDeviceCharacteristics>::call,
    .xShmMap = nullptr,
    .xShmLock = nullptr,
    .xShmBarrier = nullptr,
    .xShmUnmap = nullptr,
    .xFetch = nullptr,
    .xUnfetch = nullptr,
};

sqlite3_vfs* usualView = nullptr;

int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  auto* own = reinterpret_cast<File*>(file);
  own->usual = reinterpret_cast<sqlite3_file*>(own + 1);
  flags &= ~(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  const int code =
      usualView->xOpen(usualView, name, own->usual, flags | SQLITE_OPEN_READONLY, outFlags);
  own->base.pMethods = own->usual->pMethods != nullptr ? &methods : nullptr;
  return code;
}

const char* viewWithoutLocks() {
  static const char* name = [] {
    usualView = sqlite3_vfs_find(nullptr);
    static sqlite3_vfs view = *usualView;
    view.zName = "at-rest";
    view.szOsFile += static_cast<int>(sizeof(File));
    view.xOpen = open;
    sqlite3_vfs_register(&view, 0);
    return view.zName;
  }();
  return name;
}

std::string uriOf(const std::filesystem::path& path) {
  std::string uri = "file:";
  for (const char c : path.string()) {
    const bool isPlain = c != '%' && c != '?' && c != '#';
    uri += isPlain ? std::string(1, c) : stringWithFormat("%%%02X", c);
  }
  return uri;
}

}  // namespace

AtRest atRest(const std::filesystem::path& path, bool ignoresLog) {
  std::error_code ignored;
  const auto size = std::filesystem::file_size(path.string() + "-wal", ignored);
  const bool hasLog = !ignoresLog && !ignored && size > 0 && !hasForeignLog(path);
  if (hasLog) return {.name = uriOf(path) + "?mode=ro", .system = viewWithoutLocks()};
  return {.name = uriOf(path) + "?immutable=1"};
}

}  // namespace platform
