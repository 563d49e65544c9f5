#include "VelloroCore/Types/HealthType.h"

namespace velloro {

std::vector<HealthType> timedTypes() {
  std::vector<HealthType> types;
  for (const auto& row : health_type_detail::rows) {
    if ((row.traits & health_type_detail::timed) != 0) types.push_back(row.value);
  }
  return types;
}

}  // namespace velloro
