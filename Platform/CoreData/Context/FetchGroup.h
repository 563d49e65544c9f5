#pragma once

#include "CoreData/Context/NSManagedObject.h"

#include <map>
#include <unordered_map>

namespace platform {

/// Objects that came out of one fetch. What is asked of one of them will be asked of the others:
/// a to-one relation that is kept at its other end is read for all of them at once, and remembered
/// here. An object whose relations may have changed leaves its group, and is asked alone from then
/// on. The members live as long as the group, and it as long as one of its objects.
struct FetchGroup {
  /// By the key of the object that has them; a key without any is missing. Usually one; if others
  /// made more than one, all of them, in the order of their IDs.
  using Members = std::unordered_map<std::int64_t, NSManagedObject::Objects>;

  std::vector<NSManagedObjectID> ids;
  std::map<const NSRelationshipDescription*, Members> members;  // of the relations asked for so far
};

}  // namespace platform
