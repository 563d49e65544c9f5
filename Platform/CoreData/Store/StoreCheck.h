#pragma once

#include "CoreData/Model/NSManagedObjectModel.h"
#include "SQLite/Sqlite.h"

namespace platform {

/// What is wrong with a store's file, a line each; nothing when it is sound: damage that SQLite
/// finds, relations that lead to no row, a history with gaps, without order or with keys that can't
/// be read, keys that were never given out.
[[nodiscard]] Result<std::vector<std::string>> checkStore(SqliteConnection& connection,
                                                          const NSManagedObjectModel& model);

}  // namespace platform
