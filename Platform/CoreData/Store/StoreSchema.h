#pragma once

#include "CoreData/Model/NSManagedObjectModel.h"
#include "SQLite/Sqlite.h"

namespace platform {

/// The SQL that belongs to one entity. Each entity has a table of its name: `pk`, `version` (counts
/// the writes of a row, from 1), then a column for each slot.
struct EntityTable {
  explicit EntityTable(const NSEntityDescription& entity);

  std::string name;       ///< Quoted.
  std::string columns;    ///< pk, version and the slots, to follow a SELECT.
  std::string selectRow;  ///< By primary key.
  std::string insertRow;  ///< pk, then the slots; the version is 1.
  std::string deleteRow;
  std::string rowVersion;
  std::string reserveKeys;  ///< How many; what comes back is the last of them.
};

/// What SQLite's `application_id` is in a store's file: "vlro".
inline constexpr std::int64_t storeApplicationID = 0x766C726F;

/// Whether the file is a store, or an empty one that may become one; an error for another program's
/// database, and for a store of a newer layout. By SQLite's `application_id`; stores from before it
/// was set are known by their `_metadata`.
[[nodiscard]] Result<void> recognizeStore(SqliteConnection& connection);

/// For a connection that can't write: what the file lacks of the model reads as empty.
[[nodiscard]] Result<void> completeForReading(SqliteConnection& connection,
                                              const NSManagedObjectModel& model);

/// Marks a file from before `application_id` was set. Within a SQL transaction.
[[nodiscard]] Result<void> markStore(SqliteConnection& connection);

/// Brings a file to what the model needs: makes its tables when it is empty, adds what an older one
/// lacks, and leaves alone what the model doesn't know. A file of another program is refused.
/// \param mayComplete Whether an older file may be completed; otherwise that is an error.
[[nodiscard]] Result<void> completeSchema(SqliteConnection& connection,
                                          const NSManagedObjectModel& model, bool mayComplete);

}  // namespace platform
