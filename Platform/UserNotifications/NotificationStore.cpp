#include "UserNotifications/NotificationStore.h"

#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Values/Try.h"
#include "SQLite/LogOwner.h"
#include "SQLite/StoreError.h"

namespace platform {
namespace {

/// What SQLite's `application_id` is in a file of notifications: "vlno".
constexpr std::int64_t notificationApplicationID = 0x766C6E6F;
constexpr std::int64_t layout = 1;

bool isDamage(const Error& error) {
  return StoreError::is(error, StoreError::Kind::notADatabase);
}

}  // namespace

NotificationStore::NotificationStore(std::filesystem::path folder)
    : folder_(std::move(folder)),
      file_(folder_ / "notifications.sqlite"),
      olderFile_(folder_ / "notifications.json") {}

NotificationRecords NotificationStore::records() {
  NotificationRecords records;
  read([&](NotificationRows& rows) -> Result<void> {
    records.settings = rows.settings();
    records.categories = rows.categories();
    records.pending = TRY(rows.pending());
    records.delivered = TRY(rows.delivered());
    records.badge = rows.badge();
    return {};
  });
  return records;
}

void NotificationStore::read(const std::function<Result<void>(NotificationRows&)>& look) {
  if (const auto seen = this->look(look); !seen) {
    tell(*seen.error());
  }
}

/// A file that is not there is not made.
Result<void> NotificationStore::look(const std::function<Result<void>(NotificationRows&)>& look) {
  const bool isThere =
      NSFileManager::exists(file_.path()) || NSFileManager::exists(olderFile_.path());
  if (!isThere) return {};
  SqliteConnection* connection = TRY(connect());
  std::vector<std::string> problems;
  auto rows = TRY(NotificationRows::open(*connection, problems));
  const auto seen = look(rows);
  report(problems);
  if (seen) file_.forgetReport();
  return seen;
}

Result<void> NotificationStore::change(const std::function<Result<void>(NotificationRows&)>& edit) {
  auto changed = this->edit(edit);
  if (!changed && isDamage(*changed.error())) {
    tell(*changed.error());
    changed = moveAside();
    if (changed) changed = this->edit(edit);
  }
  if (!changed) tell(*changed.error());
  return changed;
}

Result<void> NotificationStore::edit(const std::function<Result<void>(NotificationRows&)>& edit) {
  SqliteConnection* connection = TRY(connect());
  auto transaction = TRY(SqliteTransaction::begin(*connection));
  std::vector<std::string> problems;
  auto rows = TRY(NotificationRows::open(*connection, problems));
  TRY(edit(rows));
  TRY(rows.finish());
  TRY(transaction.commit());
  file_.forgetReport();
  report(problems);
  removeOrphans(*connection);
  return {};
}

/// To the file that has the name now.
Result<SqliteConnection*> NotificationStore::connect() {
  const bool isCurrent = connection_ && connection_->writeError() == nullptr &&
                         NSFileManager::identity(file_.path()) == identity_;
  if (isCurrent) return connection_.get();
  if (connection_) connection_->abandon();
  connection_.reset();
  identity_ = NSFileManager::identity(file_.path());
  connection_ = TRY(open());
  identity_ = NSFileManager::identity(file_.path());
  return connection_.get();
}

Result<std::unique_ptr<SqliteConnection>> NotificationStore::open() {
  TRY(NSFileManager::createDirectory(folder_));
  dropForeignLog(file_.path());
  auto connection = TRY(
      SqliteConnection::open({.path = file_.path(), .applicationID = notificationApplicationID}));
  const auto found = TRY(connection->integer("PRAGMA user_version")).value_or(0);
  if (found > layout) {
    return failure<StoreError>(StoreError::Kind::incompatible,
                               "\"" + file_.path().string() + "\" is of a newer version");
  }
  if (found < layout || NSFileManager::exists(olderFile_.path())) TRY(make(*connection));
  markLog(file_.path());
  return connection;
}

/// The older version's file is renamed last: a process that ends before has not taken it over, or
/// finds the tables made.
Result<void> NotificationStore::make(SqliteConnection& connection) {
  const bool isOlderThere = NSFileManager::exists(olderFile_.path());
  std::optional<FileLock> lock;
  if (isOlderThere) lock.emplace(TRY(olderFile_.lock()));
  const auto text = TRY(olderFile_.read());
  auto transaction = TRY(SqliteTransaction::begin(connection));
  const auto found = TRY(connection.integer("PRAGMA user_version")).value_or(0);
  std::vector<std::string> problems;
  if (found < layout) {
    TRY(NotificationRows::makeTables(connection));
    auto rows = TRY(NotificationRows::open(connection, problems));
    if (text) TRY(rows.takeOver(NotificationRecords::fromText(*text, problems), Date::now()));
    TRY(rows.finish());
    TRY(connection.run("PRAGMA user_version=" + std::to_string(layout)));
    TRY(transaction.commit());
  }
  if (!text) return {};
  if (!problems.empty()) {
    report(problems);
    return olderFile_.moveAside();
  }
  return NSFileManager::replaceItem(olderFile_.path().string() + ".old", olderFile_.path());
}

/// In a transaction, since a request that has such a copy may just be added again.
void NotificationStore::removeOrphans(SqliteConnection& connection) {
  const auto remove = [&]() -> Result<void> {
    if (!TRY(connection.integer("SELECT 1 FROM orphans LIMIT 1"))) return {};
    auto transaction = TRY(SqliteTransaction::begin(connection));
    {
      auto orphans = TRY(connection.prepare(
          "SELECT url FROM orphans WHERE url NOT IN (SELECT url FROM attachments)"));
      while (TRY(orphans.step())) {
        const std::filesystem::path copy(orphans.text(0));
        if (isOfThisStore(copy)) (void)NSFileManager::removeItem(copy);
      }
    }
    TRY(connection.run("DELETE FROM orphans"));
    return transaction.commit();
  };
  (void)remove();  // else after the next change
}

/// A row that someone has written must not make us remove anything else.
bool NotificationStore::isOfThisStore(const std::filesystem::path& attachment) const {
  return attachment.parent_path() == attachmentFolder(folder_) &&
         NSFileManager::isFileName(attachment.filename().string());
}

/// Unless another process has just done so.
Result<void> NotificationStore::moveAside() {
  if (connection_) connection_->abandon();
  connection_.reset();
  const auto alone = TRY(FileLock::exclusiveOfFolder(folder_));
  if (NSFileManager::identity(file_.path()) != identity_) return {};
  const std::string path = file_.path().string();
  (void)SharedFile(path + "-wal").moveAside();
  (void)NSFileManager::removeItem(path + "-shm");
  return file_.moveAside();
}

void NotificationStore::tell(const Error& error) {
  file_.reportOnce("notifications can't be kept: " + error.localizedDescription());
}

void NotificationStore::report(const std::vector<std::string>& problems) {
  std::string told;
  for (const auto& problem : problems) {
    if (reported_.insert(problem).second) told += "; " + problem;
  }
  if (told.empty()) return;
  Environment::current().report("a part of \"" + file_.path().string() + "\" can't be read" + told);
}

}  // namespace platform
