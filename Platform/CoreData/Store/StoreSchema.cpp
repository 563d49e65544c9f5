#include "CoreData/Store/StoreSchema.h"

#include "Foundation/Text/String.h"
#include "Foundation/Values/Hasher.h"
#include "Foundation/Values/Try.h"

#include <set>

namespace platform {
namespace {

using Slot = NSEntityDescription::Slot;
using Storage = NSRelationshipDescription::Storage;

constexpr std::int64_t layoutVersion = 1;

constexpr const char* foreign = "belongs to another program";

constexpr const char* layout[] = {
    "CREATE TABLE _metadata (key PRIMARY KEY, value) WITHOUT ROWID",
    "CREATE TABLE _entity (name TEXT PRIMARY KEY, lastKey INTEGER NOT NULL) WITHOUT ROWID",
    "CREATE TABLE _history (pk INTEGER PRIMARY KEY, timestamp REAL NOT NULL, author TEXT, "
    "contextName TEXT)",
    "CREATE INDEX _history_timestamp ON _history (timestamp)",
    "CREATE TABLE _change (history INTEGER NOT NULL REFERENCES _history (pk), entity TEXT NOT "
    "NULL, kind TEXT NOT NULL, keys TEXT NOT NULL, PRIMARY KEY (history, entity, kind)) "
    "WITHOUT ROWID",
    "PRAGMA user_version = 1",
};

const char* typeOf(const Slot& slot) {
  using enum NSAttributeType;
  if (slot.relationship != nullptr) return "INTEGER";
  switch (slot.type) {
    case double_:
    case date:
      return "REAL";
    case string:
      return "TEXT";
    case binary:
    case uuid:
    case transformable:
      return "BLOB";
    default:
      return "INTEGER";
  }
}

std::string literal(const PropertyValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return std::to_string(*integer);
  if (const auto* real = std::get_if<double>(&value)) return stringWithFormat("%.17g", *real);
  if (const auto* text = std::get_if<std::string>(&value)) {
    std::string quotedText = "'";
    for (const char c : *text) quotedText.append(c == '\'' ? 2 : 1, c);
    return quotedText + "'";
  }
  return "NULL";
}

std::string definition(const Slot& slot) {
  std::string text = sqlName(slot.name) + " " + typeOf(slot);
  if (slot.relationship != nullptr) {
    text += " REFERENCES " + sqlName(slot.relationship->destinationName) + " (pk)";
  }
  if (!isNull(slot.defaultValue)) text += " DEFAULT " + literal(slot.defaultValue);
  return text;
}

std::string tableDefinition(const NSEntityDescription& entity) {
  std::string sql = "CREATE TABLE " + sqlName(entity.name()) +
                    " (pk INTEGER PRIMARY KEY, version INTEGER NOT NULL DEFAULT 1";
  for (const Slot& slot : entity.slots()) sql += ", " + definition(slot);
  return sql + ")";
}

std::string indexDefinition(const NSEntityDescription& entity,
                            const std::vector<std::string>& names) {
  std::string label = entity.name();
  std::string columns;
  for (std::string_view name : names) {
    label += "." + std::string(name);
    const bool isDescending = name.starts_with('-');
    if (isDescending) name.remove_prefix(1);
    columns += (columns.empty() ? "" : ", ") + sqlName(name) + (isDescending ? " DESC" : "");
  }
  return "CREATE INDEX IF NOT EXISTS " + sqlName(label) + " ON " + sqlName(entity.name()) + " (" +
         columns + ")";
}

/// The declared indexes, and one for each to-one relation that none of them begins with: the other
/// side is read by it.
std::vector<std::string> indexDefinitions(const NSEntityDescription& entity) {
  std::vector<std::string> all;
  std::set<std::string> first;
  for (const auto& names : entity.indexes()) {
    all.push_back(indexDefinition(entity, names));
    first.insert(names.front());
  }
  for (const Slot& slot : entity.slots()) {
    if (slot.relationship != nullptr && !first.contains(slot.name)) {
      all.push_back(indexDefinition(entity, {slot.name}));
    }
  }
  return all;
}

std::vector<std::string> linkDefinitions(const NSEntityDescription& entity) {
  std::vector<std::string> all;
  for (const auto& relationship : entity.relationships()) {
    if (relationship.storage != Storage::links || !relationship.isFirstInLinks) continue;
    const std::string table = sqlName(relationship.linkTable);
    all.push_back("CREATE TABLE IF NOT EXISTS " + table + " (first INTEGER NOT NULL REFERENCES " +
                  sqlName(entity.name()) + " (pk), second INTEGER NOT NULL REFERENCES " +
                  sqlName(relationship.destinationName) +
                  " (pk), PRIMARY KEY (first, second)) WITHOUT ROWID");
    all.push_back("CREATE INDEX IF NOT EXISTS " + sqlName(relationship.linkTable + ".second") +
                  " ON " + table + " (second, first)");
  }
  return all;
}

/// What must be there besides the tables' columns.
std::vector<std::string> additions(const NSEntityDescription& entity) {
  std::vector<std::string> all = indexDefinitions(entity);
  for (std::string& sql : linkDefinitions(entity)) all.push_back(std::move(sql));
  all.push_back("INSERT OR IGNORE INTO _entity VALUES (" + literal(entity.name()) + ", 0)");
  return all;
}

/// Changes with every change of the model. A file remembers those of the models that it was
/// completed for, so that opening it costs one look.
std::int64_t fingerprint(const NSManagedObjectModel& model) {
  Hasher hasher;
  for (const NSEntityDescription* entity : model.entities()) {
    hasher.combine(tableDefinition(*entity), additions(*entity));
  }
  return static_cast<std::int64_t>(hasher.finalize());
}

Result<std::set<std::string>> columnsOf(SqliteConnection& connection, const std::string& table) {
  auto query = TRY(connection.prepare("SELECT name FROM pragma_table_info(?)"));
  query.bind(1, std::string_view(table));
  std::set<std::string> names;
  for (;;) {
    const auto row = TRY(query.step());
    if (!row) return names;
    names.emplace(query.text(0));
  }
}

/// What is in the temporary schema goes before what the file has under that name.
Result<void> showWhole(SqliteConnection& connection, const NSEntityDescription& entity,
                       const std::set<std::string>& present) {
  const std::string name = sqlName(entity.name());
  std::string lacking;
  for (const Slot& slot : entity.slots()) {
    if (!present.contains(slot.name)) lacking += ", NULL AS " + sqlName(slot.name);
  }
  if (lacking.empty()) return {};
  const std::string source = present.empty() ? "NULL AS pk, NULL AS version" + lacking + " WHERE 0"
                                             : "*" + lacking + " FROM main." + name;
  return connection.run("CREATE TEMP VIEW " + name + " AS SELECT " + source);
}

Result<void> showLinks(SqliteConnection& connection,
                       const NSRelationshipDescription& relationship) {
  if (relationship.storage != Storage::links || !relationship.isFirstInLinks) return {};
  const auto present = columnsOf(connection, relationship.linkTable);
  if (!present) return std::unexpected(present.error());
  if (!present->empty()) return {};
  return connection.run("CREATE TEMP VIEW " + sqlName(relationship.linkTable) +
                        " AS SELECT NULL AS first, NULL AS second WHERE 0");
}

Result<void> completeTable(SqliteConnection& connection, const NSEntityDescription& entity) {
  const auto present = TRY(columnsOf(connection, entity.name()));
  if (present.empty()) return connection.run(tableDefinition(entity));
  for (const Slot& slot : entity.slots()) {
    if (present.contains(slot.name)) continue;
    const std::string add = " ADD COLUMN " + definition(slot);
    TRY(connection.run("ALTER TABLE " + sqlName(entity.name()) + add));
  }
  return {};
}

Result<void> complete(SqliteConnection& connection, const NSManagedObjectModel& model) {
  for (const NSEntityDescription* entity : model.entities()) {
    TRY(completeTable(connection, *entity));
  }
  for (const NSEntityDescription* entity : model.entities()) {
    for (const std::string& sql : additions(*entity)) {
      TRY(connection.run(sql));
    }
  }
  TRY(markStore(connection));
  return connection.run("INSERT INTO _metadata VALUES (?, 1)", fingerprint(model));
}

std::unexpected<ErrorPtr> refusal(StoreError::Kind kind, const SqliteConnection& connection,
                                  const char* reason) {
  return failure<StoreError>(kind, "\"" + connection.path().string() + "\" " + reason);
}

/// Fails for a newer one.
Result<std::int64_t> layoutOf(SqliteConnection& connection) {
  const auto version = TRY(connection.integer("PRAGMA user_version"));
  if (version.value_or(0) > layoutVersion) {
    return refusal(StoreError::Kind::incompatible, connection,
                   "was made by a newer version of this program");
  }
  return version.value_or(0);
}

/// Whether the file was completed for this model before. Nothing is ever taken away again.
Result<bool> isComplete(SqliteConnection& connection, const NSManagedObjectModel& model) {
  const auto version = TRY(layoutOf(connection));
  if (version == 0) return false;
  const auto known =
      TRY(connection.integer("SELECT value FROM _metadata WHERE key = ?", fingerprint(model)));
  return known.has_value();
}

Result<void> createLayout(SqliteConnection& connection) {
  const auto tables = TRY(connection.integer("SELECT count(*) FROM sqlite_master"));
  if (tables != 0) return refusal(StoreError::Kind::notADatabase, connection, foreign);
  for (const char* sql : layout) {
    TRY(connection.run(sql));
  }
  return {};
}

}  // namespace

EntityTable::EntityTable(const NSEntityDescription& entity) : name(sqlName(entity.name())) {
  std::string slots;
  std::string marks;
  for (const Slot& slot : entity.slots()) {
    slots += ", " + sqlName(slot.name);
    marks += ", ?";
  }
  columns = "pk, version" + slots;
  selectRow = "SELECT " + columns + " FROM " + name + " WHERE pk = ?";
  insertRow = "INSERT INTO " + name + " (pk" + slots + ") VALUES (?" + marks + ")";
  deleteRow = "DELETE FROM " + name + " WHERE pk = ?";
  rowVersion = "SELECT version FROM " + name + " WHERE pk = ?";
  reserveKeys = "UPDATE _entity SET lastKey = max(lastKey, (SELECT ifnull(max(pk), 0) FROM " +
                name + ")) + ? WHERE name = " + literal(entity.name()) + " RETURNING lastKey";
}

Result<void> recognizeStore(SqliteConnection& connection) {
  const auto application = TRY(connection.integer("PRAGMA application_id"));
  const auto version = layoutOf(connection);
  // These stand on the file's first page. More is not read of a file that may be in use.
  if (application == storeApplicationID) {
    return version ? Result<void>() : std::unexpected(version.error());
  }
  const auto tables = TRY(connection.integer("SELECT count(*) FROM sqlite_master"));
  const auto metadata = TRY(connection.integer(
      "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = '_metadata'"));
  const bool isStore = application == 0 && (metadata > 0 || tables == 0);
  if (isStore && !version) return std::unexpected(version.error());
  if (isStore && (metadata > 0 || *version == 0)) return {};
  return refusal(StoreError::Kind::notADatabase, connection, foreign);
}

Result<void> markStore(SqliteConnection& connection) {
  const auto application = TRY(connection.integer("PRAGMA application_id"));
  if (application != 0) return {};
  return connection.run("PRAGMA application_id=" + std::to_string(storeApplicationID));
}

Result<void> completeForReading(SqliteConnection& connection, const NSManagedObjectModel& model) {
  const auto version = TRY(layoutOf(connection));
  if (version == 0) {
    return refusal(StoreError::Kind::notADatabase, connection, "is empty: no store was made in it");
  }
  for (const NSEntityDescription* entity : model.entities()) {
    const auto present = TRY(columnsOf(connection, entity->name()));
    TRY(showWhole(connection, *entity, present));
    for (const auto& relationship : entity->relationships()) {
      TRY(showLinks(connection, relationship));
    }
  }
  return {};
}

Result<void> completeSchema(SqliteConnection& connection, const NSManagedObjectModel& model,
                            bool mayComplete) {
  auto done = isComplete(connection, model);
  if (!done) return std::unexpected(done.error());
  if (*done) return {};
  auto transaction = TRY(SqliteTransaction::begin(connection));
  done = isComplete(connection, model);  // another process may have been quicker
  if (!done) return std::unexpected(done.error());
  if (*done) return {};
  const auto version = TRY(connection.integer("PRAGMA user_version"));
  if (version == 0) {
    TRY(createLayout(connection));
  } else if (!mayComplete) {
    return failure<StoreError>(StoreError::Kind::incompatible,
                               "the store is older than the model and may not be completed");
  }
  TRY(complete(connection, model));
  return transaction.commit();
}

}  // namespace platform
