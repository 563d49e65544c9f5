#pragma once

#include "OxHealthKit/OxHKSampleType.h"

namespace velloro {

/// A type of thing that a health store can be asked for: samples, or the daily summary of the
/// activity rings.
///
///     JSONEncoder{}.encode(OxHKObjectType::sample(OxHKSampleType::workout()));
///         // {"sample":{"workout":{}}}
///     JSONEncoder{}.encode(OxHKObjectType::activitySummary());   // {"activitySummary":{}}
struct OxHKObjectType {
  struct ActivitySummary {
    auto operator<=>(const ActivitySummary&) const = default;
  };

  std::variant<OxHKSampleType, ActivitySummary> value;

  [[nodiscard]] static constexpr OxHKObjectType sample(OxHKSampleType type) { return {type}; }
  [[nodiscard]] static constexpr OxHKObjectType activitySummary() { return {ActivitySummary{}}; }

  auto operator<=>(const OxHKObjectType&) const = default;
  static constexpr auto codingCases =
      cases(&OxHKObjectType::value, payload("sample"), payload("activitySummary"));
};

}  // namespace velloro
