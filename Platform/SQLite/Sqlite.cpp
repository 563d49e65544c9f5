#include "SQLite/Sqlite.h"

#include "Foundation/Files/FileLock.h"
#include "Foundation/Files/NSFileHandle.h"
#include "Foundation/Values/Try.h"
#include "SQLite/SqliteAtRest.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <thread>

#include <fcntl.h>
#include <sqlite3.h>

namespace platform {
namespace {

StoreError::Kind kindOf(int code) {
  using enum StoreError::Kind;
  switch (code & 0xFF) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
    case SQLITE_FORMAT:
      return notADatabase;
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return readOnly;
    case SQLITE_FULL:
      return diskFull;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return busy;
    case SQLITE_CANTOPEN:
      return cannotOpen;
    default:
      return failed;
  }
}

/// Asked whenever another is writing. SQLite's own handler looks ever less often, so that newcomers
/// go before whoever has waited for long; here it is the other way round, and among many writers
/// each gets its turn.
int waitForOthers(void* waiting, int looks) {
  auto& patience = *static_cast<SqlitePatience*>(waiting);
  if (looks == 0) patience.waited = 0;
  if (patience.waited >= patience.timeout) return 0;
  constexpr double longest = 0.02;
  constexpr double shortest = 0.0002;
  const double pause =
      looks < 5 ? 0.002 : std::max(longest * std::exp2(-2 * patience.waited), shortest);
  std::this_thread::sleep_for(std::chrono::duration<double>(pause));
  patience.waited += pause;
  return 1;
}

bool isForWantOfSpace(int reason) {
  return reason == ENOSPC || reason == EDQUOT;
}

/// SQLite tells of a full disk as such only where a write to the file fails. Its other files and a
/// person's quota show in the system's reason alone; that of a failed commit SQLite doesn't keep,
/// but it is still the thread's last one then.
bool lacksSpace(sqlite3* handle, int code) {
  const int last = errno;
  const int kind = code & 0xFF;
  if (kind == SQLITE_FULL) return true;
  if (kind != SQLITE_IOERR && kind != SQLITE_CANTOPEN) return false;
  return isForWantOfSpace(last) ||
         (handle != nullptr && isForWantOfSpace(sqlite3_system_errno(handle)));
}

std::unexpected<ErrorPtr> sqliteFailure(sqlite3* handle, int code,
                                        const std::filesystem::path& path) {
  const bool isFull = lacksSpace(handle, code);
  const char* reason = handle != nullptr && sqlite3_errcode(handle) != SQLITE_OK
                           ? sqlite3_errmsg(handle)
                           : sqlite3_errstr(code);
  const std::string name = path.empty() ? "the store in memory" : "\"" + path.string() + "\"";
  if (isFull) {
    return failure<StoreError>(StoreError::Kind::diskFull, name + ": the disk is full");
  }
  return failure<StoreError>(kindOf(code), name + ": " + reason);
}

}  // namespace

SqliteStatement::~SqliteStatement() {
  if (kept_ == nullptr) return;
  sqlite3_reset(kept_->handle);
  kept_->isInUse = false;
  if (kept_->isTransient) {
    sqlite3_finalize(kept_->handle);
    delete kept_;
  }
}

void SqliteStatement::bind(int parameter, std::int64_t value) {
  if (const int code = sqlite3_bind_int64(kept_->handle, parameter, value)) bindError_ = code;
}

void SqliteStatement::bind(int parameter, double value) {
  if (const int code = sqlite3_bind_double(kept_->handle, parameter, value)) bindError_ = code;
}

void SqliteStatement::bind(int parameter, std::string_view value) {
  if (const int code = sqlite3_bind_text64(kept_->handle, parameter, value.data(), value.size(),
                                           SQLITE_STATIC, SQLITE_UTF8)) {
    bindError_ = code;
  }
}

void SqliteStatement::bind(int parameter, std::span<const std::byte> value) {
  // Without an address, empty bytes would be taken for NULL.
  const void* bytes = value.empty() ? "" : static_cast<const void*>(value.data());
  if (const int code =
          sqlite3_bind_blob64(kept_->handle, parameter, bytes, value.size(), SQLITE_STATIC)) {
    bindError_ = code;
  }
}

