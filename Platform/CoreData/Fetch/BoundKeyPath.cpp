#include "CoreData/Fetch/BoundKeyPath.h"

#include "CoreData/Context/NSManagedObject.h"
#include "SQLite/StoreError.h"

#include <algorithm>
#include <ranges>

namespace platform {

Result<BoundKeyPath> BoundKeyPath::bind(const NSEntityDescription& entity, std::string_view path) {
  BoundKeyPath bound;
  bound.end = &entity;
  const auto refuse = [&] {
    return failure<StoreError>(StoreError::Kind::invalidRequest,
                               "\"" + std::string(path) + "\" is no key path of " + entity.name());
  };
  for (const auto part : path | std::views::split('.')) {
    const std::string_view name(part.begin(), part.end());
    if (bound.attribute) return refuse();
    if (const auto* relationship = bound.end->relationship(name)) {
      bound.relationships.push_back(relationship);
      bound.end = relationship->destination;
    } else if (const auto* attribute = bound.end->attribute(name)) {
      bound.attribute = static_cast<std::size_t>(attribute - bound.end->attributes().data());
    } else {
      return refuse();
    }
  }
  const auto toMany =
      std::ranges::count(bound.relationships, true, &NSRelationshipDescription::isToMany);
  if (toMany > 1) return refuse();
  bound.isToMany = toMany == 1;
  return bound;
}

bool BoundKeyPath::ignoresCase() const {
  return attribute && end->slots()[*attribute].comparison == TextComparison::withoutCase;
}

PropertyValues BoundKeyPath::values(const NSManagedObject& object, std::size_t from) const {
  if (from == relationships.size()) {
    return {attribute ? object.slotValue(*attribute) : PropertyValue(object.objectID())};
  }
  const NSRelationshipDescription& relationship = *relationships[from];
  const bool isLast = from + 1 == relationships.size();
  if (isLast && !attribute && relationship.storage == NSRelationshipDescription::Storage::own) {
    return {object.slotValue(relationship.slot)};
  }
  const auto members = object.members(relationship);
  if (members.empty() && !isToMany) return {PropertyValue()};
  PropertyValues all;
  for (const auto& member : members) {
    for (PropertyValue& value : values(*member, from + 1)) all.push_back(std::move(value));
  }
  return all;
}

}  // namespace platform
