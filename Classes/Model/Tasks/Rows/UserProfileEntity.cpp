#include "Tasks/Rows/UserProfileEntity.h"

#include "Tasks/Columns/StoredValues.h"

namespace velloro {

std::optional<IconDisplayRepresentation> UserProfileEntity::displayRepresentation() const {
  return storedIcon(text(iconName));
}

}  // namespace velloro
