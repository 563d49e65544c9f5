#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

namespace velloro {

/// What a sample of `sleepAnalysis` says of its time. The raw value is the integer that the sample
/// holds (`OxHKSample::SampleValue::category`): the store's own number, which does not follow the
/// order of the cases.
enum class OxHKCategoryValueSleepAnalysis {
  inBed,
  awake,
  asleepUnspecified,
  asleepCore,
  asleepDeep,
  asleepREM
};

constexpr auto rawValues(std::type_identity<OxHKCategoryValueSleepAnalysis>) {
  using enum OxHKCategoryValueSleepAnalysis;
  return rawIntegers<OxHKCategoryValueSleepAnalysis>({{inBed, 0},
                                                      {awake, 2},
                                                      {asleepUnspecified, 1},
                                                      {asleepCore, 3},
                                                      {asleepDeep, 4},
                                                      {asleepREM, 5}});
}

}  // namespace velloro
