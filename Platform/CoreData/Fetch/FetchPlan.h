#pragma once

#include "CoreData/Fetch/BoundKeyPath.h"
#include "CoreData/Fetch/NSFetchRequest.h"

#include <set>

namespace platform {

/// A predicate as an entity understands it: one tree, written as SQL for rows and asked directly
/// of objects with unsaved changes.
struct BoundPredicate {
  const NSPredicate::Node* node = nullptr;
  std::optional<BoundKeyPath> path = {};   ///< Of a comparison.
  std::vector<BoundPredicate> parts = {};  ///< Of a compound.

  [[nodiscard]] bool matches(const NSManagedObject& object) const;
};

/// SQL and what stands for its question marks.
struct SqlText {
  std::string text;
  PropertyValues values;
};

/// A fetch request as an entity understands it.
class FetchPlan {
 public:
  /// Fails with a `StoreError` (`invalidRequest`) for a key path that the entity doesn't have.
  [[nodiscard]] static Result<FetchPlan> make(const NSFetchRequest& request,
                                              const NSEntityDescription& entity);

  /// "SELECT `columns` FROM …" with the conditions, the order, and the limit unless it is 0.
  [[nodiscard]] SqlText select(std::string_view columns, std::size_t limit) const;
  /// The same without conditions, order and limit.
  [[nodiscard]] SqlText selectAll(std::string_view columns) const;
  [[nodiscard]] bool matches(const NSManagedObject& object) const;
  /// Sorts as the file does.
  void sort(std::vector<std::shared_ptr<NSManagedObject>>& objects) const;

  [[nodiscard]] const NSEntityDescription& entity() const { return *entity_; }
  /// The entities, besides the fetched one itself, whose rows have a say in the result.
  [[nodiscard]] const std::set<const NSEntityDescription*>& otherEntities() const {
    return otherEntities_;
  }
  /// Whether relations from many to many have a say.
  [[nodiscard]] bool readsLinks() const { return readsLinks_; }

 private:
  Result<BoundPredicate> bind(const NSPredicate& predicate);
  Result<BoundKeyPath> bind(const std::string& path);

  const NSEntityDescription* entity_ = nullptr;
  std::optional<NSPredicate> source_;  // keeps the nodes
  std::optional<BoundPredicate> predicate_;
  struct SortPath {
    BoundKeyPath path;
    bool ascending;
  };
  std::vector<SortPath> sortPaths_;
  std::set<const NSEntityDescription*> otherEntities_;
  bool readsLinks_ = false;
};

}  // namespace platform
