#include "CoreData/Fetch/NSPredicate.h"

#include "CoreData/Context/NSManagedObject.h"
#include "CoreData/Fetch/PredicateParser.h"

namespace platform {

PredicateArgument::PredicateArgument(const NSManagedObject& object)
    : value_(PropertyValue(object.objectID())) {}

PropertyValue PredicateArgument::value() const {
  if (const auto* value = std::get_if<PropertyValue>(&value_)) return *value;
  const auto& list = std::get<PropertyValues>(value_);
  return list.empty() ? PropertyValue() : list.front();
}

PropertyValues PredicateArgument::list() const {
  if (const auto* list = std::get_if<PropertyValues>(&value_)) return *list;
  return {std::get<PropertyValue>(value_)};
}

NSPredicate NSPredicate::format(std::string_view format,
                                const std::vector<PredicateArgument>& arguments) {
  return PredicateParser(format, arguments).parse();
}

NSPredicate NSPredicate::value(bool isTrue) {
  return NSPredicate(Compound{.type = isTrue ? LogicalType::and_ : LogicalType::or_});
}

NSPredicate NSCompoundPredicate::andPredicateWithSubpredicates(std::vector<NSPredicate> parts) {
  using enum NSPredicate::LogicalType;
  return NSPredicate(NSPredicate::Compound{.type = and_, .parts = std::move(parts)});
}

NSPredicate NSCompoundPredicate::orPredicateWithSubpredicates(std::vector<NSPredicate> parts) {
  using enum NSPredicate::LogicalType;
  return NSPredicate(NSPredicate::Compound{.type = or_, .parts = std::move(parts)});
}

NSPredicate NSCompoundPredicate::notPredicateWithSubpredicate(NSPredicate part) {
  using enum NSPredicate::LogicalType;
  return NSPredicate(NSPredicate::Compound{.type = not_, .parts = {std::move(part)}});
}

}  // namespace platform
