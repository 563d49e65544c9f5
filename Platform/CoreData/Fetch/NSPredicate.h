#pragma once

#include "CoreData/Model/PropertyValue.h"

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace platform {

/// A condition on objects, the same for rows in the file and for unsaved objects. A value. It is
/// built from the declarations of an entity (`CoreData/Fetch/KeyPath.h`) and can be printed.
///
/// A comparison is true or false, never unknown: nothing equals only nothing, differs from anything
/// else, and is neither smaller nor greater than anything. So NOT is always the opposite. Texts are
/// compared byte by byte, those of identifiers without case.
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
  };
  struct Comparison {
    bool isAny = false;
    std::string keyPath;
    Operator comparison = Operator::equal;
    PropertyValues values = {};  ///< One, but for `in`.
    bool isConstant = false;     ///< Whether the number stands in the format itself.
  };
  enum class LogicalType { and_, or_, not_ };
  struct Compound {
    LogicalType type = LogicalType::and_;
    std::vector<NSPredicate> parts = {};
  };
  using Node = std::variant<Comparison, Compound>;

  /// A predicate in print.
  struct Format {
    std::string text;  ///< "%K" stands for a key path, "%@" for a value.
    /// What they stand for, in their order; a text is in quotes, a list in braces.
    std::vector<std::string> arguments;

    bool operator==(const Format&) const = default;
  };

  explicit NSPredicate(Node node) : node_(std::make_shared<const Node>(std::move(node))) {}

  [[nodiscard]] const Node& node() const { return *node_; }
  /// For a person to read, in tests and in messages:
  ///
  ///     (BookEntity::title == "Emma" || BookEntity::title == std::nullopt).format() ==
  ///         NSPredicate::Format{"%K = %@ OR %K = nil", {"title", "\"Emma\"", "title"}};    // true
  [[nodiscard]] Format format() const;

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

/// A predicate on the objects of class `Entity`: it can't be joined with one on others.
template <typename Entity>
class Predicate : public NSPredicate {
 public:
  explicit Predicate(NSPredicate predicate) : NSPredicate(std::move(predicate)) {}
};

/// At least one of the parts holds.
template <typename Entity>
[[nodiscard]] Predicate<Entity> anyOf(const std::vector<Predicate<Entity>>& parts) {
  return Predicate<Entity>(
      NSCompoundPredicate::orPredicateWithSubpredicates({parts.begin(), parts.end()}));
}
/// All of the parts hold.
template <typename Entity>
[[nodiscard]] Predicate<Entity> allOf(const std::vector<Predicate<Entity>>& parts) {
  return Predicate<Entity>(
      NSCompoundPredicate::andPredicateWithSubpredicates({parts.begin(), parts.end()}));
}
template <typename Entity>
[[nodiscard]] Predicate<Entity> operator||(const Predicate<Entity>& one,
                                           const Predicate<Entity>& other) {
  return anyOf<Entity>({one, other});
}
template <typename Entity>
[[nodiscard]] Predicate<Entity> operator&&(const Predicate<Entity>& one,
                                           const Predicate<Entity>& other) {
  return allOf<Entity>({one, other});
}
template <typename Entity>
[[nodiscard]] Predicate<Entity> operator!(const Predicate<Entity>& part) {
  return Predicate<Entity>(NSCompoundPredicate::notPredicateWithSubpredicate(part));
}

}  // namespace platform
