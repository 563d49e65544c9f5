#pragma once

#include "CoreData/Model/NSEntityDescription.h"
#include "CoreData/Model/NSValueTransformer.h"

#include <map>
#include <memory>
#include <type_traits>
#include <vector>

namespace platform {

class NSManagedObjectContext;
struct FetchGroup;

/// One object of a store as one context sees it: in a context there is at most one for an ID. Its
/// properties are read and set by the declarations of its entity (`NSEntityDescription`), on the
/// context's queue alone; anywhere else a debug build asserts. Changes are the context's until it
/// saves; setting a value that is there already changes nothing, and setting back the saved one
/// takes the change back.
///
///     const auto cover = context->insert<CoverEntity>();
///     cover->setValue(CoverEntity::book, book);       // and book->value(BookEntity::cover) has it
///     cover->changedValues().size();                  // 1
///
/// The values are read from the file when they are first looked at, all at once; until then the
/// object is a *fault*. A to-one relation that is kept at its other end is likewise read when it is
/// first looked at, for all objects that were fetched together, and then remembered until a fetch
/// comes upon the object again, or something changes here or is merged that may concern it.
///
/// An object that was deleted, here or elsewhere, or whose context has gone, is *detached*: it has
/// no context, keeps the values it had (a fault reads as the defaults), has no relations, and what
/// is set goes nowhere.
class NSManagedObject : public std::enable_shared_from_this<NSManagedObject> {
 public:
  using Objects = std::vector<std::shared_ptr<NSManagedObject>>;

  NSManagedObject() = default;
  virtual ~NSManagedObject() = default;
  NSManagedObject(const NSManagedObject&) = delete;
  NSManagedObject& operator=(const NSManagedObject&) = delete;

  [[nodiscard]] const NSEntityDescription& entity() const { return *id_.entity; }
  [[nodiscard]] NSManagedObjectID objectID() const { return id_; }
  /// Null for a detached object.
  [[nodiscard]] NSManagedObjectContext* managedObjectContext() const { return context_; }

  [[nodiscard]] bool isFault() const { return isFault_; }
  [[nodiscard]] bool isInserted() const { return state_ == State::inserted; }
  /// Whether attributes or to-one relations that are kept in its row have unsaved changes.
  [[nodiscard]] bool isUpdated() const { return state_ == State::updated; }
  /// From its deletion until the save.
  [[nodiscard]] bool isDeleted() const { return state_ == State::deleted; }
  /// The new values of the properties of its row that differ from the saved ones, by name.
  [[nodiscard]] std::map<std::string, PropertyValue> changedValues() const;

  template <typename T, typename Form>
  [[nodiscard]] T value(const Attribute<T, Form>& attribute) const {
    return attribute.from(slotValue(attribute.slot()));
  }
  template <typename T, typename Form>
  void setValue(const Attribute<T, Form>& attribute, std::type_identity_t<T> value) {
    setSlotValue(attribute.slot(), attribute.to(std::move(value)));
  }
  /// The stored value of the column, whether or not it can be read.
  template <typename T, typename Form>
  [[nodiscard]] auto stored(const Attribute<T, Form>& attribute) const {
    return AttributeForm<typename Form::Stored>::from(slotValue(attribute.slot()));
  }
  template <typename T, typename Form>
  void setStored(const Attribute<T, Form>& attribute, typename Form::Stored stored) {
    setSlotValue(attribute.slot(), AttributeForm<typename Form::Stored>::to(std::move(stored)));
  }
  /// The stored text without a copy: null when there is none; valid until the object changes.
  template <typename T, typename Form>
  requires std::same_as<typename Form::Stored, std::optional<std::string>>
  [[nodiscard]] const std::string* text(const Attribute<T, Form>& of) const {
    return std::get_if<std::string>(&slotValue(of.slot()));
  }
  /// Whether the stored value of an attribute can be read; an absent value can. A class overrides
  /// it for values that depend on several attributes.
  [[nodiscard]] virtual bool canRead(std::size_t slot) const;