void SqliteStatement::bindNull(int parameter) {
  if (const int code = sqlite3_bind_null(kept_->handle, parameter)) bindError_ = code;
}

Result<bool> SqliteStatement::step() {
  sqlite3* connection = sqlite3_db_handle(kept_->handle);
  if (bindError_ != SQLITE_OK) return sqliteFailure(connection, bindError_, *kept_->path);
  errno = 0;
  const int code = sqlite3_step(kept_->handle);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  return sqliteFailure(connection, sqlite3_extended_errcode(connection), *kept_->path);
}

Result<void> SqliteStatement::run() {
  for (;;) {
    auto row = step();
    if (row && *row) continue;
    sqlite3_reset(kept_->handle);
    if (!row) return std::unexpected(std::move(row.error()));
    return {};
  }
}

bool SqliteStatement::isNull(int column) const {
  return sqlite3_column_type(kept_->handle, column) == SQLITE_NULL;
}

std::int64_t SqliteStatement::integer(int column) const {
  return sqlite3_column_int64(kept_->handle, column);
}

double SqliteStatement::real(int column) const {
  return sqlite3_column_double(kept_->handle, column);
}

std::string_view SqliteStatement::text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(kept_->handle, column));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(kept_->handle, column))};
}

std::span<const std::byte> SqliteStatement::bytes(int column) const {
  const auto* bytes = static_cast<const std::byte*>(sqlite3_column_blob(kept_->handle, column));
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(kept_->handle, column))};
}

SqliteConnection::Opened SqliteConnection::open(const SqliteLocation& from) {
  if (from.access == SqliteAccess::atRest) return openAtRest(from);
  auto connection = openToWrite(from);
  const bool lacksRoom =
      !connection && StoreError::is(*connection.error(), StoreError::Kind::diskFull);
  if (!lacksRoom || from.path.empty()) return connection;
  auto standIn = openAtRest(from);
  if (!standIn) return connection;
  (*standIn)->writeError_ = connection.error();
  return standIn;
}

SqliteConnection::Opened SqliteConnection::openFile(const SqliteLocation& from,
                                                    const std::string& name, int flags,
                                                    const char* system) {
  sqlite3* handle = nullptr;
  errno = 0;
  const int code = sqlite3_open_v2(name.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, system);
  std::unique_ptr<SqliteConnection> connection(new SqliteConnection(from.path, handle));
  if (code != SQLITE_OK) return sqliteFailure(handle, sqlite3_extended_errcode(handle), from.path);
  sqlite3_extended_result_codes(handle, 1);
  connection->patience_.timeout = from.busyTimeout;
  sqlite3_busy_handler(handle, waitForOthers, &connection->patience_);
  // Sorting needs no room on a disk.
  TRY(connection->run("PRAGMA temp_store=MEMORY"));
  return connection;
}

SqliteConnection::Opened SqliteConnection::openToWrite(const SqliteLocation& from) {
  const bool writes = from.access == SqliteAccess::readWrite;
  // SQLite gives the files beside it the permissions that this one has. Only a file that was not
  // there is opened here: closing a handle would give up the locks of a database in use.
  if (writes && !from.path.empty()) (void)NSFileHandle::open(from.path, O_RDWR | O_CREAT | O_EXCL);
  auto connection =
      openFile(from, from.path.empty() ? ":memory:" : from.path.string(),
               writes ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE : SQLITE_OPEN_READONLY);
  if (!connection || !writes) return connection;
  if (!from.path.empty()) {
    TRY((*connection)->useWriteAheadLog(from.applicationID));
  }
  // A commit has reached the disk when it returns.
  TRY((*connection)->run("PRAGMA synchronous=FULL"));
  return connection;
}

/// Readers and the one writer never wait for each other then. A file that is new gets its
/// application's number first: from the beginning it stands in the file itself.
Result<void> SqliteConnection::useWriteAheadLog(std::int64_t applicationID) {
  if (TRY(text("PRAGMA journal_mode")) == "wal") return {};
  // Of several processes that make the file at once, SQLite would refuse all but one.
  const auto alone = FileLock::exclusiveOfFolder(path_.parent_path());
  if (TRY(integer("PRAGMA application_id")) != applicationID) {
    TRY(run("PRAGMA application_id=" + std::to_string(applicationID)));
  }
  const std::string set = TRY(text("PRAGMA journal_mode=WAL"));
  if (set == "wal") return {};
  return failure<StoreError>(
      StoreError::Kind::cannotOpen,
      "\"" + path_.string() + "\": there can be no write-ahead log, only \"" + set + "\"");
}

