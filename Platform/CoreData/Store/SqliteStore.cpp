#include "CoreData/Store/SqliteStore.h"

#include "CoreData/Store/StoreHistory.h"
#include "CoreData/Store/StoreTransaction.h"
#include "Foundation/Files/FileLock.h"
#include "Foundation/Values/Try.h"
#include "SQLite/LogOwner.h"

#include <algorithm>

namespace platform {
namespace {

constexpr std::array<const char*, 3> suffixes = {"", "-wal", "-shm"};

/// Before anything is written, and before SQLite makes a file beside it. The log is read only where
/// the file itself doesn't tell enough: that takes longer the longer it is.
Result<void> recognizeFile(SqliteLocation location) {
  std::error_code error;
  if (std::filesystem::is_directory(location.path, error)) {
    return failure<StoreError>(StoreError::Kind::cannotOpen,
                               "\"" + location.path.string() + "\" is a folder");
  }
  const auto size = std::filesystem::file_size(location.path, error);
  if (error || size == 0) return {};
  location.access = SqliteAccess::atRest;
  location.ignoresLog = true;
  auto file = SqliteConnection::open(location);
  if (!file) return std::unexpected(file.error());
  const auto application = (*file)->integer("PRAGMA application_id");
  if (application && *application == storeApplicationID) return recognizeStore(**file);
  location.ignoresLog = false;
  Result<void> known;
  // Without locks, a program that writes a store may spoil a look at it, but hardly the next one.
  for (int looks = 0; looks < 3; ++looks) {
    file = SqliteConnection::open(location);
    known = file ? recognizeStore(**file) : std::unexpected(file.error());
    if (known) break;
  }
  return known;
}

SqliteAccess accessOf(StoreAccess access) {
  switch (access) {
    case StoreAccess::readOnly:
      return SqliteAccess::readOnly;
    case StoreAccess::atRest:
      return SqliteAccess::atRest;
    default:
      return SqliteAccess::readWrite;
  }
}

/// What a link leads to: SQLite keeps its other files there.
std::filesystem::path fileOf(const std::filesystem::path& url) {
  std::error_code error;
  if (!std::filesystem::is_symlink(url, error)) return url;
  const auto file = std::filesystem::canonical(url, error);
  return error ? url : file;
}

}  // namespace

SqliteStore::SqliteStore(const NSManagedObjectModel& model, SqliteLocation location,
                         bool mayComplete)
    : model_(model), location_(std::move(location)), mayComplete_(mayComplete) {
  for (const NSEntityDescription* entity : model.entities()) tables_.emplace_back(*entity);
}

Result<std::shared_ptr<SqliteStore>> SqliteStore::open(
    const NSManagedObjectModel& model, const NSPersistentStoreDescription& description) {
  const bool isInMemory = description.type == NSInMemoryStoreType;
  if (!isInMemory && description.url.empty()) {
    return failure<StoreError>(StoreError::Kind::cannotOpen, "a store's description has no file");
  }
  SqliteLocation location{.path = isInMemory ? "" : fileOf(description.url),
                          .applicationID = storeApplicationID,
                          .busyTimeout = description.timeout,
                          .access = accessOf(description.access)};
  const bool mayComplete = description.shouldMigrateStoreAutomatically &&
                           description.shouldInferMappingModelAutomatically;
  std::shared_ptr<SqliteStore> store(new SqliteStore(model, std::move(location), mayComplete));
  auto connection = TRY(store->openFile());
  const auto newest = TRY(newestTransaction(*connection));
  store->knownTransaction = newest;
  store->giveBack(std::move(connection));
  return store;
}

SqliteStore::Files SqliteStore::look() const {
  Files files;
  std::ranges::transform(suffixes, files.begin(), [this](const char* suffix) {
    return StoreFileState::of(location_.path.string() + suffix);
  });
  return files;
}

/// The file that has the name now.
Result<std::unique_ptr<SqliteConnection>> SqliteStore::openFile() {
  const bool isWritten = location_.access == SqliteAccess::readWrite && !location_.path.empty();
  if (isWritten) dropForeignLog(location_.path);
  TRY(recognizeFile(location_));
  if (location_.access == SqliteAccess::atRest) opened_ = look();
  auto connection = connect(file_);
  if (!connection) return connection;
  if (location_.access == SqliteAccess::readWrite) {
    TRY(completeSchema(**connection, model_, mayComplete_));
  }
  if (isWritten) markLog(location_.path);
  if (location_.access != SqliteAccess::atRest) opened_ = look();
  return connection;
}

Result<std::unique_ptr<SqliteConnection>> SqliteStore::connect(int file) const {
  auto connection = SqliteConnection::open(location_);
  if (!connection) return connection;
  (*connection)->file = file;
  if (location_.access == SqliteAccess::readWrite) return connection;
  TRY(completeForReading(**connection, model_));
  return connection;
}

Result<SqliteStore::Lease> SqliteStore::lease(const StoreTransaction* within) {
  if (within != nullptr) return Lease(&within->connection(), Return());
  std::unique_lock lock(mutex_);
  const bool isInMemory = location_.path.empty();
  if (isInMemory && idle_.empty() && isWrittenByThisThread()) {
    return failure<StoreError>(StoreError::Kind::busy,
                               "another context of the same thread is writing to the store");
  }
  if (isInMemory) returned_.wait(lock, [this] { return !idle_.empty(); });
  if (!isInMemory) {
    TRY(followReplacement());
  }
  const int file = file_;
  if (!idle_.empty()) {
    auto connection = std::move(idle_.back());
    idle_.pop_back();
    return Lease(connection.release(), Return(this));
  }
  lock.unlock();
  auto connection = TRY(connect(file));
  return Lease(connection.release(), Return(this));
}

/// Opens the file that has the name now, where that is another one.
Result<void> SqliteStore::followReplacement() {
  const auto now = StoreFileState::of(location_.path);
  if (now && opened_[0] && now->isSameFile(*opened_[0])) return {};
  if (!now) {
    return failure<StoreError>(StoreError::Kind::cannotOpen,
                               "\"" + location_.path.string() + "\" is there no longer");
  }
  dropOldFile();
  auto connection = TRY(openFile());
  idle_.push_back(std::move(connection));
  if (onReplaced_) onReplaced_();
  return {};
}

/// The log of the old file, where nobody has put another in its place, would be taken for the new
/// one's.
void SqliteStore::dropOldFile() {
  for (const auto& connection : idle_) connection->abandon();
  // Closed only at the end: until then, no new file can get the number of an old one.
  const auto closing = std::exchange(idle_, {});
  ++file_;
  // Whoever follows the same replacement in another process must not take the log that this one
  // begins for the old one.
  const auto alone = FileLock::exclusiveOfFolder(location_.path.parent_path());
  const Files now = look();
  for (std::size_t i = suffixes.size() - 1; i > 0; --i) {  // the log last, as in `dropForeignLog`
    if (!now[i] || !opened_[i] || !now[i]->isSameFile(*opened_[i])) continue;
    std::error_code ignored;
    std::filesystem::remove(location_.path.string() + suffixes[i], ignored);
    opened_[i].reset();
  }
}

bool SqliteStore::hasBeenWritten() const {
  const Files now = look();
  const std::scoped_lock lock(mutex_);
  return file_ > 0 || now[0] != opened_[0] || now[1] != opened_[1];
}

void SqliteStore::giveBack(std::unique_ptr<SqliteConnection> connection) {
  const std::scoped_lock lock(mutex_);
  if (connection->file != file_) return connection->abandon();
  // One that stands in while the disk is full is used once.
  const bool standsIn =
      connection->writeError() != nullptr && location_.access == SqliteAccess::readWrite;
  if (!standsIn) idle_.push_back(std::move(connection));
  returned_.notify_one();
}

}  // namespace platform
