#include "Tasks/Rows/TaskCategoryEntity.h"

#include "Tasks/Columns/StoredValues.h"

namespace velloro {

std::optional<IconDisplayRepresentation> TaskCategoryEntity::displayRepresentation() const {
  return storedIcon(text(iconName));
}

std::optional<OxCodableColor> TaskCategoryEntity::color() const {
  return storedColor(text(colorInfo));
}

}  // namespace velloro
