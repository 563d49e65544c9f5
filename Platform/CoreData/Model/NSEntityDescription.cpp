#include "CoreData/Model/NSEntityDescription.h"

#include "CoreData/Context/NSManagedObject.h"

#include <algorithm>

namespace platform {
namespace {

template <typename Property>
const Property* find(const std::vector<Property>& properties, std::string_view name) {
  const auto found = std::ranges::find(properties, name, &Property::name);
  return found != properties.end() ? &*found : nullptr;
}

}  // namespace

NSEntityDescription::NSEntityDescription(std::string name, Factory factory)
    : name_(std::move(name)), factory_(factory) {}

const NSAttributeDescription* NSEntityDescription::attribute(std::string_view name) const {
  return find(attributes_, name);
}

const NSRelationshipDescription* NSEntityDescription::relationship(std::string_view name) const {
  return find(relationships_, name);
}

std::size_t NSEntityDescription::add(NSAttributeDescription attribute) {
  attributes_.push_back(std::move(attribute));
  return attributes_.size() - 1;
}

std::size_t NSEntityDescription::add(NSRelationshipDescription relationship) {
  relationships_.push_back(std::move(relationship));
  return relationships_.size() - 1;
}

std::shared_ptr<NSManagedObject> NSEntityDescription::makeObject() const {
  return factory_ != nullptr ? factory_() : std::make_shared<NSManagedObject>();
}

RowValues NSEntityDescription::defaultValues() const {
  auto values = std::make_shared<PropertyValue[]>(slots_.size());
  std::ranges::transform(slots_, values.get(), &Slot::defaultValue);
  return values;
}

}  // namespace platform
