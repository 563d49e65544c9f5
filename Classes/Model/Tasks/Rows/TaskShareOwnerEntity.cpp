#include "Tasks/Rows/TaskShareOwnerEntity.h"

#include "Tasks/Columns/StoredValues.h"

namespace velloro {

std::optional<std::string> TaskShareOwnerEntity::displayName() const {
  const auto contact = value(cnFormattedName);
  return contact ? contact : value(ckUserDisplayName);
}

std::optional<IconDisplayRepresentation> TaskShareOwnerEntity::displayRepresentation() const {
  return storedIcon(text(imageName));
}

}  // namespace velloro
