#pragma once

#include "CoreData/Model/NSValueTransformer.h"
#include "OxKit/Platform.h"

namespace velloro {

/// Keeps a `TaskCloudSummaryCoreDataContainer` as its JSON. Anything else has no bytes, and what
/// can't be read is no value.
class TaskCloudSummaryValueTransformer final : public NSValueTransformer {
 public:
  static constexpr const char* name = "TaskCloudSummaryValueTransformer";
  [[nodiscard]] static constexpr bool allowsReverseTransformation() { return true; }
  static void registerUnderItsName();

  [[nodiscard]] std::optional<Data> transformedValue(const std::any& value) const override;
  [[nodiscard]] std::any reverseTransformedValue(const Data& data) const override;
  [[nodiscard]] bool isWhole(const Data& data) const override;
};

}  // namespace velloro
