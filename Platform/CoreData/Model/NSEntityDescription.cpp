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

std::size_t NSEntityDescription::add(std::string_view name, const NSColumnType& column) {
  return add(name, column, column.defaultValue());
}

std::size_t NSEntityDescription::add(std::string_view name, const NSColumnType& column,
                                     PropertyValue defaultValue) {
  attributes_.push_back({.name = std::string(name),
                         .type = column.type,
                         .isOptional = column.isOptional,
                         .defaultValue = std::move(defaultValue),
                         .comparison = column.comparison,
                         .canRead = column.canRead});
  return attributes_.size() - 1;
}

std::size_t NSEntityDescription::addTransformable(std::string_view name,
                                                  std::string_view transformerName) {
  attributes_.push_back({.name = std::string(name),
                         .type = NSAttributeType::transformable,
                         .isOptional = true,
                         .valueTransformerName = std::string(transformerName)});
  return attributes_.size() - 1;
}

std::size_t NSEntityDescription::add(const NSRelationshipDeclaration& declaration) {
  relationships_.push_back({.name = std::string(declaration.name),
                            .destinationName = std::string(declaration.destinationName),
                            .inverseName = std::string(declaration.inverseName),
                            .isToMany = declaration.isToMany,
                            .deleteRule = declaration.deleteRule});
  return relationships_.size() - 1;
}

void NSEntityDescription::addIndex(std::initializer_list<std::string_view> names) {
  indexes_.emplace_back(names.begin(), names.end());
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
