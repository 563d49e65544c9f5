#pragma once

#include "CoreData/Model/NSEntityDescription.h"
#include "Foundation/Values/Error.h"

#include <optional>

namespace platform {

class NSManagedObject;

/// A key path as an entity understands it: relations to go along, then perhaps an attribute.
/// "entryDate" is an attribute of the entity itself: there is no relation to go along. "task" is
/// one relation, whose value is the object at its end. "task.taskShare.status" is two relations,
/// and then the attribute.
class BoundKeyPath {
 public:
  /// Fails with a `StoreError` (`invalidRequest`) for an unknown key.
  [[nodiscard]] static Result<BoundKeyPath> bind(const NSEntityDescription& entity,
                                                 std::string_view path);

  std::vector<const NSRelationshipDescription*> relationships;
  std::optional<std::size_t> attribute;      ///< Its slot.
  const NSEntityDescription* end = nullptr;  ///< The entity that the relations lead to.
  bool isToMany = false;                     ///< Whether a relation of the path is to many.

  /// Whether what stands at the end is compared without case.
  [[nodiscard]] bool ignoresCase() const;
  /// What an object, unsaved changes included, has at the end of the path: one value, or one for
  /// each object of a to-many relation.
  [[nodiscard]] PropertyValues values(const NSManagedObject& object, std::size_t from = 0) const;
};

}  // namespace platform
