#include "CoreData/Fetch/FetchPlan.h"

#include "CoreData/Context/NSManagedObject.h"
#include "CoreData/Fetch/SqlWriter.h"
#include "Foundation/Values/Try.h"
#include "SQLite/StoreError.h"

#include <algorithm>
#include <numeric>

namespace platform {
namespace {

using Operator = NSPredicate::Operator;
using Storage = NSRelationshipDescription::Storage;

bool beginsWith(const PropertyValue& left, const PropertyValue& right) {
  const auto* text = std::get_if<std::string>(&left);
  const auto* prefix = std::get_if<std::string>(&right);
  return text != nullptr && prefix != nullptr && text->starts_with(*prefix);
}

bool compare(Operator comparison, const PropertyValue& left, const PropertyValue& right) {
  const auto difference = order(left, right);
  const bool isOrdered = !isNull(left) && !isNull(right);
  switch (comparison) {
    case Operator::equal:
    case Operator::in:
      return difference == 0;
    case Operator::notEqual:
      return difference != 0;
    case Operator::less:
      return isOrdered && difference < 0;
    case Operator::lessOrEqual:
      return isOrdered && difference <= 0;
    case Operator::greater:
      return isOrdered && difference > 0;
    case Operator::greaterOrEqual:
      return isOrdered && difference >= 0;
    case Operator::beginsWith:
      break;
  }
  return beginsWith(left, right);
}

/// As SQLite's NOCASE has it: of "a" to "z" alone.
PropertyValue lowerCase(PropertyValue value) {
  if (auto* text = std::get_if<std::string>(&value)) {
    for (char& c : *text) {
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
  }
  return value;
}

}  // namespace

bool BoundPredicate::matches(const NSManagedObject& object) const {
  if (const auto* compound = std::get_if<NSPredicate::Compound>(node)) {
    const auto holds = [&](const BoundPredicate& part) { return part.matches(object); };
    switch (compound->type) {
      case NSPredicate::LogicalType::and_:
        return std::ranges::all_of(parts, holds);
      case NSPredicate::LogicalType::or_:
        return std::ranges::any_of(parts, holds);
      default:
        return !holds(parts.front());
    }
  }
  const auto& comparison = std::get<NSPredicate::Comparison>(*node);
  const bool foldsCase = path->ignoresCase();
  return std::ranges::any_of(path->values(object), [&](const PropertyValue& one) {
    return std::ranges::any_of(comparison.values, [&](const PropertyValue& other) {
      return foldsCase ? compare(comparison.comparison, lowerCase(one), lowerCase(other))
                       : compare(comparison.comparison, one, other);
    });
  });
}

Result<FetchPlan> FetchPlan::make(const NSFetchRequest& request,
                                  const NSEntityDescription& entity) {
  FetchPlan plan;
  plan.entity_ = &entity;
  plan.source_ = request.predicate();
  if (plan.source_) {
    auto bound = TRY(plan.bind(*plan.source_));
    plan.predicate_ = std::move(bound);
  }
  for (const NSSortDescriptor& descriptor : request.sortDescriptors()) {
    auto path = TRY(plan.bind(descriptor.key));
    plan.sortPaths_.push_back({std::move(path), descriptor.ascending});
  }
  return plan;
}

Result<BoundPredicate> FetchPlan::bind(const NSPredicate& predicate) {
  BoundPredicate bound{.node = &predicate.node()};
  if (const auto* compound = std::get_if<NSPredicate::Compound>(bound.node)) {
    for (const NSPredicate& part : compound->parts) {
      auto boundPart = bind(part);
      if (!boundPart) return boundPart;
      bound.parts.push_back(std::move(*boundPart));
    }
    return bound;
  }
  const auto& comparison = std::get<NSPredicate::Comparison>(*bound.node);
  auto path = bind(comparison.keyPath);
  if (!path) return std::unexpected(path.error());
  if (path->isToMany != comparison.isAny) {
    return failure<StoreError>(StoreError::Kind::invalidRequest,
                               "\"" + comparison.keyPath +
                                   "\": ANY stands before a path through a to-many relation, and "
                                   "before no other");
  }
  bound.path = std::move(*path);
  return bound;
}

Result<BoundKeyPath> FetchPlan::bind(const std::string& path) {
  auto bound = BoundKeyPath::bind(*entity_, path);
  if (!bound) return bound;
  for (const NSRelationshipDescription* relationship : bound->relationships) {
    const bool isKey = relationship == bound->relationships.back() && !bound->attribute;
    if (relationship->storage == Storage::links) readsLinks_ = true;
    if (relationship->storage == Storage::inverse || !isKey) {
      otherEntities_.insert(relationship->destination);
    }
  }
  return bound;
}

SqlText FetchPlan::select(std::string_view columns, std::size_t limit) const {
  SqlWriter writer(*entity_, columns);
  if (predicate_) {
    writer.write(" WHERE ");
    writer.write(*predicate_);
  }
  const char* separator = " ORDER BY ";
  for (const SortPath& sortPath : sortPaths_) {
    writer.write(std::exchange(separator, ", "));
    writer.write(sortPath.path);
    if (!sortPath.ascending) writer.write(" DESC");
  }
  if (limit > 0) writer.write(" LIMIT " + std::to_string(limit));
  return std::move(writer).take();
}

SqlText FetchPlan::selectAll(std::string_view columns) const {
  return SqlWriter(*entity_, columns).take();
}

bool FetchPlan::matches(const NSManagedObject& object) const {
  return !predicate_ || predicate_->matches(object);
}

void FetchPlan::sort(std::vector<std::shared_ptr<NSManagedObject>>& objects) const {
  if (sortPaths_.empty()) return;
  std::vector<PropertyValues> keys;  // read once per object, not once per comparison
  for (const auto& object : objects) {
    PropertyValues& own = keys.emplace_back();
    for (const SortPath& sortPath : sortPaths_) {
      PropertyValue& key = own.emplace_back(sortPath.path.values(*object).front());
      if (sortPath.path.ignoresCase()) key = lowerCase(std::move(key));
    }
  }
  std::vector<std::size_t> places(objects.size());
  std::iota(places.begin(), places.end(), 0U);
  std::ranges::stable_sort(places, [&](std::size_t one, std::size_t other) {
    for (std::size_t i = 0; i < sortPaths_.size(); ++i) {
      const auto difference = order(keys[one][i], keys[other][i]);
      if (difference != 0) return (difference < 0) == sortPaths_[i].ascending;
    }
    return false;
  });
  std::vector<std::shared_ptr<NSManagedObject>> sorted;
  for (const std::size_t place : places) sorted.push_back(std::move(objects[place]));
  objects = std::move(sorted);
}

}  // namespace platform
