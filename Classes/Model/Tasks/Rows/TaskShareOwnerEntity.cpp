#include "Tasks/Rows/TaskShareOwnerEntity.h"

namespace velloro {

std::optional<std::string> TaskShareOwnerEntity::displayName() const {
  const auto contact = value(cnFormattedName);
  return contact ? contact : value(ckUserDisplayName);
}

}  // namespace velloro
