#include "Tasks/Rows/TaskShareEntity.h"

#include "Tasks/Columns/StoredValues.h"

namespace velloro {

std::optional<TaskShareEntity::ShareStatus> TaskShareEntity::shareStatus() const {
  return enumValue<ShareStatus>(status);
}

std::vector<SharedTaskParticipant> TaskShareEntity::participants() const {
  using Participants = std::vector<SharedTaskParticipant>;
  return storedJSON<Participants>(value(participantsJson)).value_or(Participants());
}

std::optional<TaskCloudSummary> TaskShareEntity::summary() const {
  auto stored = value(summaryJson);
  return stored ? std::optional(std::move(stored->summary)) : std::nullopt;
}

}  // namespace velloro
