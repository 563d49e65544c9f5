#pragma once

#include "CoreData/Model/NSEntityDescription.h"

#include <map>
#include <span>

namespace platform {

/// The entities of a store and how their relations fit together. Made once, of descriptions that
/// outlive it, each of which belongs to this model alone:
///
///     static const NSManagedObjectModel model({&BookEntity::description, &TagEntity::description,
///                                       &AuthorEntity::description, &CoverEntity::description});
///     model.entity("Book");      // &BookEntity::description
///
/// A declaration that makes no sense throws a `StoreError` (`invalidRequest`): two things of one
/// name, an index of something unknown, a relation whose destination or inverse is missing or
/// doesn't fit.
///
/// Of a relation and its inverse one side keeps the fact: the to-one side; of two to-one sides the
/// one that is owned (whose inverse cascades), else the first in the model.
class NSManagedObjectModel {
 public:
  explicit NSManagedObjectModel(std::vector<NSEntityDescription*> entities);
  NSManagedObjectModel(const NSManagedObjectModel&) = delete;
  NSManagedObjectModel& operator=(const NSManagedObjectModel&) = delete;

  [[nodiscard]] std::span<NSEntityDescription* const> entities() const { return entities_; }
  /// Null when there is none of that name.
  [[nodiscard]] const NSEntityDescription* entity(std::string_view name) const;

 private:
  void settle(NSEntityDescription& entity);
  void settle(NSEntityDescription& entity, NSRelationshipDescription& relationship);
  void addSlots(NSEntityDescription& entity);

  std::vector<NSEntityDescription*> entities_;
  std::map<std::string, NSEntityDescription*, std::less<>> byName_;
};

}  // namespace platform
