#pragma once

#include "OxHealthKit/OxHKSample.h"
#include "OxHealthKit/OxHKSampleType.h"

#include <set>
#include <utility>
#include <variant>
#include <vector>

namespace velloro {

/// Samples to be written to a health store.
///
///     const auto samples =
///         OxHKRecordRequest::Samples::uncorrelated(OxHKSampleType::workout(), {});
///     samples.sampleTypes();                // {OxHKSampleType::workout()}
///     const OxHKRecordRequest request{samples};
struct OxHKRecordRequest {
  /// In JSON {"bloodPressure": {"_0": systolic, "_1": diastolic}} and
  /// {"uncorrelated": {"_0": type, "_1": [samples]}}.
  struct Samples {
    using BloodPressure = std::pair<OxHKSample, OxHKSample>;
    using Uncorrelated = std::pair<OxHKSampleType, std::vector<OxHKSample>>;

    std::variant<BloodPressure, Uncorrelated> value;

    /// The two readings of one measurement, to be written as one.
    [[nodiscard]] static Samples bloodPressure(OxHKSample systolic, OxHKSample diastolic) {
      return {BloodPressure{std::move(systolic), std::move(diastolic)}};
    }
    /// Samples of one type, each for itself.
    [[nodiscard]] static Samples uncorrelated(OxHKSampleType type,
                                              std::vector<OxHKSample> samples) {
      return {Uncorrelated{type, std::move(samples)}};
    }

    /// The types that a person must allow the program to write. For a correlation these are the
    /// types of its parts, since a store knows no permission for the whole.
    [[nodiscard]] std::set<OxHKSampleType> sampleTypes() const;

    bool operator==(const Samples&) const = default;
    static constexpr auto codingCases =
        cases(&Samples::value, keyed("bloodPressure"), keyed("uncorrelated"));
  };

  Samples samples;

  bool operator==(const OxHKRecordRequest&) const = default;
  static constexpr auto codingKeys = keys(key("samples", &OxHKRecordRequest::samples));
};

}  // namespace velloro
