#include "Tasks/UserProfileEntity.h"

#include "Tasks/StoredValues.h"

namespace velloro {

std::optional<IconDisplayRepresentation> UserProfileEntity::displayRepresentation() const {
  return storedIcon(text(iconName));
}

}  // namespace velloro
