#include "CoreData/Fetch/SqlWriter.h"

#include "CoreData/Store/Sqlite.h"

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

Form formOf(Operator comparison, bool rightIsNull, bool rightIsPath, bool ignoresCase) {
  switch (comparison) {
    case Operator::equal:
      // "IS" between a column and NULL or another column counts two nothings as equal; "=" goes by
      // an index wherever there is one.
      return {"", rightIsNull || rightIsPath ? " IS " : " = ", ""};
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
    case Operator::beginsWith:
      if (ignoresCase) return {"instr(lower(", "), lower(", ")) = 1"};
      return {"instr(", ", ", ") = 1"};
    default:
      if (ignoresCase) return {"instr(lower(", "), lower(", ")) > 0"};
      return {"instr(", ", ", ") > 0"};
  }
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
  const BoundKeyPath& path = predicate.paths[0];
  if (!path.isToMany) return writeComparison(predicate, from, row);
  const NSRelationshipDescription& relationship = *path.relationships[from];
  write(relationship.isToMany ? "EXISTS (SELECT 1" : "(SELECT ");
  SqlText outer = std::exchange(sql_, {});
  const int next = writeSource(relationship, row);
  SqlText source = std::exchange(sql_, {});
  BoundPredicate rest = predicate;
  if (relationship.isToMany) rest.paths[0].isToMany = false;
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
  const BoundKeyPath& path = predicate.paths[0];
  if (comparison.comparison == Operator::in && predicate.paths.size() == 1) {
    return writeIn(predicate, from, row);
  }
  if (comparison.comparison == Operator::endsWith) {
    write(predicate.ignoresCase() ? "lower(substr(" : "(substr(");
    writeValue(path, from, row);
    write(", length(");
    writeValue(path, from, row);
    write(") - length(");
    writeRight(predicate);
    write(predicate.ignoresCase() ? ") + 1)) = lower(" : ") + 1)) = (");
    writeRight(predicate);
    return write(")");
  }
  const auto* values = std::get_if<PropertyValues>(&comparison.right);
  const Form form = formOf(
      comparison.comparison == Operator::in ? Operator::equal : comparison.comparison,
      values != nullptr && isNull(values->front()), values == nullptr, predicate.ignoresCase());
  write(form.before);
  writeCompared(path, from, row);
  write(form.between);
  writeRight(predicate);
  write(form.after);
}

void SqlWriter::writeIn(const BoundPredicate& predicate, std::size_t from, int row) {
  const auto& values =
      std::get<PropertyValues>(std::get<NSPredicate::Comparison>(*predicate.node).right);
  const BoundKeyPath& path = predicate.paths[0];
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

void SqlWriter::writeRight(const BoundPredicate& predicate) {
  if (predicate.paths.size() > 1) return writeCompared(predicate.paths[1], 0, 0);
  const auto& comparison = std::get<NSPredicate::Comparison>(*predicate.node);
  writeParameter(std::get<PropertyValues>(comparison.right).front());
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
  if (isLast && path.isCount) {
    write("count(*)");
    writeSource(relationship, row);
    return write(")");
  }
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
