#pragma once

#include "CoreData/Model/NSEntityDescription.h"
#include "SQLite/Sqlite.h"

namespace platform {

/// Gives a value to a parameter, for which it must live until the statement has run.
void bindValue(SqliteStatement& statement, int parameter, const PropertyValue& value);
void bindValue(SqliteStatement& statement, int parameter, PropertyValue&& value) = delete;

/// The values of an entity's slots, from a column on, whatever form the file has them in.
/// \param place As many empty values.
void readValues(const SqliteStatement& row, const NSEntityDescription& entity, int column,
                PropertyValue* place);

}  // namespace platform
