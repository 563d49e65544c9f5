#pragma once

#include "CoreData/Fetch/NSFetchRequest.h"
#include "CoreData/Model/NSEntityDescription.h"

#include <concepts>
#include <memory>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <type_traits>

namespace platform {

// Predicates and sort descriptors from the declarations of an entity. A name that the entity does
// not have, and a value of another type than the attribute's, do not compile.
//
//     TaskAttributes::status == TaskStatus::paused                     // "%K = %@"
//     TaskAttributes::status.in(statuses) && !isHealth                 // "%K IN %@ AND NOT (…)"
//     TaskAttributes::typeName.beginsWith("hk_")                       // "%K BEGINSWITH %@"
//     TaskAttributes::taskShare != nullptr                             // "%K != nil"
//     TaskAttributes::taskShare / TaskShareEntity::status == status    // "%K = %@" of a key path
//     any(TaskAttributes::taskCategories).in(categories)               // "ANY %K IN %@"
//     TaskLogEntryEntity::entryDate >= constant(day)                   // "%K >= 20240307"

/// The end of a key path that leads to an object of class `T`.
template <typename T>
struct RelatedObject {};

/// A value that stands in the format itself, not in a "%@".
template <typename T>
struct Constant {
  T value;
};
template <typename T>
[[nodiscard]] Constant<T> constant(T value) {
  return {std::move(value)};
}

namespace key_path_detail {

template <typename T>
struct Given {
  using Type = T;
  static constexpr bool isConstant = false;
  static const T& value(const T& given) { return given; }
};
template <typename T>
struct Given<Constant<T>> {
  using Type = T;
  static constexpr bool isConstant = true;
  static const T& value(const Constant<T>& given) { return given.value; }
};

template <typename T>
struct Unwrapped {
  using Type = T;
};
template <typename T>
struct Unwrapped<std::optional<T>> {
  using Type = T;
};

/// What the end of a path, here an attribute, can be compared with, and how that is stored.
template <typename End>
struct Compared {
  using Value = typename Unwrapped<typename End::Value>::Type;
  static constexpr bool isText = std::same_as<Value, std::string>;

  /// No number stands for a truth value, and no real for an integer.
  template <typename T>
  static consteval bool accepts() {
    if constexpr (std::same_as<T, std::nullopt_t>) {
      return isOptionalType<typename End::Value>;
    } else if constexpr (isText) {
      return std::convertible_to<T, std::string_view>;
    } else if constexpr (!std::is_arithmetic_v<Value>) {
      return std::convertible_to<T, Value>;
    } else if constexpr (std::same_as<T, bool> || std::same_as<Value, bool>) {
      return std::same_as<T, Value>;
    } else {
      return std::is_arithmetic_v<T> && (std::floating_point<Value> || std::integral<T>);
    }
  }
  static PropertyValue stored(std::nullopt_t) { return End::to(std::nullopt); }
  /// An integer stays as it is, even one that is too large for the column.
  template <typename T>
  static PropertyValue stored(const T& value) {
    if constexpr (isText) {
      return End::to(std::string(std::string_view(value)));
    } else if constexpr (std::integral<Value>) {
      return static_cast<std::int64_t>(value);
    } else {
      return End::to(static_cast<Value>(value));
    }
  }
};

/// The same of a relation.
template <typename Entity>
struct Compared<RelatedObject<Entity>> {
  template <typename T>
  static consteval bool accepts() {
    return std::same_as<T, Entity> || std::same_as<T, std::shared_ptr<Entity>> ||
           std::same_as<T, std::nullptr_t>;
  }
  static PropertyValue stored(std::nullptr_t) { return {}; }
  static PropertyValue stored(const Entity& object) { return object.objectID(); }
  static PropertyValue stored(const std::shared_ptr<Entity>& object) {
    return object != nullptr ? stored(*object) : stored(nullptr);
  }
};

}  // namespace key_path_detail

template <typename T, typename End>
concept ComparableWith = key_path_detail::Compared<End>::template accepts<
    typename key_path_detail::Given<std::remove_cvref_t<T>>::Type>();

/// What key paths and the declarations of attributes and to-one relations have in common: they can
/// be compared, and sorted by. `Self` has the text of the path as `name()`.
template <typename Self, typename Entity, typename End, bool IsAny = false>
class Comparable {
 public:
  /// Equals one of the values.
  template <std::ranges::input_range Values>
  requires ComparableWith<std::ranges::range_reference_t<const Values&>, End>
  [[nodiscard]] Predicate<Entity> in(const Values& values) const {
    PropertyValues list;
    for (const auto& value : values) list.push_back(key_path_detail::Compared<End>::stored(value));
    return compared(NSPredicate::Operator::in, std::move(list));
  }
  /// The stored text begins with these bytes.
  [[nodiscard]] Predicate<Entity> beginsWith(std::string_view prefix)
      const requires std::same_as<typename End::Stored, std::optional<std::string>> {
    return compared(NSPredicate::Operator::beginsWith, {std::string(prefix)});
  }
  template <ComparableWith<End> T>
  [[nodiscard]] Predicate<Entity> compared(NSPredicate::Operator comparison, const T& with) const {
    using Given = key_path_detail::Given<T>;
    return compared(comparison, {key_path_detail::Compared<End>::stored(Given::value(with))},
                    Given::isConstant);
  }

