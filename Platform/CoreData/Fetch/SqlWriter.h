#pragma once

#include "CoreData/Fetch/FetchPlan.h"

namespace platform {

/// Writes a query on an entity's table, piece by piece. Each relation on a key path becomes a
/// subquery that follows it.
class SqlWriter {
 public:
  SqlWriter(const NSEntityDescription& entity, std::string_view columns);

  void write(std::string_view sql) { sql_.text += sql; }
  void write(const BoundPredicate& predicate);
  void write(const BoundKeyPath& path) { writeCompared(path, 0, 0); }

  [[nodiscard]] SqlText take() && { return std::move(sql_); }

 private:
  void writeCompound(const BoundPredicate& predicate, const NSPredicate::Compound& compound);
  void writeCondition(const BoundPredicate& predicate, std::size_t from, int row);
  void writeComparison(const BoundPredicate& predicate, std::size_t from, int row);
  void writeIn(const BoundPredicate& predicate, std::size_t from, int row);
  void writeCompared(const BoundKeyPath& path, std::size_t from, int row);
  void writeValue(const BoundKeyPath& path, std::size_t from, int row);
  int writeSource(const NSRelationshipDescription& relationship, int row);
  void writeColumn(int row, std::string_view name);
  void writeParameter(const PropertyValue& value);

  SqlText sql_;
  int rows_ = 0;  // how many rows have a name: t0 is the entity's own
};

}  // namespace platform
