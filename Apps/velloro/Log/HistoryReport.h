#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "VelloroCore/Log/TaskRecentHistory.h"

#include <map>
#include <string>
#include <vector>

namespace velloro {

class TaskEntity;

/// "●", "✗", …: how a period shows in a calendar of characters.
[[nodiscard]] const char* calendarSign(TaskCalendarPeriodStatus status);

/// What became of a task's periods, as `velloro history` prints it.
struct HistoryReport {
  struct Stretch {
    std::string type;  ///< "week"
    YYYYMMDD start = {};
    YYYYMMDD finish = {};
    TaskCalendarPeriodStatus status = TaskCalendarPeriodStatus::past;
    std::string state;  ///< The status in words: "done".

    static constexpr auto codingKeys = keys(
        key("type", &Stretch::type), key("start", &Stretch::start), key("finish", &Stretch::finish),
        key("status", &Stretch::status), key("state", &Stretch::state));
  };

  std::string uniqueId;
  std::string title;
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;  ///< For the text alone.
  std::vector<Stretch> periods;                  ///< From the oldest on.
  PreviousDaysSuccess shortTerm, longTerm;

  static constexpr auto codingKeys =
      keys(key("uniqueId", &HistoryReport::uniqueId), key("title", &HistoryReport::title),
           key("periods", &HistoryReport::periods), key("shortTerm", &HistoryReport::shortTerm),
           key("longTerm", &HistoryReport::longTerm));

  [[nodiscard]] static HistoryReport of(const TaskEntity& task, YYYYMMDD from, YYYYMMDD to,
                                        Date now);

  /// Days as grids of months, other periods a line each, and the shares of success.
  [[nodiscard]] std::string text() const;

 private:
  [[nodiscard]] std::string months() const;
  [[nodiscard]] std::string month(YYYYMM month,
                                  const std::map<YYYYMMDD, const char*>& glyphs) const;
  [[nodiscard]] std::string lines() const;
};

}  // namespace velloro
