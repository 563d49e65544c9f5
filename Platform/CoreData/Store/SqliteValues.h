#pragma once

#include "CoreData/Model/NSEntityDescription.h"
#include "SQLite/Sqlite.h"

namespace platform {

/// Gives a value to a parameter, for which it must live until the statement has run.
void bindValue(SqliteStatement& statement, int parameter, const PropertyValue& value);
void bindValue(SqliteStatement& statement, int parameter, PropertyValue&& value) = delete;

/// The value of one slot, whatever form the file has it in.
/// \param into An empty value.
void readValue(const SqliteStatement& row, const NSEntityDescription::Slot& slot, int column,
               PropertyValue& into);

/// The values of an entity's slots, from a column on.
/// \param place As many empty values.
void readValues(const SqliteStatement& row, const NSEntityDescription& entity, int column,
                PropertyValue* place);

}  // namespace platform
