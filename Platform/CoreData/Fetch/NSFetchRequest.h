#pragma once

#include "CoreData/Fetch/NSPredicate.h"
#include "CoreData/Model/NSEntityDescription.h"

#include <optional>

namespace platform {

/// By which value objects are sorted: a key path through to-one relations. Nothing comes before
/// anything else; numbers go by size, texts byte by byte.
struct NSSortDescriptor {
  std::string key;
  bool ascending = true;
};

/// The same of the objects of class `Entity` alone; made by `ascending` and `descending` of a
/// declaration.
template <typename Entity>
struct SortDescriptor : NSSortDescriptor {
  explicit SortDescriptor(NSSortDescriptor descriptor) : NSSortDescriptor(std::move(descriptor)) {}
};

/// Which objects a context is asked for, and in which order. A value.
///
///     using Book = BookEntity;
///     auto request = NSFetchRequest::of<Book>(Book::title == "Emma" && Book::weight > 0.5,
///                                             {Book::day.descending()});
///     request.setFetchLimit(10);
class NSFetchRequest {
 public:
  explicit NSFetchRequest(std::string entityName) : entityName_(std::move(entityName)) {}
  /// The objects of class `Entity` for which the predicate holds; all of them without one.
  template <typename Entity>
  [[nodiscard]] static NSFetchRequest of(std::optional<Predicate<Entity>> predicate = {},
                                         const std::vector<SortDescriptor<Entity>>& order = {});

  void setPredicate(std::optional<NSPredicate> predicate) { predicate_ = std::move(predicate); }
  /// The first decides; each next one where those before find no difference.
  void setSortDescriptors(std::vector<NSSortDescriptor> descriptors) {
    sortDescriptors_ = std::move(descriptors);
  }
  /// 0 for no limit, as at the start.
  void setFetchLimit(std::size_t limit) { fetchLimit_ = limit; }
  /// Whether objects come without their values, each to be read when it is first looked at. That
  /// pays only where few are looked at; at the start it is false.
  void setReturnsObjectsAsFaults(bool asFaults) { returnsObjectsAsFaults_ = asFaults; }

  [[nodiscard]] const std::string& entityName() const { return entityName_; }
  [[nodiscard]] const std::optional<NSPredicate>& predicate() const { return predicate_; }
  [[nodiscard]] const std::vector<NSSortDescriptor>& sortDescriptors() const {
    return sortDescriptors_;
  }
  [[nodiscard]] std::size_t fetchLimit() const { return fetchLimit_; }
  [[nodiscard]] bool returnsObjectsAsFaults() const { return returnsObjectsAsFaults_; }

 private:
  std::string entityName_;
  std::optional<NSPredicate> predicate_;
  std::vector<NSSortDescriptor> sortDescriptors_;
  std::size_t fetchLimit_ = 0;
  bool returnsObjectsAsFaults_ = false;
};

template <typename Entity>
NSFetchRequest NSFetchRequest::of(std::optional<Predicate<Entity>> predicate,
                                  const std::vector<SortDescriptor<Entity>>& order) {
  NSFetchRequest request{std::string(platform::entityName<Entity>())};
  request.predicate_ = std::move(predicate);
  request.sortDescriptors_.assign(order.begin(), order.end());
  return request;
}

}  // namespace platform
