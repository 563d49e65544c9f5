#pragma once

#include "CoreData/Model/PropertyValue.h"

#include <memory>
#include <vector>

namespace platform {

class NSManagedObject;

/// The objects of a context that are in use, by ID. It is one flat table, so that a new ID needs no
/// allocation of its own.
class IdentityMap {
 public:
  /// Null when it isn't in use.
  [[nodiscard]] std::shared_ptr<NSManagedObject> find(NSManagedObjectID id) const;
  /// The place of an ID, empty when the object isn't in use; valid until the next call.
  [[nodiscard]] std::weak_ptr<NSManagedObject>& operator[](NSManagedObjectID id);
  void remove(NSManagedObjectID id);

  template <typename Work>
  void forEach(Work work) const {
    for (const Entry& entry : entries_) {
      if (const auto object = entry.object.lock()) work(*object);
    }
  }

 private:
  struct Entry {
    NSManagedObjectID id;  // without an entity where nothing was yet
    std::weak_ptr<NSManagedObject> object;
  };

  [[nodiscard]] std::size_t placeOf(NSManagedObjectID id) const;
  void makeRoom();

  std::vector<Entry> entries_;  // a power of two
  std::size_t taken_ = 0;       // by objects, or by the IDs of such as have gone
};

}  // namespace platform
