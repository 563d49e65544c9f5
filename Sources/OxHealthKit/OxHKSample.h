#pragma once

#include "OxHealthKit/OxHKQuantity.h"
#include "OxHealthKit/OxHKSampleMetadata.h"
#include "OxHealthKit/OxHKWorkout.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace velloro {

/// The device that measured a sample. What it does not say of itself is absent.
struct OxHKDevice {
  std::optional<std::string> name = {};
  std::optional<std::string> manufacturer = {};
  std::optional<std::string> model = {};
  std::optional<std::string> hardwareVersion = {};
  std::optional<std::string> firmwareVersion = {};
  std::optional<std::string> softwareVersion = {};
  std::optional<std::string> localIdentifier = {};
  std::optional<std::string> udiDeviceIdentifier = {};

  bool operator==(const OxHKDevice&) const = default;
  static constexpr auto codingKeys =
      keys(key("name", &OxHKDevice::name), key("manufacturer", &OxHKDevice::manufacturer),
           key("model", &OxHKDevice::model), key("hardwareVersion", &OxHKDevice::hardwareVersion),
           key("firmwareVersion", &OxHKDevice::firmwareVersion),
           key("softwareVersion", &OxHKDevice::softwareVersion),
           key("localIdentifier", &OxHKDevice::localIdentifier),
           key("udiDeviceIdentifier", &OxHKDevice::udiDeviceIdentifier));
};

/// One record of a health store: that something was so from `start` to `end`. Its type is not part
/// of it. Nothing is checked: other programs' samples may end before they start.
///
///     OxHKSample{.start = now, .end = now + 60,
///                .value = OxHKSample::SampleValue::quantity({OxHKUnit::count(), 110})};
struct OxHKSample {
  /// In JSON {"quantity": {"unit": "count", "doubleValue": 110}}, {"category": 1}, {"workout": …}.
  struct SampleValue {
    std::variant<OxHKQuantity, std::int64_t, OxHKWorkout> value;

    [[nodiscard]] static SampleValue quantity(OxHKQuantity quantity) {
      return {std::move(quantity)};
    }
    /// The raw value of the sample type's states, such as `OxHKCategoryValueSleepAnalysis`.
    [[nodiscard]] static SampleValue category(std::int64_t state) { return {state}; }
    [[nodiscard]] static SampleValue workout(OxHKWorkout workout) { return {std::move(workout)}; }

    bool operator==(const SampleValue&) const = default;
    static constexpr auto codingCases =
        cases(&SampleValue::value, payload("quantity"), payload("category"), payload("workout"));
  };

  Date start = {};
  Date end = {};
  /// Absent for a type whose samples hold more than the program reads, such as an audiogram.
  std::optional<SampleValue> value = {};
  std::optional<OxHKDevice> device = {};
  std::optional<OxHKSampleMetadata> metadata = {};

  bool operator==(const OxHKSample&) const = default;
  static constexpr auto codingKeys =
      keys(key("start", &OxHKSample::start), key("end", &OxHKSample::end),
           key("value", &OxHKSample::value), key("device", &OxHKSample::device),
           key("metadata", &OxHKSample::metadata));
};

}  // namespace velloro
