#include "Tasks/Columns/TaskCloudSummaryValueTransformer.h"

#include "Tasks/Columns/StoredJSON.h"
#include "VelloroTaskShare/TaskCloudSummary.h"

namespace velloro {

void TaskCloudSummaryValueTransformer::registerUnderItsName() {
  setValueTransformer(std::make_shared<TaskCloudSummaryValueTransformer>(), name);
}

std::optional<Data> TaskCloudSummaryValueTransformer::transformedValue(
    const std::any& value) const {
  const auto* container = std::any_cast<TaskCloudSummaryCoreDataContainer>(&value);
  if (container == nullptr) return std::nullopt;
  try {
    return Data(JSONEncoder{}.encode(*container));
  } catch (const EncodingError&) {
    return std::nullopt;  // a number that JSON doesn't have
  }
}

std::any TaskCloudSummaryValueTransformer::reverseTransformedValue(const Data& data) const {
  auto container =
      fromStoredJSON<TaskCloudSummaryCoreDataContainer>(data.text(), "TaskCloudSummary");
  return container ? std::any(*std::move(container)) : std::any();
}

bool TaskCloudSummaryValueTransformer::isWhole(const Data& data) const {
  return isWholeJSON<TaskCloudSummaryCoreDataContainer>(data.text());
}

}  // namespace velloro