  [[nodiscard]] SortDescriptor<Entity> ascending() const requires(!IsAny) {
    return SortDescriptor<Entity>({keyPath()});
  }
  [[nodiscard]] SortDescriptor<Entity> descending() const requires(!IsAny) {
    return SortDescriptor<Entity>({keyPath(), false});
  }
  [[nodiscard]] const std::string& keyPath() const {
    return static_cast<const Self&>(*this).name();
  }

 private:
  [[nodiscard]] Predicate<Entity> compared(NSPredicate::Operator comparison, PropertyValues values,
                                           bool isConstant = false) const {
    return Predicate<Entity>(NSPredicate(NSPredicate::Comparison{.isAny = IsAny,
                                                                 .keyPath = keyPath(),
                                                                 .comparison = comparison,
                                                                 .values = std::move(values),
                                                                 .isConstant = isConstant}));
  }
};

template <typename S, typename E, typename End, bool Any, ComparableWith<End> T>
[[nodiscard]] Predicate<E> operator==(const Comparable<S, E, End, Any>& path, const T& value) {
  return path.compared(NSPredicate::Operator::equal, value);
}
template <typename S, typename E, typename End, bool Any, ComparableWith<End> T>
[[nodiscard]] Predicate<E> operator!=(const Comparable<S, E, End, Any>& path, const T& value) {
  return path.compared(NSPredicate::Operator::notEqual, value);
}
template <typename S, typename E, typename End, bool Any, ComparableWith<End> T>
[[nodiscard]] Predicate<E> operator<(const Comparable<S, E, End, Any>& path, const T& value) {
  return path.compared(NSPredicate::Operator::less, value);
}
template <typename S, typename E, typename End, bool Any, ComparableWith<End> T>
[[nodiscard]] Predicate<E> operator<=(const Comparable<S, E, End, Any>& path, const T& value) {
  return path.compared(NSPredicate::Operator::lessOrEqual, value);
}
template <typename S, typename E, typename End, bool Any, ComparableWith<End> T>
[[nodiscard]] Predicate<E> operator>(const Comparable<S, E, End, Any>& path, const T& value) {
  return path.compared(NSPredicate::Operator::greater, value);
}
template <typename S, typename E, typename End, bool Any, ComparableWith<End> T>
[[nodiscard]] Predicate<E> operator>=(const Comparable<S, E, End, Any>& path, const T& value) {
  return path.compared(NSPredicate::Operator::greaterOrEqual, value);
}

/// A key path along relations.
template <typename Entity, typename End, bool IsAny = false>
class KeyPath : public Comparable<KeyPath<Entity, End, IsAny>, Entity, End, IsAny> {
 public:
  explicit KeyPath(std::string name) : name_(std::move(name)) {}
  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  std::string name_;
};

/// From the object that the first path leads to along the second. One of them at most goes through
/// a relation to many.
template <typename S1, typename E, typename Middle, bool Any1, typename S2, typename End, bool Any2>
requires(!(Any1 && Any2)) [[nodiscard]] KeyPath<E, End, Any1 || Any2> operator/(
    const Comparable<S1, E, RelatedObject<Middle>, Any1>& first,
    const Comparable<S2, Middle, End, Any2>& second) {
  return KeyPath < E, End, Any1 || Any2 > (first.keyPath() + "." + second.keyPath());
}

/// An attribute or a to-one relation as a key path of the entity of class `Entity`.
template <typename Entity, typename Declaration, typename End = Declaration>
class Declared : public Declaration,
                 public Comparable<Declared<Entity, Declaration, End>, Entity, End> {
 public:
  using Declaration::Declaration;
};

/// A to-many relation of the entity of class `Entity`.
template <typename Entity, typename T>
class DeclaredToMany : public ToMany<T> {
 public:
  using ToMany<T>::Relationship;
};

/// Any of the objects of a relation: what is compared is true of one of them at least.
template <typename Entity, typename T>
[[nodiscard]] KeyPath<Entity, RelatedObject<T>, true> any(const DeclaredToMany<Entity, T>& many) {
  return KeyPath<Entity, RelatedObject<T>, true>(many.name());
}

/// Base of a class that declares the attributes and relations of the entity of class `Entity`: its
/// declarations begin key paths.
template <typename Entity>
struct DeclaredBy {
  template <typename T, typename Form = AttributeForm<T>>
  using Attribute = Declared<Entity, platform::Attribute<T, Form>>;
  template <typename T>
  using BoxedAttribute = Declared<Entity, platform::BoxedAttribute<T>>;
  template <typename T>
  using ToOne = Declared<Entity, platform::ToOne<T>, RelatedObject<T>>;
  template <typename T>
  using ToMany = DeclaredToMany<Entity, T>;
};

}  // namespace platform
