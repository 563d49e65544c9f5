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

/// An entry of a log, as `velloro log` prints it.
struct LogReport {
  std::string taskId;
  std::string title;
  std::string uniqueId;
  std::string type;   ///< "completed_manually"
  std::string state;  ///< The same in words: "done".
  YYYYMMDD date = {};
  std::optional<TaskLogEntryPeriod> period;
  std::string periodType;    ///< "day"; empty where the entry has no period.
  double progress = 0;       ///< The entry's own amount.
  double progressTotal = 0;  ///< That of the period, up to and including this entry.
  std::optional<Date> created;
  std::string timeZone;
  /// For the text alone.
  AmountText amounts = AmountText(std::nullopt);

  static constexpr auto codingKeys =
      keys(key("taskId", &LogReport::taskId), key("title", &LogReport::title),
           key("uniqueId", &LogReport::uniqueId), key("type", &LogReport::type),
           key("state", &LogReport::state), key("date", &LogReport::date),
           key("period", &LogReport::period), key("periodType", &LogReport::periodType),
           key("progress", &LogReport::progress), key("progressTotal", &LogReport::progressTotal),
           key("created", &LogReport::created), key("timeZone", &LogReport::timeZone));

  [[nodiscard]] static LogReport of(const TaskLogEntryEntity& entry, const TaskEntity& task);
  /// The stored entries that the outlook of the task leaves, and the closings that the next writer
  /// will add, from the oldest.
  /// \param entries From the oldest.
  [[nodiscard]] static std::vector<LogReport> ofLog(const TaskEntity& task,
                                                    const TaskEntity::Entries& entries,
                                                    const std::vector<PeriodClosing>& closings,
                                                    Date now);
};

/// One line per entry, under a heading.
[[nodiscard]] std::string table(const std::vector<LogReport>& reports, bool hasTitles);

}  // namespace velloro
