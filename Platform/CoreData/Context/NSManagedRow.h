#pragma once

#include "CoreData/Model/NSEntityDescription.h"

#include <string>

namespace platform {

/// Values of an object that was read without being made: see `NSManagedObjectContext::readRows`.
/// An attribute that was not asked for may read as nothing.
class NSManagedRow {
 public:
  /// \param values By slot.
  NSManagedRow(NSManagedObjectID id, const PropertyValue* values) : id_(id), values_(values) {}

  [[nodiscard]] NSManagedObjectID objectID() const { return id_; }
  template <typename T, typename Form>
  [[nodiscard]] T value(const Attribute<T, Form>& attribute) const {
    return attribute.from(values_[attribute.slot()]);
  }
  /// The stored value of the column, whether or not it can be read.
  template <typename T, typename Form>
  [[nodiscard]] auto stored(const Attribute<T, Form>& attribute) const {
    return AttributeForm<typename Form::Stored>::from(values_[attribute.slot()]);
  }
  /// The stored text without a copy: null when there is none.
  template <typename T, typename Form>
  requires std::same_as<typename Form::Stored, std::optional<std::string>>
  [[nodiscard]] const std::string* text(const Attribute<T, Form>& of) const {
    return std::get_if<std::string>(&values_[of.slot()]);
  }

 private:
  NSManagedObjectID id_;
  const PropertyValue* values_;
};

}  // namespace platform
