#pragma once

#include "Foundation/CodingKeys.h"
#include "Tasks/TaskLogEntryEntity.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// An entry of a log, as `velloro log` tells it.
struct LogReport {
  std::string uniqueId;
  std::string type;  ///< "completed_manually"
  YYYYMMDD date = {};
  std::optional<TaskLogEntryPeriod> period;
  double progress = 0;       ///< The entry's own amount.
  double progressTotal = 0;  ///< The period's up to and with it.
  std::optional<Date> created;
  std::string timeZone;

  static constexpr auto codingKeys =
      keys(key("uniqueId", &LogReport::uniqueId), key("type", &LogReport::type),
           key("date", &LogReport::date), key("period", &LogReport::period),
           key("progress", &LogReport::progress), key("progressTotal", &LogReport::progressTotal),
           key("created", &LogReport::created), key("timeZone", &LogReport::timeZone));

  [[nodiscard]] static LogReport of(const TaskLogEntryEntity& entry);
};

/// One line an entry.
[[nodiscard]] std::string table(const std::vector<LogReport>& reports);

}  // namespace velloro
