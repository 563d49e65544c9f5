#include "CoreData/Store/StoreCheck.h"

#include "CoreData/Store/StoreHistory.h"
#include "Foundation/Values/Try.h"

namespace platform {
namespace {

/// Adds a finding for each row of a query: its first column, behind `what`.
Result<void> addRows(SqliteConnection& connection, const std::string& sql, const std::string& what,
                     std::vector<std::string>& findings) {
  auto query = TRY(connection.prepare(sql));
  for (;;) {
    const auto row = TRY(query.step());
    if (!row) return {};
    findings.push_back(what + std::string(query.text(0)));
  }
}

Result<void> addUnreadableChanges(SqliteConnection& connection,
                                  std::vector<std::string>& findings) {
  constexpr std::size_t mostTold = 100;
  auto query = TRY(connection.prepare(
      "SELECT history, entity, keys, lastKey FROM _change LEFT JOIN _entity ON name = entity "
      "ORDER BY history, entity, kind"));
  for (;;) {
    const auto row = TRY(query.step());
    if (!row) return {};
    const std::string_view keys = query.text(2);
    if (keysOf(keys, query.integer(3))) continue;
    findings.push_back("history can't be read: " + std::string(query.text(0)) + " " +
                       std::string(query.text(1)) + " " + std::string(keys.substr(0, mostTold)));
  }
}

}  // namespace

Result<std::vector<std::string>> checkStore(SqliteConnection& connection,
                                            const NSManagedObjectModel& model) {
  std::vector<std::string> findings;
  const auto add = [&](const std::string& sql, const std::string& what) {
    return addRows(connection, sql, what, findings);
  };
  auto done = add("SELECT * FROM pragma_integrity_check WHERE integrity_check != 'ok'", "damage: ");
  if (done) {
    done =
        add("SELECT \"table\" || ' ' || ifnull(rowid, '') || ' → ' || parent FROM "
            "pragma_foreign_key_check",
            "a relation leads nowhere: ");
  }
  if (done) {
    // Its beginning may have been dropped, for it is kept only so long.
    done =
        add("SELECT pk FROM _history WHERE pk > (SELECT min(pk) FROM _history) "
            "AND pk - 1 NOT IN (SELECT pk FROM _history)",
            "history has a gap before ");
  }
  if (done) {
    done =
        add("SELECT one.pk FROM _history one JOIN _history other ON other.pk = one.pk - 1 "
            "WHERE one.timestamp <= other.timestamp",
            "history goes back in time at ");
  }
  if (done) done = addUnreadableChanges(connection, findings);
  for (const NSEntityDescription* entity : model.entities()) {
    if (!done) break;
    done = add("SELECT max(pk) FROM " + sqlName(entity->name()) +
                   " HAVING max(pk) > (SELECT lastKey FROM _entity WHERE name = '" +
                   entity->name() + "')",
               entity->name() + " has a row beyond its last key: ");
  }
  if (!done) return std::unexpected(done.error());
  return findings;
}

}  // namespace platform
