#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "VelloroCore/Status/PeriodClosing.h"
#include "velloro/Output/AmountText.h"

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
  /// Of an entry that whoever writes next will make.
  [[nodiscard]] static LogReport of(const PeriodClosing& closing, const TaskEntity& task);
  /// Of the stored entries that the outlook of the task leaves, from the oldest, with those
  /// closings that lie within the days of the request.
  [[nodiscard]] static std::vector<LogReport> ofLog(const TaskEntity& task,
                                                    const TaskEntity::Entries& entries,
                                                    const std::vector<PeriodClosing>& closings,
                                                    const YYYYMMDD::Range& dates);
};

/// One line an entry.
[[nodiscard]] std::string table(const std::vector<LogReport>& reports, const AmountText& amounts);

}  // namespace velloro
