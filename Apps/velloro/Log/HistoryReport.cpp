#include "velloro/Log/HistoryReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "OxDateTime/YYYYMM.h"
#include "Tasks/Rows/TaskEntity.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Tasks/TaskReport.h"

#include <algorithm>

namespace velloro {
namespace {

struct Sign {
  TaskCalendarPeriodStatus status;
  const char* glyph;
  const char* words;
};

using enum TaskCalendarPeriodStatus;
constexpr Sign signs[] = {{completed, "●", "done"},       {missed, "✗", "missed"},
                          {skipped, "–", "skipped"},      {allowedMiss, "◌", "allowed"},
                          {current, "○", "open"},         {currentCompleted, "●", "done so far"},
                          {currentMissed, "✗", "missed"}, {currentAllowedMiss, "◌", "allowed"},
                          {future, " ", "to come"},       {past, "·", "before the task was made"}};

const Sign& signOf(TaskCalendarPeriodStatus status) {
  return *std::ranges::find(signs, status, &Sign::status);
}

std::string percent(const PreviousDaysSuccess& success) {
  return stringWithFormat("%-10s %3.0f %% of %lld\n", std::string(rawValue(success.type)).c_str(),
                          success.successPct * 100, static_cast<long long>(success.numSamples));
}

}  // namespace

const char* calendarSign(TaskCalendarPeriodStatus status) {
  return signOf(status).glyph;
}

HistoryReport HistoryReport::of(const TaskEntity& task, YYYYMMDD from, YYYYMMDD to, Date now) {
  const TaskRecentHistory history = task.recentHistory(from, to, now);
  HistoryReport report{.uniqueId = textOf(task.text(TaskAttributes::uniqueId)),
                       .title = textOf(task.text(TaskAttributes::title)),
                       .firstDayOfWeek = task.firstDayOfWeek(),
                       .periods = {},
                       .shortTerm = history.shortTerm,
                       .longTerm = history.longTerm};
  const auto sorted = sortedOldestToNewest(history.unsortedPeriods());
  for (const auto& [period, status] : sorted) {
    report.periods.push_back({periodName(period.periodType), period.startDate, period.finishDate,
                              status, signOf(status).words});
  }
  return report;
}

std::string HistoryReport::month(YYYYMM month,
                                 const std::map<YYYYMMDD, const char*>& glyphs) const {
  std::string text = month.debugDescription() + "\n";
  for (const DayOfWeek day : everyDay(firstDayOfWeek)) text += " " + weekdayName(day).substr(0, 2);
  const auto column = [&](YYYYMMDD day) {
    return day.startOfWeek(firstDayOfWeek, {}).distance(day);
  };
  text += "\n" + std::string(static_cast<std::size_t>(column(month.firstDay())) * 3, ' ');
  const YYYYMMDD last = std::min(month.lastDay(), glyphs.rbegin()->first);
  for (YYYYMMDD day = month.firstDay(); day <= last; day = day.nextDay({})) {
    const auto found = glyphs.find(day);
    text += std::string("  ") + (found != glyphs.end() ? found->second : " ");
    if (column(day) == 6 || day == last) text += "\n";
  }
  return text;
}

std::string HistoryReport::months() const {
  std::map<YYYYMMDD, const char*> glyphs;
  for (const Stretch& period : periods) glyphs.emplace(period.start, signOf(period.status).glyph);
  std::string text;
  const YYYYMM last = periods.back().start.yyyymm();
  for (YYYYMM at = periods.front().start.yyyymm(); at <= last; at = at.nextMonth()) {
    text += month(at, glyphs) + "\n";
  }
  return text;
}

std::string HistoryReport::lines() const {
  std::string text;
  for (const Stretch& period : periods) {
    const Sign& sign = signOf(period.status);
    text += std::string(sign.glyph) + "  " + period.start.debugDescription() + " to " +
            period.finish.debugDescription() + "  " + sign.words + "\n";
  }
  return text + "\n";
}

std::string HistoryReport::text() const {
  std::string text = terminalText(title) + "\n\n";
  if (!periods.empty()) text += periods.front().type == "day" ? months() : lines();
  return text + percent(shortTerm) + percent(longTerm);
}

}  // namespace velloro