  /// Absent when there is none, when its transformer is not registered or can't read the bytes.
  template <typename T>
  [[nodiscard]] std::optional<T> value(const TransformableAttribute<T>& attribute) const {
    const std::any object = transformed(attribute.slot(), attribute.transformerName());
    const T* value = std::any_cast<T>(&object);
    return value != nullptr ? std::optional<T>(*value) : std::nullopt;
  }
  /// Without the transformer it is reported, and what was there stays.
  template <typename T>
  void setValue(const TransformableAttribute<T>& attribute,
                const std::type_identity_t<std::optional<T>>& value) {
    setTransformed(attribute.slot(), attribute.transformerName(),
                   value ? std::any(*value) : std::any());
  }

  /// Null when there is none.
  template <typename T>
  [[nodiscard]] std::shared_ptr<T> value(const ToOne<T>& relationship) const {
    const Objects all = members(entity().relationships()[relationship.index()]);
    return all.empty() ? nullptr : std::static_pointer_cast<T>(all.front());
  }
  template <typename T>
  void setValue(const ToOne<T>& relationship, const std::type_identity_t<std::shared_ptr<T>>& to) {
    setMember(entity().relationships()[relationship.index()], to.get());
  }
  /// In the order of their IDs.
  template <typename T>
  [[nodiscard]] std::vector<std::shared_ptr<T>> value(const ToMany<T>& relationship) const {
    std::vector<std::shared_ptr<T>> result;
    for (const auto& member : members(entity().relationships()[relationship.index()])) {
      result.push_back(std::static_pointer_cast<T>(member));
    }
    return result;
  }
  template <typename T>
  void add(const ToMany<T>& relationship, const std::type_identity_t<std::shared_ptr<T>>& member) {
    addMember(entity().relationships()[relationship.index()], *member);
  }
  template <typename T>
  void remove(const ToMany<T>& relationship,
              const std::type_identity_t<std::shared_ptr<T>>& member) {
    removeMember(entity().relationships()[relationship.index()], *member);
  }

  /// \name The same without declarations at hand
  /// @{
  [[nodiscard]] const PropertyValue& slotValue(std::size_t slot) const;
  void setSlotValue(std::size_t slot, PropertyValue value);
  [[nodiscard]] Objects members(const NSRelationshipDescription& relationship) const;
  /// Null for none.
  void setMember(const NSRelationshipDescription& toOne, NSManagedObject* member);
  void addMember(const NSRelationshipDescription& toMany, NSManagedObject& member);
  void removeMember(const NSRelationshipDescription& toMany, NSManagedObject& member);
  /// @}

 private:
  friend class NSManagedObjectContext;
  friend class SaveOperation;

  enum class State : std::uint8_t { detached, saved, inserted, updated, deleted };
  struct Change {
    std::size_t slot;
    PropertyValue saved;
  };

  /// Whether no two contexts meet.
  [[nodiscard]] bool mayRelateTo(const NSManagedObject& other) const {
    return context_ == other.context_ || context_ == nullptr || other.context_ == nullptr;
  }
  void load() const;
  void takeValues(std::int64_t version, RowValues values);
  void mergeValues(std::int64_t version, RowValues values);
  void becomeFault();
  void detach();
  std::any transformed(std::size_t slot, const std::string& transformerName) const;
  void setTransformed(std::size_t slot, const std::string& transformerName, const std::any& value);

  NSManagedObjectID id_;
  NSManagedObjectContext* context_ = nullptr;
  State state_ = State::detached;
  bool isFault_ = true;
  std::int64_t version_ = 0;  // of the row that the values were read from
  RowValues values_;
  std::vector<Change> changes_;
  mutable std::shared_ptr<FetchGroup> group_;  // what is remembered of its relations, or null
};

}  // namespace platform
