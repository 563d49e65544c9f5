#pragma once

#include "CoreData/Model/PropertyValue.h"
#include "CoreData/Model/StoredForm.h"
#include "Foundation/Values/TypeName.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace platform {

class NSManagedObject;

struct NSAttributeDescription {
  std::string name;
  NSAttributeType type;
  bool isOptional = false;  ///< Otherwise nothing reads as `defaultValue`.
  PropertyValue defaultValue = {};
  std::string valueTransformerName = {};  ///< Of a transformable attribute.
  TextComparison comparison = TextComparison::exact;
  /// Whether all of a value can be read; null if any value of the type can.
  bool (*canRead)(const PropertyValue& value) = nullptr;
};

/// What the type of a declared attribute says of its column.
struct NSColumnType {
  NSAttributeType type;
  bool isOptional = false;
  PropertyValue (*defaultValue)() = nullptr;
  TextComparison comparison = TextComparison::exact;
  bool (*canRead)(const PropertyValue& value) = nullptr;
};

/// What becomes of the objects at the other end when an object is deleted: they lose the relation,
/// or they go with it. A cascade makes the object their *owner*.
enum class NSDeleteRule { nullify, cascade };

struct NSRelationshipDescription {
  std::string name;
  std::string destinationName;
  std::string inverseName;  ///< Of the relation back; only a to-one relation may do without.
  bool isToMany = false;
  NSDeleteRule deleteRule = NSDeleteRule::nullify;

  /// \name Settled by the model
  /// @{

  /// Where the relation is kept: a relation and its inverse are one fact, kept once.
  enum class Storage {
    own,      ///< A column of this entity's rows.
    inverse,  ///< The inverse's column, in the rows of the destination.
    links,    ///< A table of pairs.
  };
  Storage storage = Storage::own;
  std::size_t slot = 0;         ///< The place among the values of the object that keeps it.
  std::string linkTable = {};   ///< Of a relation from many to many.
  bool isFirstInLinks = false;  ///< Whether this entity's keys stand in its first column.
  const NSEntityDescription* destination = nullptr;
  const NSRelationshipDescription* inverse = nullptr;
  /// @}
};

/// A relation as it is declared.
struct NSRelationshipDeclaration {
  std::string_view name;
  std::string_view destinationName;
  std::string_view inverseName;
  bool isToMany = false;
  NSDeleteRule deleteRule = NSDeleteRule::nullify;
};

/// One entity of a model: its attributes and relations, each declared once. From the declaration
/// come the table in the file, its completion when the file is older, the accessors, and what
/// predicates may name. An entity with a class of its own declares them in it:
///
///     class NoteEntity : public EntityClass<NoteEntity> {
///      public:
///       inline static auto description = NSEntityDescription::of<NoteEntity>();
///       inline static const Attribute<std::optional<std::string>> content{description, "content"};
///       inline static const Attribute<std::int32_t> noteDate{description, "noteDate"};
///       inline static const ToOne<BookEntity> book{description, "book", "notes"};
///       inline static const FetchIndex byDate{description, {"book", "-noteDate"}};
///     };
///
///     book->setValue(BookEntity::day, 20240307);
///     book->value(BookEntity::author);             // absent: an AuthorEntity, or null
///
/// Names of attributes and relations are names in the file and never change once released; nor does
/// an attribute's type. New ones may be added at any time.
class NSEntityDescription {
 public:
  using Factory = std::shared_ptr<NSManagedObject> (*)();

  /// One value in a row: an attribute, or a to-one relation that is kept here.
  struct Slot {
    std::string name;
    NSAttributeType type = NSAttributeType::integer64;
    PropertyValue defaultValue = {};
    TextComparison comparison = TextComparison::exact;
    const NSRelationshipDescription* relationship = nullptr;  ///< Null for an attribute.
  };

  /// \param factory Makes an object of the entity's own class; null for a plain one.
  explicit NSEntityDescription(std::string name, Factory factory = nullptr);
  /// The entity of a class: "TaskNote" of `TaskNoteEntity`.
  template <typename T>
  [[nodiscard]] static NSEntityDescription of();

  [[nodiscard]] const std::string& name() const { return name_; }
  /// The place in the model.
  [[nodiscard]] std::size_t index() const { return index_; }
  [[nodiscard]] const std::vector<NSAttributeDescription>& attributes() const {
    return attributes_;
  }
  [[nodiscard]] const std::vector<NSRelationshipDescription>& relationships() const {
    return relationships_;
  }
  /// The attributes as declared, then the to-one relations kept here.
  [[nodiscard]] const std::vector<Slot>& slots() const { return slots_; }
  /// The slots of the relations that are to-one at both ends.
  [[nodiscard]] const std::vector<std::size_t>& oneToOneSlots() const { return oneToOneSlots_; }
  /// Each a list of slots' names; "-" before a name stands for descending.
  [[nodiscard]] const std::vector<std::vector<std::string>>& indexes() const { return indexes_; }

  /// Null when there is none of that name.
  [[nodiscard]] const NSAttributeDescription* attribute(std::string_view name) const;
  [[nodiscard]] const NSRelationshipDescription* relationship(std::string_view name) const;

