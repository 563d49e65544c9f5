#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "CoreData/Context/NSPersistentStoreCoordinator.h"
#include "CoreData/Model/NSManagedObjectModel.h"
#include "Foundation/Coding/RawValue.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The base of a class that has an entity of its own:
///
///     class TaskNoteEntity : public EntityClass<TaskNoteEntity> { … };
///     TaskNoteEntity::entityName();                        // "TaskNote"
///     const auto note = TaskNoteEntity::create(*context);  // inserted, unsaved
template <typename T>
class EntityClass : public NSManagedObject {
 public:
  using NSManagedObject::entity;

  /// The class's name without a trailing "Entity".
  [[nodiscard]] static constexpr std::string_view entityName() { return platform::entityName<T>(); }
  /// The entity in the context's model; null when the model doesn't have it.
  [[nodiscard]] static const NSEntityDescription* entity(const NSManagedObjectContext& context) {
    return context.persistentStoreCoordinator()->managedObjectModel().entity(entityName());
  }
  /// Inserts a new object. An entity that the model doesn't have is a programming error, told by a
  /// `StoreError`.
  [[nodiscard]] static std::shared_ptr<T> create(NSManagedObjectContext& context) {
    return context.insert<T>();
  }

  /// The enumeration whose raw value is stored; absent for no text and for one that no case has.
  template <RawRepresentable E>
  [[nodiscard]] std::optional<E> enumValue(
      const Attribute<std::optional<std::string>>& attribute) const {
    const std::string* raw = text(attribute);
    return raw != nullptr ? fromRawValue<E>(*raw) : std::nullopt;
  }

  /// Writes a value unless it is there already. Whether it wrote.
  template <typename V, typename Form>
  bool writeValue(const Attribute<V, Form>& attribute, const std::type_identity_t<V>& newValue) {
    if (value(attribute) == newValue) return false;
    setValue(attribute, newValue);
    return true;
  }
  /// The same for an enumeration. A text that no case has stays while nothing else is wanted.
  template <RawRepresentable E>
  bool writeEnum(const Attribute<std::optional<std::string>>& attribute,
                 std::optional<E> newValue) {
    if (enumValue<E>(attribute) == newValue) return false;
    setValue(attribute, newValue ? std::optional(std::string(rawValue(*newValue))) : std::nullopt);
    return true;
  }
};

}  // namespace platform
