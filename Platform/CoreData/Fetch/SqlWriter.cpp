#include "CoreData/Fetch/SqlWriter.h"

#include "SQLite/Sqlite.h"

#include <algorithm>

namespace platform {
namespace {

using Operator = NSPredicate::Operator;
using Storage = NSRelationshipDescription::Storage;

std::string rowName(int row) {
  return "t" + std::to_string(row);
}

/// Around the left and before the right side.
struct Form {
  const char* before;
  const char* between;
  const char* after;
};

Form formOf(Operator comparison, bool rightIsNull, bool ignoresCase) {
  switch (comparison) {
    case Operator::equal:
      // "IS" counts two nothings as equal; "=" goes by an index wherever there is one.
      return {"", rightIsNull ? " IS " : " = ", ""};
    case Operator::notEqual:
      return {"", " IS NOT ", ""};
    case Operator::less:
      return {"", " < ", ""};
    case Operator::lessOrEqual:
      return {"", " <= ", ""};
    case Operator::greater:
      return {"", " > ", ""};
    case Operator::greaterOrEqual:
      return {"", " >= ", ""};
    case Operator::in:
    case Operator::beginsWith:
      break;
  }
  if (ignoresCase) return {"instr(lower(", "), lower(", ")) = 1"};
  return {"instr(", ", ", ") = 1"};
}

}  // namespace

SqlWriter::SqlWriter(const NSEntityDescription& entity, std::string_view columns) {
  write("SELECT ");
  write(columns);
  write(" FROM " + sqlName(entity.name()) + " " + rowName(0));
}

void SqlWriter::write(const BoundPredicate& predicate) {
  if (const auto* compound = std::get_if<NSPredicate::Compound>(predicate.node)) {
    return writeCompound(predicate, *compound);
  }
  writeCondition(predicate, 0, 0);
}

void SqlWriter::writeCompound(const BoundPredicate& predicate,
                              const NSPredicate::Compound& compound) {
  using enum NSPredicate::LogicalType;
  if (predicate.parts.empty()) return write(compound.type == and_ ? "1" : "0");
  const char* separator = "(";
  for (const BoundPredicate& part : predicate.parts) {
    write(std::exchange(separator, compound.type == and_ ? " AND " : " OR "));
    write(part);
  }
  // An unknown condition is a false one, whose opposite is true.
  write(compound.type == not_ ? ") IS NOT TRUE" : ")");
}

/// A comparison of what lies behind the relation `from`: behind a to-many one, whether there is an
/// object for which it holds.
void SqlWriter::writeCondition(const BoundPredicate& predicate, std::size_t from, int row) {
  const BoundKeyPath& path = *predicate.path;
  if (!path.isToMany) return writeComparison(predicate, from, row);
  const NSRelationshipDescription& relationship = *path.relationships[from];
  write(relationship.isToMany ? "EXISTS (SELECT 1" : "(SELECT ");
  SqlText outer = std::exchange(sql_, {});
  const int next = writeSource(relationship, row);
  SqlText source = std::exchange(sql_, {});
  BoundPredicate rest = predicate;
  if (relationship.isToMany) rest.path->isToMany = false;
  writeCondition(rest, from + 1, next);
  SqlText condition = std::exchange(sql_, std::move(outer));
  if (!relationship.isToMany) std::swap(source, condition);
  write(source.text + (relationship.isToMany ? " AND " : "") + condition.text + ")");
  for (const SqlText* part : {&source, &condition}) {
    sql_.values.insert(sql_.values.end(), part->values.begin(), part->values.end());
  }
}

void SqlWriter::writeComparison(const BoundPredicate& predicate, std::size_t from, int row) {
  const auto& comparison = std::get<NSPredicate::Comparison>(*predicate.node);
  if (comparison.comparison == Operator::in) return writeIn(predicate, from, row);
  const PropertyValue& value = comparison.values.front();
  const Form form = formOf(comparison.comparison, isNull(value), predicate.path->ignoresCase());
  write(form.before);
  writeCompared(*predicate.path, from, row);
  write(form.between);
  writeParameter(value);
  write(form.after);
}

void SqlWriter::writeIn(const BoundPredicate& predicate, std::size_t from, int row) {
  const auto& values = std::get<NSPredicate::Comparison>(*predicate.node).values;
  const BoundKeyPath& path = *predicate.path;
  const bool hasNull = std::ranges::any_of(values, isNull);
  write("(");
  writeCompared(path, from, row);
  write(" IN (");
  const char* separator = "";
  for (const PropertyValue& value : values) {
    if (isNull(value)) continue;  // IN finds none
    write(std::exchange(separator, ", "));
    writeParameter(value);
  }
  write(")");
  if (hasNull) {
    write(" OR ");
    writeValue(path, from, row);
    write(" IS NULL");
  }
  write(")");
}

void SqlWriter::writeCompared(const BoundKeyPath& path, std::size_t from, int row) {
  writeValue(path, from, row);
  if (path.ignoresCase()) write(" COLLATE NOCASE");
}

void SqlWriter::writeValue(const BoundKeyPath& path, std::size_t from, int row) {
  if (from == path.relationships.size()) {
    const bool isAttribute = path.attribute.has_value();
    return writeColumn(row, isAttribute ? path.end->slots()[*path.attribute].name : "pk");
  }
  const NSRelationshipDescription& relationship = *path.relationships[from];
  const bool isLast = from + 1 == path.relationships.size();
  if (isLast && !path.attribute && relationship.storage == Storage::own) {
    return writeColumn(row, relationship.name);
  }
  write("(SELECT ");
  SqlText outer = std::exchange(sql_, {});
  const int next = writeSource(relationship, row);
  SqlText source = std::exchange(sql_, std::move(outer));
  writeValue(path, from + 1, next);
  write(source.text);
  // Two processes may each have made the object of a to-one relation: the elder counts.
  if (relationship.storage == Storage::inverse) write(" ORDER BY " + rowName(next) + ".pk LIMIT 1");
  write(")");
}

/// " FROM … WHERE …": the rows that a relation leads to from `row`; returns the name they have.
int SqlWriter::writeSource(const NSRelationshipDescription& relationship, int row) {
  const int next = ++rows_;
  write(" FROM " + sqlName(relationship.destinationName) + " " + rowName(next));
  switch (relationship.storage) {
    case Storage::own:
      write(" WHERE " + rowName(next) + ".pk = ");
      writeColumn(row, relationship.name);
      break;
    case Storage::inverse:
      write(" WHERE ");
      writeColumn(next, relationship.inverseName);
      write(" = " + rowName(row) + ".pk");
      break;
    case Storage::links:
      const bool isFirst = relationship.isFirstInLinks;
      write(" WHERE " + rowName(next) + ".pk IN (SELECT " + (isFirst ? "second" : "first") +
            " FROM " + sqlName(relationship.linkTable) + " WHERE " +
            (isFirst ? "first" : "second") + " = " + rowName(row) + ".pk)");
      break;
  }
  return next;
}

void SqlWriter::writeColumn(int row, std::string_view name) {
  write(rowName(row) + "." + sqlName(name));
}

void SqlWriter::writeParameter(const PropertyValue& value) {
  write("?");
  sql_.values.push_back(value);
}

}  // namespace platform
