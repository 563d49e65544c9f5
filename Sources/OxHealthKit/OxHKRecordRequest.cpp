#include "OxHealthKit/OxHKRecordRequest.h"

namespace velloro {

std::set<OxHKSampleType> OxHKRecordRequest::Samples::sampleTypes() const {
  using enum OxHKSampleType::QuantityType;
  constexpr auto bloodPressureType =
      OxHKSampleType::correlation(OxHKSampleType::CorrelationType::bloodPressure);
  const auto* uncorrelated = std::get_if<Uncorrelated>(&value);
  const auto type = uncorrelated != nullptr ? uncorrelated->first : bloodPressureType;
  if (type != bloodPressureType) return {type};
  return {OxHKSampleType::quantity(bloodPressureSystolic),
          OxHKSampleType::quantity(bloodPressureDiastolic)};
}

}  // namespace velloro
