#include "CoreData/StoreHistory.h"

#include "CoreData/FetchPlan.h"
#include "CoreData/NSManagedObjectContext.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <ranges>

namespace platform {
namespace {

enum class ChangeKind { inserted, updated, deleted };

constexpr auto rawValues(std::type_identity<ChangeKind>) {
  return caseNames<ChangeKind::deleted>();
}

/// The table of transactions, as an entity that predicates can be asked about.
struct TransactionEntity {
  NSEntityDescription description{"_history"};
  Attribute<Date> timestamp{description, "timestamp"};
  Attribute<std::optional<std::string>> author{description, "author"};
  Attribute<std::optional<std::string>> contextName{description, "contextName"};
  NSManagedObjectModel model{{&description}};
};

const TransactionEntity& transactionEntity() {
  static const auto* entity = new TransactionEntity;
  return *entity;
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
  auto query = connection.prepare("SELECT max(timestamp) FROM _history");
  if (!query) return std::unexpected(query.error());
  const auto row = query->step();
  if (!row) return std::unexpected(row.error());
  const double now = Date::now().timeIntervalSinceReferenceDate();
  if (query->isNull(0)) return now;
  return std::max(now, std::nextafter(query->real(0), std::numeric_limits<double>::infinity()));
}

Result<void> readChanges(SqliteConnection& connection, const NSManagedObjectModel& model,
                         NSPersistentHistoryTransaction& transaction) {
  auto query = connection.prepare(
      "SELECT entity, kind, keys FROM _change WHERE history = ? ORDER BY entity, kind");
  if (!query) return std::unexpected(query.error());
  query->bind(1, transaction.transactionNumber);
  for (;;) {
    const auto row = query->step();
    if (!row) return std::unexpected(row.error());
    if (!*row) return {};
    const NSEntityDescription* entity = model.entity(query->text(0));
    const auto kind = fromRawValue<ChangeKind>(query->text(1));
    if (entity == nullptr || !kind) continue;  // a newer program's
    auto& list = *kind == ChangeKind::inserted  ? transaction.inserted
                 : *kind == ChangeKind::updated ? transaction.updated
                                                : transaction.deleted;
    for (const std::int64_t key : keysOf(query->text(2))) list.push_back({entity, key});
  }
}

std::optional<std::string> textOrNone(const SqliteStatement& query, int column) {
  if (query.isNull(column)) return std::nullopt;
  return std::string(query.text(column));
}

PropertyValue textOrNull(const std::string& text) {
  return text.empty() ? PropertyValue() : PropertyValue(text);
}

}  // namespace

Notification NSPersistentHistoryTransaction::objectIDNotification() const {
  return notificationOf(*this);
}

NSFetchRequest NSPersistentHistoryTransaction::fetchRequest() {
  return NSFetchRequest(entityDescription().name());
}

const NSEntityDescription& NSPersistentHistoryTransaction::entityDescription() {
  return transactionEntity().description;
}

Notification StoreChanges::notification() const {
  return notificationOf(*this);
}

Result<std::int64_t> newestTransaction(SqliteConnection& connection) {
  const auto newest = connection.integer("SELECT max(pk) FROM _history");
  if (!newest) return std::unexpected(newest.error());
  return newest->value_or(0);
}

Result<std::int64_t> appendTransaction(SqliteConnection& connection, const StoreChanges& changes,
                                       const std::string& author, const std::string& contextName) {
  const auto newest = newestTransaction(connection);
  if (!newest) return newest;
  const std::int64_t number = *newest + 1;
  const auto timestamp = nextTimestamp(connection);
  if (!timestamp) return std::unexpected(timestamp.error());
  const PropertyValue authorValue = textOrNull(author);
  const PropertyValue nameValue = textOrNull(contextName);
  auto done = connection.run(
      "INSERT INTO _history (pk, timestamp, author, contextName) VALUES (?, ?, ?, ?)", number,
      *timestamp, authorValue, nameValue);
  if (done) done = appendChanges(connection, number, ChangeKind::inserted, changes.inserted);
  if (done) done = appendChanges(connection, number, ChangeKind::updated, changes.updated);
  if (done) done = appendChanges(connection, number, ChangeKind::deleted, changes.deleted);
  if (!done) return std::unexpected(done.error());
  return number;
}

Result<NSPersistentHistoryResult> readHistory(SqliteConnection& connection,
                                              const NSManagedObjectModel& model,
                                              const NSPersistentHistoryChangeRequest& request) {
  NSFetchRequest whole = NSPersistentHistoryTransaction::fetchRequest();
  std::vector<NSPredicate> parts{NSPredicate::format("timestamp > %@", {request.after})};
  if (request.fetchRequest && request.fetchRequest->predicate()) {
    parts.push_back(*request.fetchRequest->predicate());
  }
  whole.setPredicate(NSCompoundPredicate::andPredicateWithSubpredicates(std::move(parts)));
  whole.setSortDescriptors({{"timestamp"}});
  const auto plan = FetchPlan::make(whole, NSPersistentHistoryTransaction::entityDescription());
  if (!plan) return std::unexpected(plan.error());
  const std::size_t limit = request.fetchRequest ? request.fetchRequest->fetchLimit() : 0;
  const SqlText sql = plan->select("pk, timestamp, author, contextName", limit);
  auto query = connection.prepare(sql.text);
  if (!query) return std::unexpected(query.error());
  for (std::size_t i = 0; i < sql.values.size(); ++i) {
    query->bind(static_cast<int>(i) + 1, sql.values[i]);
  }
  NSPersistentHistoryResult result;
  for (;;) {
    const auto row = query->step();
    if (!row) return std::unexpected(row.error());
    if (!*row) return result;
    auto& transaction = result.transactions.emplace_back(
        NSPersistentHistoryTransaction{.transactionNumber = query->integer(0),
                                       .timestamp = Date::sinceReferenceDate(query->real(1)),
                                       .author = textOrNone(*query, 2),
                                       .contextName = textOrNone(*query, 3)});
    if (auto read = readChanges(connection, model, transaction); !read) {
      return std::unexpected(read.error());
    }
  }
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

std::vector<std::int64_t> keysOf(std::string_view ranges) {
  std::vector<std::int64_t> keys;
  for (const auto part : ranges | std::views::split(',')) {
    const std::string_view range(part.begin(), part.end());
    std::int64_t first = 0;
    const char* end = range.data() + range.size();
    const char* after = std::from_chars(range.data(), end, first).ptr;
    std::int64_t last = first;
    if (after != end && *after == '-') std::from_chars(after + 1, end, last);
    for (std::int64_t key = first; key <= last; ++key) keys.push_back(key);
  }
  return keys;
}

}  // namespace platform
