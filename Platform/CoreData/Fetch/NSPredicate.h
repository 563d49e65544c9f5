#pragma once

#include "CoreData/Model/PropertyValue.h"

#include <concepts>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace platform {

class NSManagedObject;

/// What stands for a "%K" (a text: the key path) or a "%@" in a predicate's format: nothing, a
/// number, a text, a date, bytes, an object, or a list of these.
class PredicateArgument {
 public:
  PredicateArgument(std::nullptr_t) {}
  template <typename T>
  requires requires(T value) { AttributeForm<T>::to(value); }
  PredicateArgument(T value) : value_(AttributeForm<T>::to(std::move(value))) {}
  PredicateArgument(std::string_view value) : value_(PropertyValue(std::string(value))) {}
  PredicateArgument(const char* value) : value_(PropertyValue(std::string(value))) {}
  PredicateArgument(NSManagedObjectID id) : value_(PropertyValue(id)) {}
  PredicateArgument(const NSManagedObject& object);
  template <std::derived_from<NSManagedObject> T>
  PredicateArgument(const std::shared_ptr<T>& object) {
    if (object != nullptr) *this = PredicateArgument(static_cast<const NSManagedObject&>(*object));
  }
  template <typename T>
  PredicateArgument(const std::vector<T>& list) {
    PropertyValues values;
    for (const auto& element : list) values.push_back(PredicateArgument(element).value());
    value_ = std::move(values);
  }

  /// A list's first element, where one value is wanted.
  [[nodiscard]] PropertyValue value() const;
  /// A single value as a list of one.
  [[nodiscard]] PropertyValues list() const;

 private:
  std::variant<PropertyValue, PropertyValues> value_;
};

/// A condition on objects, the same for rows in the file and for unsaved objects. A value.
///
///     NSPredicate::format("%K IN %@ AND typeTarget > 0.5", {"status", std::vector{"N", "P"}});
///     NSPredicate::format("ANY taskCategories IN %@ OR task.title BEGINSWITH 'A'", {categories});
///
/// A comparison has a key path on its left (through to-one relations; with ANY in front also
/// through one to-many relation; ending in "@count" for the number of objects of a to-many one),
/// and on its right a "%@", a number, a text in quotes, TRUE, FALSE, NIL or NULL, or another key
/// path. Operators: = == != <> < <= > >= IN BEGINSWITH ENDSWITH CONTAINS; AND OR NOT (or && || !)
/// with parentheses; TRUEPREDICATE, FALSEPREDICATE. Words of the language in any case. Texts are
/// compared byte by byte.
///
/// A comparison is true or false, never unknown: nothing equals only nothing, differs from anything
/// else, and is neither smaller nor greater than anything. So NOT is always the opposite.
class NSPredicate {
 public:
  enum class Operator {
    equal,
    notEqual,
    less,
    lessOrEqual,
    greater,
    greaterOrEqual,
    in,
    beginsWith,
    endsWith,
    contains,
  };
  struct KeyPath {
    std::string text;
  };
  struct Comparison {
    bool isAny = false;
    std::string keyPath;
    Operator comparison = Operator::equal;
    std::variant<PropertyValues, KeyPath> right = {};  ///< Values: one, but for `in`.
  };
  enum class LogicalType { and_, or_, not_ };
  struct Compound {
    LogicalType type = LogicalType::and_;
    std::vector<NSPredicate> parts = {};
  };
  using Node = std::variant<Comparison, Compound>;

  /// \throws StoreError (`invalidRequest`) for a format that can't be read or lacks an argument.
  [[nodiscard]] static NSPredicate format(std::string_view format,
                                          const std::vector<PredicateArgument>& arguments = {});
  /// True, or false, of anything.
  [[nodiscard]] static NSPredicate value(bool isTrue);

  explicit NSPredicate(Node node) : node_(std::make_shared<const Node>(std::move(node))) {}

  [[nodiscard]] const Node& node() const { return *node_; }

 private:
  std::shared_ptr<const Node> node_;
};

/// Predicates joined. Of no parts, AND is true and OR is false.
struct NSCompoundPredicate {
  NSCompoundPredicate() = delete;

  [[nodiscard]] static NSPredicate andPredicateWithSubpredicates(std::vector<NSPredicate> parts);
  [[nodiscard]] static NSPredicate orPredicateWithSubpredicates(std::vector<NSPredicate> parts);
  [[nodiscard]] static NSPredicate notPredicateWithSubpredicate(NSPredicate part);
};

}  // namespace platform
