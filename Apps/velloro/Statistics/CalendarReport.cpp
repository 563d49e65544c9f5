#include "velloro/Statistics/CalendarReport.h"

#include "Foundation/Text/Locale.h"
#include "Foundation/Text/String.h"
#include "Tasks/Log/StoredTemporalData.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "velloro/Log/HistoryReport.h"
#include "velloro/Output/Output.h"

#include <algorithm>
#include <span>
#include <sstream>

namespace velloro {
namespace {

constexpr std::size_t columnsOfDay = 5;
constexpr std::size_t columnsOfMonth = 7 * columnsOfDay;
constexpr std::size_t gap = 2;

/// Texts of several lines, the first lines of all in one line.
std::string besideEachOther(std::span<const std::string> texts) {
  std::vector<std::string> rows;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    std::istringstream lines(texts[i]);
    std::string line;
    for (std::size_t row = 0; std::getline(lines, line); ++row) {
      if (row == rows.size()) rows.emplace_back();
      rows[row] = padded(rows[row], i * (columnsOfMonth + gap)) + line;
    }
  }
  std::string text;
  for (const std::string& row : rows) text += row + "\n";
  return text;
}

}  // namespace

CalendarReport CalendarReport::of(const TaskSnapshot& task, YYYYMM month) {
  const TaskLogRules rules = task.standing.rules();
  const YYYYMMDD today = rules.today();
  const auto history = recentHistory(task, month.firstDay(), today);
  const auto snapshot = TaskCalendarMonthSnapshot::of({.history = history,
                                                       .month = month,
                                                       .frequency = rules.frequency,
                                                       .today = today,
                                                       .firstDayOfWeek = rules.firstDayOfWeek,
                                                       .timeZone = rules.timeZone});
  return {snapshot.month, snapshot.sortedPeriods, snapshot.weeks(), snapshot.fullItem()};
}

std::string CalendarReport::text() const {
  const auto& [of, firstDayOfWeek] = month;
  const Locale locale = Locale::current();
  std::string text = of.localizedTitleWithYear(locale) + "\n";
  for (const DayOfWeek day : everyDay(firstDayOfWeek)) {
    text += padded(" " + localizedVeryShortTitle(day, locale), columnsOfDay);
  }
  text.erase(text.find_last_not_of(' ') + 1);
  text += "\n";
  const auto before = of.numberOfDaysInWeekBeforeMonthStarts(firstDayOfWeek);
  text += std::string(static_cast<std::size_t>(before) * columnsOfDay, ' ');
  for (YYYYMMDD day = of.firstDay(); day <= of.lastDay(); day = day.nextDay({})) {
    const auto holds = [&](const SnapshotPeriod& item) { return item.period.period.contains(day); };
    const auto item = std::ranges::find_if(sortedPeriods.rbegin(), sortedPeriods.rend(), holds);
    const bool isKnown = item != sortedPeriods.rend();
    text += stringWithFormat("%2lld ", static_cast<long long>(day.d)) +
            (isKnown ? calendarSign(item->period.status) : " ") + " ";
    if (day.nextDay({}).dayOfWeek({}) != firstDayOfWeek && day != of.lastDay()) continue;
    text.erase(text.find_last_not_of(' ') + 1);
    text += "\n";
  }
  return text;
}

std::string textOf(const std::vector<CalendarReport>& months, std::size_t columns) {
  constexpr std::size_t most = 4;
  const std::size_t fitting =
      std::clamp<std::size_t>((columns + gap) / (columnsOfMonth + gap), 1, most);
  std::vector<std::string> texts;
  for (const CalendarReport& month : months) texts.push_back(month.text());
  std::string text;
  for (std::size_t i = 0; i < texts.size(); i += fitting) {
    const std::size_t count = std::min(fitting, texts.size() - i);
    text += (i > 0 ? "\n" : "") + besideEachOther(std::span(texts).subspan(i, count));
  }
  return text;
}

}  // namespace velloro
