#include "CoreData/Store/StoreHistory.h"

#include "CoreData/Context/NSManagedObjectContext.h"
#include "CoreData/Fetch/FetchPlan.h"
#include "CoreData/Store/SqliteValues.h"
#include "CoreData/Store/StoreSchema.h"
#include "Foundation/Values/Try.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <ranges>

namespace platform {
namespace {

constexpr std::size_t mostToldOfKeys = 100;

enum class ChangeKind { inserted, updated, deleted };

constexpr auto rawValues(std::type_identity<ChangeKind>) {
  return caseNames<ChangeKind::deleted>();
}

using TransactionAttributes = NSPersistentHistoryTransaction::Attributes;

/// The table of transactions, as an entity that predicates can be asked about.
const NSEntityDescription& transactionEntity() {
  static const auto* model = new NSManagedObjectModel({&TransactionAttributes::description});
  return *model->entities().front();
}

Notification notificationOf(const auto& changes) {
  const auto list = [](const auto& ids) {
    return std::vector<NSManagedObjectID>(ids.begin(), ids.end());
  };
  return {.name = NSManagedObjectContext::didMergeChangesObjectIDsNotification,
          .userInfo = {{NSInsertedObjectIDsKey, list(changes.inserted)},
                       {NSUpdatedObjectIDsKey, list(changes.updated)},
                       {NSDeletedObjectIDsKey, list(changes.deleted)}}};
}

Result<void> appendChanges(SqliteConnection& connection, std::int64_t number, ChangeKind kind,
                           const std::set<NSManagedObjectID>& ids) {
  for (auto id = ids.begin(); id != ids.end();) {
    const NSEntityDescription* entity = id->entity;
    std::vector<std::int64_t> keys;
    for (; id != ids.end() && id->entity == entity; ++id) keys.push_back(id->key);
    auto done = connection.run(
        "INSERT INTO _change (history, entity, kind, keys) VALUES (?, ?, ?, ?)", number,
        std::string_view(entity->name()), rawValue(kind), std::string_view(keyRanges(keys)));
    if (!done) return done;
  }
  return {};
}

/// A later one than any before, by as little as a number can be, where the clock doesn't give it.
Result<double> nextTimestamp(SqliteConnection& connection) {
  auto query = TRY(connection.prepare("SELECT max(timestamp) FROM _history"));
  (void)TRY(query.step());
  const double now = Date::now().timeIntervalSinceReferenceDate();
  if (query.isNull(0)) return now;
  return std::max(now, std::nextafter(query.real(0), std::numeric_limits<double>::infinity()));
}

/// Where somebody has put rows out of order, those in front of a newer one go, and no others.
Result<void> dropOldTransactions(SqliteConnection& connection) {
  const double limit = Date::now().timeIntervalSinceReferenceDate() - historyAge;
  const auto last = TRY(connection.integer(
      "SELECT max(pk) FROM (SELECT pk, timestamp FROM _history ORDER BY pk LIMIT 32) "
      "WHERE timestamp < ?",
      limit));
  if (!last) return {};
  auto done = connection.run("DELETE FROM _change WHERE history <= ?", *last);
  if (done) done = connection.run("DELETE FROM _history WHERE pk <= ?", *last);
  return done;
}

ErrorPtr damageOf(const SqliteConnection& connection,
                  const NSPersistentHistoryTransaction& transaction,
                  const NSEntityDescription& entity, std::string_view keys) {
  return std::make_shared<StoreError>(
      StoreError::Kind::notADatabase,
      "\"" + connection.path().string() + "\": the history is damaged: in save " +
          std::to_string(transaction.transactionNumber) + " \"" +
          std::string(keys.substr(0, mostToldOfKeys)) + "\" are no keys of " + entity.name());
}

Result<void> readChanges(SqliteConnection& connection, const NSManagedObjectModel& model,
                         NSPersistentHistoryTransaction& transaction, ErrorPtr& damage) {
  auto query = TRY(connection.prepare(
      "SELECT entity, kind, keys, lastKey FROM _change LEFT JOIN _entity ON name = entity "
      "WHERE history = ? ORDER BY entity, kind"));
  query.bind(1, transaction.transactionNumber);
  for (;;) {
    const auto row = TRY(query.step());
    if (!row) return {};
    const NSEntityDescription* entity = model.entity(query.text(0));
    const auto kind = fromRawValue<ChangeKind>(query.text(1));
    if (entity == nullptr || !kind) continue;  // a newer program's
    auto& list = *kind == ChangeKind::inserted  ? transaction.inserted
                 : *kind == ChangeKind::updated ? transaction.updated
                                                : transaction.deleted;
    const auto keys = keysOf(query.text(2), query.integer(3));
    if (!keys) {
      if (damage == nullptr) damage = damageOf(connection, transaction, *entity, query.text(2));
      continue;
    }
    for (const std::int64_t key : *keys) list.push_back({entity, key});
  }
}

/// Asked after the transactions were read, so that none is dropped unnoticed in between.
Result<bool> isKeptSince(SqliteConnection& connection, Date date) {
  auto query = TRY(connection.prepare("SELECT pk, timestamp FROM _history ORDER BY pk LIMIT 1"));
  const auto row = query.step();
  if (!row) return row;
  return !*row || query.integer(0) <= 1 || date.timeIntervalSinceReferenceDate() >= query.real(1);
}

std::optional<std::int64_t> wholeNumber(std::string_view text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [after, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && after == end ? std::optional(number) : std::nullopt;
}

std::optional<std::string> textOrNone(const SqliteStatement& query, int column) {
  if (query.isNull(column)) return std::nullopt;
  return std::string(query.text(column));
}

}  // namespace

Notification NSPersistentHistoryTransaction::objectIDNotification() const {
  return notificationOf(*this);
}

NSFetchRequest NSPersistentHistoryTransaction::fetchRequest() {
  return NSFetchRequest(Attributes::description.name());
}

void StoreChanges::add(const StoreChanges& later) {
  inserted.insert(later.inserted.begin(), later.inserted.end());
  for (const NSManagedObjectID id : later.updated) {
    if (!inserted.contains(id)) updated.insert(id);
  }
  for (const NSManagedObjectID id : later.deleted) {
    updated.erase(id);
    if (inserted.erase(id) == 0) deleted.insert(id);
  }
}

Notification StoreChanges::notification() const {
  return notificationOf(*this);
}

Result<std::int64_t> newestTransaction(SqliteConnection& connection) {
  const auto newest = TRY(connection.integer("SELECT max(pk) FROM _history"));
  return newest.value_or(0);
}

Result<std::int64_t> appendTransaction(SqliteConnection& connection, const StoreChanges& changes,
                                       const std::string& author, const std::string& contextName) {
  TRY(markStore(connection));
  const auto newest = newestTransaction(connection);
  if (!newest) return newest;
  const std::int64_t number = *newest + 1;
  const auto timestamp = TRY(nextTimestamp(connection));
  auto done = connection.run(
      "INSERT INTO _history (pk, timestamp, author, contextName) "
      "VALUES (?, ?, NULLIF(?, ''), NULLIF(?, ''))",
      number, timestamp, author, contextName);
  if (done) done = appendChanges(connection, number, ChangeKind::inserted, changes.inserted);
  if (done) done = appendChanges(connection, number, ChangeKind::updated, changes.updated);
  if (done) done = appendChanges(connection, number, ChangeKind::deleted, changes.deleted);
  if (done) done = dropOldTransactions(connection);
  if (!done) return std::unexpected(done.error());
  return number;
}

Result<NSPersistentHistoryResult> readHistory(SqliteConnection& connection,
                                              const NSManagedObjectModel& model,
                                              const NSPersistentHistoryChangeRequest& request) {
  NSFetchRequest whole = NSPersistentHistoryTransaction::fetchRequest();
  std::vector<NSPredicate> parts{TransactionAttributes::timestamp > request.after};
  if (request.fetchRequest && request.fetchRequest->predicate()) {
    parts.push_back(*request.fetchRequest->predicate());
  }
  whole.setPredicate(NSCompoundPredicate::andPredicateWithSubpredicates(std::move(parts)));
  whole.setSortDescriptors({TransactionAttributes::timestamp.ascending()});
  const auto plan = TRY(FetchPlan::make(whole, transactionEntity()));
  const std::size_t limit = request.fetchRequest ? request.fetchRequest->fetchLimit() : 0;
  const SqlText sql = plan.select("pk, timestamp, author, contextName", limit);
  auto query = TRY(connection.prepare(sql.text));
  for (std::size_t i = 0; i < sql.values.size(); ++i) {
    bindValue(query, static_cast<int>(i) + 1, sql.values[i]);
  }
  NSPersistentHistoryResult result;
  for (;;) {
    const auto row = TRY(query.step());
    if (!row) break;
    auto& transaction = result.transactions.emplace_back(
        NSPersistentHistoryTransaction{.transactionNumber = query.integer(0),
                                       .timestamp = Date::sinceReferenceDate(query.real(1)),
                                       .author = textOrNone(query, 2),
                                       .contextName = textOrNone(query, 3)});
    TRY(readChanges(connection, model, transaction, result.damage));
  }
  const auto isKept = TRY(isKeptSince(connection, request.after));
  result.isComplete = isKept && result.damage == nullptr;
  return result;
}

std::string keyRanges(const std::vector<std::int64_t>& keys) {
  std::string text;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const std::size_t first = i;
    while (i + 1 < keys.size() && keys[i + 1] == keys[i] + 1) ++i;
    if (!text.empty()) text += ',';
    text += std::to_string(keys[first]);
    if (i > first) text += '-' + std::to_string(keys[i]);
  }
  return text;
}

std::optional<std::vector<std::int64_t>> keysOf(std::string_view ranges, std::int64_t lastKey) {
  // However many were given out, no save fits into memory that touches more.
  constexpr std::size_t most = 1 << 24;
  std::vector<std::int64_t> keys;
  std::int64_t last = 0;
  for (const auto part : ranges | std::views::split(',')) {
    const std::string_view range(part.begin(), part.end());
    const std::size_t dash = range.find('-');
    const auto from = wholeNumber(range.substr(0, dash));
    const auto to = dash == range.npos ? from : wholeNumber(range.substr(dash + 1));
    if (!from || !to || *from <= last || *to < *from || *to > lastKey) return std::nullopt;
    last = *to;
    if (static_cast<std::uint64_t>(last - *from) >= most - keys.size()) return std::nullopt;
    for (std::int64_t key = *from; key <= last; ++key) keys.push_back(key);
  }
  return keys.empty() ? std::nullopt : std::optional(std::move(keys));
}

}  // namespace platform