  // For the declarations, which are compiled in every source that sees a row's class: all that they
  // need not know is done here.
  std::size_t add(std::string_view name, const NSColumnType& column);
  std::size_t add(std::string_view name, const NSColumnType& column, PropertyValue defaultValue);
  std::size_t addTransformable(std::string_view name, std::string_view transformerName);
  std::size_t add(const NSRelationshipDeclaration& declaration);
  void addIndex(std::initializer_list<std::string_view> names);

  [[nodiscard]] std::shared_ptr<NSManagedObject> makeObject() const;
  /// What a new object has.
  [[nodiscard]] RowValues defaultValues() const;

 private:
  friend class NSManagedObjectModel;

  std::string name_;
  Factory factory_;
  std::size_t index_ = 0;
  std::vector<NSAttributeDescription> attributes_;
  std::vector<NSRelationshipDescription> relationships_;
  std::vector<std::vector<std::string>> indexes_;
  std::vector<Slot> slots_;
  std::vector<std::size_t> oneToOneSlots_;
};

/// The name of a class's entity: "Task" for `TaskEntity`.
template <typename T>
[[nodiscard]] constexpr std::string_view entityName() {
  std::string_view name = typeName<T>();
  name.remove_prefix(name.rfind(':') + 1);
  if (name.ends_with("Entity")) name.remove_suffix(6);
  return name;
}

template <typename T>
NSEntityDescription NSEntityDescription::of() {
  return NSEntityDescription(
      std::string(entityName<T>()),
      []() -> std::shared_ptr<NSManagedObject> { return std::make_shared<T>(); });
}

/// Declares an attribute and is its typed accessor; see `NSEntityDescription`. `T` is what callers
/// read and write: a number, a text, a date and so on, or an optional one; or an optional type of
/// the program (`StoredForm`), which is absent also if the stored value can't be read.
template <typename T, typename Form = AttributeForm<T>>
class Attribute {
 public:
  using Value = T;
  /// What the column holds.
  using Stored = typename Form::Stored;

  Attribute(NSEntityDescription& entity, std::string_view name)
      : entity_(&entity), slot_(entity.add(name, column())) {}
  Attribute(NSEntityDescription& entity, std::string_view name, T defaultValue,
            TextComparison comparison = TextComparison::exact)
      : entity_(&entity),
        slot_(entity.add(name, column(comparison), to(std::move(defaultValue)))) {}

  [[nodiscard]] std::size_t slot() const { return slot_; }
  [[nodiscard]] const std::string& name() const { return entity_->attributes()[slot_].name; }

  /// \name Between values and what the column holds
  /// @{
  [[nodiscard]] static T from(const PropertyValue& stored) { return Form::from(stored); }
  [[nodiscard]] static PropertyValue to(T value) { return Form::to(std::move(value)); }
  /// @}

 private:
  static constexpr NSColumnType column(TextComparison comparison = TextComparison::exact) {
    NSColumnType result{.type = Form::type,
                        .isOptional = isOptionalType<Stored>,
                        .defaultValue = [] { return AttributeForm<Stored>::to(Stored()); },
                        .comparison = comparison};
    if constexpr (requires { Form::canRead; }) result.canRead = &Form::canRead;
    if constexpr (requires { Form::comparison; }) result.comparison = Form::comparison;
    return result;
  }

  const NSEntityDescription* entity_;
  std::size_t slot_;
};

/// Declares an attribute of a number that may be absent, of a type that others keep as 0 then.
template <typename T>
using BoxedAttribute = Attribute<std::optional<T>, DecodedForm<T, Boxed<T>>>;

/// An attribute that a registered `NSValueTransformer` turns into bytes and back.
template <typename T>
class TransformableAttribute {
 public:
  TransformableAttribute(NSEntityDescription& entity, std::string_view name,
                         std::string transformerName)
      : slot_(entity.addTransformable(name, transformerName)),
        transformerName_(std::move(transformerName)) {}

  [[nodiscard]] std::size_t slot() const { return slot_; }
  [[nodiscard]] const std::string& transformerName() const { return transformerName_; }

 private:
  std::size_t slot_;
  std::string transformerName_;
};

/// Declares a relation to the entity of class `T`.
template <typename T, bool IsToMany>
class Relationship {
 public:
  Relationship(NSEntityDescription& entity, std::string_view name, std::string_view inverseName,
               NSDeleteRule deleteRule = NSDeleteRule::nullify)
      : entity_(&entity),
        index_(entity.add({.name = name,
                           .destinationName = destination,
                           .inverseName = inverseName,
                           .isToMany = IsToMany,
                           .deleteRule = deleteRule})) {}

  [[nodiscard]] std::size_t index() const { return index_; }
  [[nodiscard]] const std::string& name() const { return entity_->relationships()[index_].name; }

 private:
  static constexpr std::string_view destination = entityName<T>();

  const NSEntityDescription* entity_;
  std::size_t index_;
};
template <typename T>
using ToOne = Relationship<T, false>;
template <typename T>
using ToMany = Relationship<T, true>;

/// Declares an index: the slots that fetches select by and sort by, in that order.
struct FetchIndex {
  FetchIndex(NSEntityDescription& entity, std::initializer_list<std::string_view> names) {
    entity.addIndex(names);
  }
};

}  // namespace platform