SqliteConnection::Opened SqliteConnection::openAtRest(const SqliteLocation& from) {
  const AtRest file = atRest(from.path, from.ignoresLog);
  auto connection = openFile(from, file.name, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, file.system);
  if (!connection) return connection;
  (*connection)->abandon();
  // The index of the log lies in memory then, and not in a file "-shm".
  TRY((*connection)->run("PRAGMA locking_mode=EXCLUSIVE"));
  (*connection)->writeError_ = std::make_shared<StoreError>(
      StoreError::Kind::readOnly, "\"" + from.path.string() + "\" is open for reading only");
  return connection;
}

void SqliteConnection::abandon() {
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

Result<std::string> SqliteConnection::text(std::string_view sql) {
  auto statement = TRY(prepare(sql));
  (void)TRY(statement.step());
  return std::string(statement.text(0));
}

SqliteConnection::~SqliteConnection() {
  for (const auto& [text, statement] : statements_) sqlite3_finalize(statement->handle);
  sqlite3_close(handle_);
}

Result<sqlite3_stmt*> SqliteConnection::compile(std::string_view sql) const {
  sqlite3_stmt* statement = nullptr;
  errno = 0;
  const int code = sqlite3_prepare_v3(handle_, sql.data(), static_cast<int>(sql.size()),
                                      SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  if (code != SQLITE_OK) return sqliteFailure(handle_, code, path_);
  return statement;
}

Result<void> SqliteConnection::copyTo(const std::filesystem::path& to) {
  (void)TRY(NSFileHandle::open(to, O_RDWR | O_CREAT | O_EXCL));
  const auto copy = TRY(openFile({.path = to}, to.string(), SQLITE_OPEN_READWRITE));
  sqlite3_backup* const backup = sqlite3_backup_init(copy->handle_, "main", handle_, "main");
  constexpr int allPages = -1;
  const int code = backup != nullptr ? sqlite3_backup_step(backup, allPages) : SQLITE_ERROR;
  sqlite3_backup_finish(backup);
  if (code != SQLITE_DONE) return sqliteFailure(copy->handle_, code, to);
  return {};
}

Result<SqliteStatement> SqliteConnection::prepare(std::string_view sql) {
  constexpr std::size_t mostStatements = 256;
  const auto known = statements_.find(sql);
  const bool isKnown = known != statements_.end();
  if (isKnown && !known->second->isInUse) return SqliteStatement(*known->second);
  auto handle = compile(sql);
  if (!handle) return std::unexpected(std::move(handle.error()));
  auto kept = std::make_unique<SqliteStatement::Kept>(
      SqliteStatement::Kept{.handle = *handle, .path = &path_, .isTransient = isKnown});
  if (isKnown) return SqliteStatement(*kept.release());
  if (statements_.size() >= mostStatements) dropIdleStatements();
  return SqliteStatement(*statements_.emplace(sql, std::move(kept)).first->second);
}

void SqliteConnection::dropIdleStatements() {
  std::erase_if(statements_, [](const auto& entry) {
    if (entry.second->isInUse) return false;
    sqlite3_finalize(entry.second->handle);
    return true;
  });
}

std::int64_t SqliteConnection::changes() const {
  return sqlite3_changes64(handle_);
}

Result<SqliteTransaction> SqliteTransaction::begin(SqliteConnection& connection) {
  if (connection.writeError() != nullptr) return std::unexpected(connection.writeError());
  TRY(connection.run("BEGIN IMMEDIATE"));
  return SqliteTransaction(connection);
}

Result<void> SqliteTransaction::commit() {
  auto committed = connection_->run("COMMIT");
  if (committed) connection_ = nullptr;
  return committed;
}

SqliteTransaction::~SqliteTransaction() {
  // Where SQLite has undone the transaction itself, there is nothing left to do.
  if (connection_ != nullptr) (void)connection_->run("ROLLBACK");
}

std::string sqlName(std::string_view name) {
  std::string text = "\"";
  for (const char c : name) text.append(c == '"' ? 2 : 1, c);
  return text + '"';
}

}  // namespace platform
