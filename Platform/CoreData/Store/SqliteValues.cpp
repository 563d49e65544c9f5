#include "CoreData/Store/SqliteValues.h"

namespace platform {
namespace {

void readColumn(const SqliteStatement& row, int column, NSAttributeType type, PropertyValue& into) {
  using enum NSAttributeType;
  switch (type) {
    case double_:
    case date:
      into.emplace<double>(row.real(column));
      break;
    case string:
      into.emplace<std::string>(row.text(column));
      break;
    case binary:
    case uuid:
    case transformable:
      into.emplace<Data>(row.bytes(column));
      break;
    default:
      into.emplace<std::int64_t>(row.integer(column));
  }
}

}  // namespace

void bindValue(SqliteStatement& statement, int parameter, const PropertyValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    statement.bind(parameter, *integer);
  } else if (const auto* real = std::get_if<double>(&value)) {
    statement.bind(parameter, *real);
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    statement.bind(parameter, *text);
  } else if (const auto* id = std::get_if<NSManagedObjectID>(&value)) {
    statement.bind(parameter, id->key);
  } else if (const auto* data = std::get_if<Data>(&value)) {
    statement.bind(parameter, data->bytes());
  } else {
    statement.bindNull(parameter);
  }
}

void readValue(const SqliteStatement& row, const NSEntityDescription::Slot& slot, int column,
               PropertyValue& into) {
  if (row.isNull(column)) {
    if (!isNull(slot.defaultValue)) into = slot.defaultValue;
  } else if (slot.relationship != nullptr) {
    into = NSManagedObjectID{slot.relationship->destination, row.integer(column)};
  } else {
    readColumn(row, column, slot.type, into);
  }
}

void readValues(const SqliteStatement& row, const NSEntityDescription& entity, int column,
                PropertyValue* place) {
  for (const auto& slot : entity.slots()) readValue(row, slot, column++, *place++);
}

}  // namespace platform
