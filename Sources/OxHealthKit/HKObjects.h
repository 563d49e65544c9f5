#pragma once

#include "HealthKit/HKHealthStore.h"
#include "OxHealthKit/OxHKObjectType.h"
#include "OxHealthKit/OxHKSample.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

namespace velloro {

// The records as objects of the health store.

/// "HKQuantityTypeIdentifierStepCount" of `stepCount`.
[[nodiscard]] HKObjectType hkObjectType(const OxHKSampleType& type);
[[nodiscard]] HKObjectType hkObjectType(const OxHKObjectType& type);
/// The types of an identifier, and of a case's name: "stepCount", "workout". Absent for others.
[[nodiscard]] std::optional<OxHKSampleType> sampleTypeOfIdentifier(std::string_view identifier);
[[nodiscard]] std::optional<OxHKSampleType> sampleTypeNamed(std::string_view name);
/// The case's name.
[[nodiscard]] std::string_view sampleTypeName(const OxHKSampleType& type);

/// Absent for a text that is no unit.
[[nodiscard]] std::optional<HKUnit> hkUnit(const OxHKUnit& unit);
/// Without a source: the store's own program. An amount whose unit is none is left out.
[[nodiscard]] HKSample hkSample(const OxHKSample& sample, const OxHKSampleType& type);

/// The samples of a type, for who can wait for them. Not on the queue of the store.
[[nodiscard]] Result<std::vector<HKSample>> samplesOf(const HKHealthStore& store,
                                                      const OxHKSampleType& type,
                                                      HKPredicate predicate);

/// One question for several types of quantities, with the same predicate, anchor and interval.
///
/// ```
/// auto query = std::make_shared<HKMultiStatisticsCollectionQuery>();
/// query->quantityTypes = {OxHKSampleType::QuantityType::activeEnergyBurned};
/// execute(*store, query, [](auto collections) { … });
/// ```
class HKMultiStatisticsCollectionQuery {
 public:
  using QuantityType = OxHKSampleType::QuantityType;
  using Collections = std::map<QuantityType, HKStatisticsCollection>;

  std::set<QuantityType> quantityTypes;
  HKPredicate quantitySamplePredicate = {};
  HKStatisticsOptions options = HKStatisticsOptions::cumulativeSum;
  Date anchorDate = {};
  HKStatisticsInterval intervalComponents = {};
};

/// Calls back once, on the queue of the store, when all types are answered or with the first error.
void execute(const HKHealthStore& store,
             const std::shared_ptr<const HKMultiStatisticsCollectionQuery>& query,
             std::function<void(Result<HKMultiStatisticsCollectionQuery::Collections>)> completion);

}  // namespace velloro
