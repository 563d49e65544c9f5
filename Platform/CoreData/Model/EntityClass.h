#pragma once

#include "CoreData/Context/NSManagedObject.h"
#include "CoreData/Fetch/KeyPath.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Null when the context's model doesn't have it.
[[nodiscard]] const NSEntityDescription* entityNamed(std::string_view name,
                                                     const NSManagedObjectContext& context);
[[nodiscard]] std::shared_ptr<NSManagedObject> insertObject(std::string_view entityName,
                                                            NSManagedObjectContext& context);

/// The base of a class that has an entity of its own:
///
///     struct ShelfEntity : EntityClass<ShelfEntity> {};
///     ShelfEntity::entityName();                         // "Shelf"
///     const auto other = BookEntity::create(*context);   // inserted, unsaved
template <typename T>
class EntityClass : public NSManagedObject, public DeclaredBy<T> {
 public:
  using NSManagedObject::entity;

  /// The class's name without a trailing "Entity".
  [[nodiscard]] static constexpr std::string_view entityName() { return platform::entityName<T>(); }
  /// The entity in the context's model; null when the model doesn't have it.
  [[nodiscard]] static const NSEntityDescription* entity(const NSManagedObjectContext& context) {
    return entityNamed(entityName(), context);
  }
  /// Inserts a new object. An entity that the model doesn't have is a programming error and throws
  /// a `StoreError`.
  [[nodiscard]] static std::shared_ptr<T> create(NSManagedObjectContext& context) {
    return std::static_pointer_cast<T>(insertObject(entityName(), context));
  }

  /// Writes a value unless the column already reads as that value, and returns whether it wrote. A
  /// stored value that can't be read therefore stays as long as the new value is absent.
  template <typename V, typename Form>
  bool writeValue(const Attribute<V, Form>& attribute, const std::type_identity_t<V>& newValue) {
    if (value(attribute) == newValue) return false;
    setValue(attribute, newValue);
    return true;
  }
  /// Writes a value unless the column already has exactly this form: it also replaces what can't be
  /// read, and the same value in another form. Returns whether it wrote.
  template <typename V, typename Form>
  bool replaceValue(const Attribute<V, Form>& attribute, const std::type_identity_t<V>& newValue) {
    PropertyValue stored = attribute.to(newValue);
    if (slotValue(attribute.slot()) == stored) return false;
    setSlotValue(attribute.slot(), std::move(stored));
    return true;
  }
};

}  // namespace platform
