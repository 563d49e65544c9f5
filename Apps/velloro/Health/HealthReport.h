#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "HealthImport/HealthImport.h"
#include "HealthKit/HKHealthStore.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Health/QualifyInfo.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// A sample, as `velloro health` prints it.
struct SampleReport {
  std::string id;
  std::string type;  ///< "stepCount"
  Date start;
  Date end;
  std::optional<double> value =
      {};  ///< An amount, the number of a state, or the seconds of a workout.
  std::optional<std::string> unit = {};
  std::string source;
  std::optional<std::string> activity = {};

  static constexpr auto codingKeys =
      keys(key("id", &SampleReport::id), key("type", &SampleReport::type),
           key("start", &SampleReport::start), key("end", &SampleReport::end),
           key("value", &SampleReport::value), key("unit", &SampleReport::unit),
           key("source", &SampleReport::source), key("activity", &SampleReport::activity));

  [[nodiscard]] static SampleReport of(const HKSample& sample);
};
[[nodiscard]] std::string table(const std::vector<SampleReport>& samples);

struct SourceReport {
  std::string name;
  std::string device;  ///< "watch", "phone" or "other"
  std::int64_t samples = 0;

  static constexpr auto codingKeys =
      keys(key("name", &SourceReport::name), key("device", &SourceReport::device),
           key("samples", &SourceReport::samples));
};
[[nodiscard]] std::string table(const std::vector<SourceReport>& sources);

/// In words.
[[nodiscard]] std::string text(const HealthImportReport& report);
[[nodiscard]] std::string text(const QualifyInfo& info, Date now);

}  // namespace velloro
