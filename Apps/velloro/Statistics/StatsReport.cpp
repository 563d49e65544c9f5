#include "velloro/Statistics/StatsReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/Locale.h"
#include "Foundation/Text/String.h"
#include "Tasks/Log/StoredLog.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "velloro/Output/Output.h"
#include "velloro/Statistics/Blocks.h"

#include <algorithm>

namespace velloro {
namespace {

/// A quarter of a line: 20 columns of 80.
int barColumns() {
  return static_cast<int>(std::clamp<std::size_t>(standardOutputColumns() / 4, 5, 40));
}

std::string percent(double share) {
  return stringWithFormat("%3.0f %%", share * 100);
}

std::string counts(std::int64_t completed, std::int64_t missed) {
  const auto number = [](std::int64_t n) { return static_cast<long long>(n); };
  return stringWithFormat("done %lld of %lld", number(completed), number(completed + missed));
}

/// What there is of the texts, with blanks between them.
std::string joined(const SummaryLabels& labels) {
  std::string text;
  for (const auto& part : {labels.leadingText, labels.centerText, labels.trailingText}) {
    if (part) text += (text.empty() ? "" : " – ") + *part;
  }
  return text;
}

std::string bars(const std::array<DaysOfWeekChart::Value, 7>& values,
                 const std::optional<OxCodableColor>& color) {
  std::vector<std::vector<std::string>> rows;
  for (const auto& value : values) {
    rows.push_back({localizedShortTitle(value.dayOfWeek, Locale::current()), percent(value.value),
                    colored(blockBar(value.value, barColumns()), color)});
  }
  return aligned(rows);
}

std::string hourLine(const TimeOfDayChart& chart, const std::optional<OxCodableColor>& color) {
  std::vector<double> shares;
  for (std::int64_t hour = 0; hour < 24; ++hour) {
    const auto found = chart.values.find(hour);
    shares.push_back(found != chart.values.end() ? found->second : 0);
  }
  return "0 " + colored(blockColumns(shares), color) + " 23\n";
}

/// The charts of all tasks together, from the counts.
TrophyRoomTaskStats chartsOf(const GlobalChartData& data) {
  TrophyRoomTaskStats stats;
  const auto fill = [](const auto& completions, const auto& misses, auto& values) {
    for (const auto& counted : {completions, misses}) {
      for (const auto& [key, number] : counted) values[key] = 0;
    }
    for (auto& [key, value] : values) {
      const auto at = [&](const auto& map) {
        const auto found = map.find(key);
        return found != map.end() ? static_cast<double>(found->second) : 0;
      };
      value = at(completions) / (at(completions) + at(misses));
    }
  };
  fill(data.globalCompletionsByDayOfWeek, data.globalMissesByDayOfWeek,
       stats.daysOfWeekChart.values);
  fill(data.globalCompletionsByHour, data.globalMissesByHour, stats.timeOfDayChart.values);
  return stats;
}

}  // namespace

TaskLogTally tallyOf(const TaskSnapshot& task, const TaskChartsTimePeriod& timePeriod) {
  const TaskLogRules rules = task.standing.rules();
  const auto [minDate, maxDate] = TaskLogTally::dates(rules, timePeriod);
  const StoredLog log(*task.entity, {.direction = TaskLogFetchRequest::Direction::newestToOldest,
                                     .minDate = minDate,
                                     .maxDate = maxDate,
                                     .includeStatuses = TaskLogEntryTypes::allFullTypes});
  return TaskLogTally::fromLog(log.rows(), rules, timePeriod);
}

bool isCountedWithOthers(const TaskSnapshot& task) {
  return activeStatuses.contains(task.status) &&
         task.shareStatus != TaskShareStatus::isSharedWithMe;
}

TrophyRoomTaskStats statsOf(const TaskSnapshot& task, const StatsRequest& request) {
  const TaskLogRules rules = task.standing.rules();
  return TrophyRoomTaskStats::fromTally(tallyOf(task, request.timePeriod),
                                        {.rules = rules,
                                         .timePeriod = request.timePeriod,
                                         .streak = task.standing.streak(),
                                         .isIncludedInGlobalStats = isCountedWithOthers(task),
                                         .maxNumPoints = request.maxNumPoints});
}

std::string textOf(const TrophyRoomTaskStats& stats, const std::string& title,
                   const std::optional<OxCodableColor>& color, Date now) {
  const auto number = [](std::int64_t n) { return static_cast<long long>(n); };
  const AllTimeChart& chart = stats.allTimeChart;
  std::string text =
      terminalText(title) + "\n" + joined(chart.labels(Locale::current(), now)) + "\n\n" +
      counts(stats.numCompletions, stats.numMisses) + "," + percent(stats.pct) +
      stringWithFormat(", streak %lld (best %lld)%s\n", number(stats.streak.current),
                       number(stats.streak.best), stats.isMilestone ? ", a milestone" : "");
  if (stats.numCompletions + stats.numMisses == 0) return text;
  return text + "\n" + colored(blockColumns(chart.data), color) + "\n\n" +
         bars(stats.daysOfWeekChart.sortedValues(stats.firstDayOfWeek), color) + "\n" +
         hourLine(stats.timeOfDayChart, color);
}

std::string textOf(const GlobalChartData& data) {
  std::string text = "All tasks\n\n" + counts(data.globalTotalCompleted, data.globalTotalMissed);
  if (data.globalNumNonSkippedEntries == 0) return text + "\n";
  const TrophyRoomTaskStats charts = chartsOf(data);
  const double share = static_cast<double>(data.globalTotalCompleted) /
                       static_cast<double>(data.globalNumNonSkippedEntries);
  return text + "," + percent(share) + "\n\n" +
         bars(charts.daysOfWeekChart.sortedValues(localesFirstDayOfWeek(Locale::current())), {}) +
         "\n" + hourLine(charts.timeOfDayChart, {});
}

}  // namespace velloro
