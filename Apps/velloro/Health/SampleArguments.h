#pragma once

#include "Host/HostStore.h"
#include "OxHealthKit/HKObjects.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// What `velloro health add` is told of a sample.
struct SampleArguments {
  std::string type;
  std::optional<std::string> value, unit, start, end, category, source, task, activity;
  std::vector<std::string> metadata, distance, energy;
  bool isIndoor = false;
  bool isOutdoor = false;

  /// \throws UsageError
  [[nodiscard]] HKSample sample(const HostStore& store, Date now) const;

 private:
  void setValue(HKSample& sample, const OxHKSampleType& of) const;
  void setQuantity(HKSample& sample, OxHKSampleType::QuantityType of) const;
  void setWorkout(HKSample& sample) const;
  void setMetadata(HKSample& sample, const HostStore& store) const;
};

/// A type of samples by its case's name: "stepCount". \throws UsageError
[[nodiscard]] OxHKSampleType sampleTypeArgument(const std::string& name, const std::string& text);

}  // namespace velloro
