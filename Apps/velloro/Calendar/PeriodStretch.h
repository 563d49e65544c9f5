#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriod.h"

#include <string>

namespace velloro {

/// A period as the commands print it.
struct PeriodStretch {
  std::string type;  ///< "week"
  YYYYMMDD start = {};
  YYYYMMDD finish = {};

  static constexpr auto codingKeys =
      keys(key("type", &PeriodStretch::type), key("start", &PeriodStretch::start),
           key("finish", &PeriodStretch::finish));

  [[nodiscard]] static PeriodStretch of(const TaskFrequencyPeriod& period);
};

}  // namespace velloro
