#include "VelloroCharts/TrophyRoomTaskStats.h"

#include "Foundation/Formatting/NSDateFormatter.h"
#include "OxKit/AccessibilityLabel.h"
#include "OxKit/KeptForLocale.h"
#include "OxKit/Localization.h"
#include "VelloroCore/Titles/FormatManager.h"

#include <algorithm>

namespace velloro {
namespace {

constexpr std::int64_t hoursPerLabel = 6;

NSDateFormatter hourFormatter(const Locale& locale) {
  const bool is24 = uses24HourTime(FormatManager::shared(locale).timeFormatter);
  return NSDateFormatter::withTemplate(is24 ? "H:mm" : "h a",
                                       {.locale = locale, .timeZone = TimeZone::gmt()});
}

AllTimeChart chartOf(const TaskLogTally& tally, const TrophyRoomTaskStats::Question& question) {
  const TaskLogRules& rules = question.rules;
  AllTimeChart chart = AllTimeChart::empty(rules.startOfDay, rules.timeZone, rules.now);
  chart.timePeriod = question.timePeriod;
  chart.measurementDuration = measurementDuration(rules.frequency.dayMode);
  chart.statsAccountForToday = !tally.isTodayOpen;
  if (tally.days.empty()) return chart;
  chart.earliestDate = tally.days.front().day;
  const auto end = question.timePeriod.days(chart.latestDate).maxDate;
  chart.latestDate = std::min(end.value_or(chart.latestDate), chart.latestDate);
  chart.data = AllTimeChart::createDataPoints({.timePeriod = question.timePeriod,
                                               .earliestDate = chart.earliestDate,
                                               .latestDate = chart.latestDate,
                                               .days = tally.days,
                                               .maxNumPoints = question.maxNumPoints});
  return chart;
}

bool isOnMilestone(const StreakRecord& streak) {
  const auto milestone = streak.currentMilestone();
  return milestone && milestone->kind == StreakRecord::Milestone::Kind::exact;
}

}  // namespace

std::array<DaysOfWeekChart::Value, 7> DaysOfWeekChart::sortedValues(
    DayOfWeek firstDayOfWeek) const {
  double largest = 0;
  for (const auto& [day, value] : values) largest = std::max(largest, value);
  std::array<Value, 7> sorted;
  std::ranges::transform(everyDay(firstDayOfWeek), sorted.begin(), [&](DayOfWeek day) {
    const auto found = values.find(day);
    const double value = found != values.end() ? found->second : 0;
    return Value{day, value, largest > 0 ? value / largest : 0};
  });
  return sorted;
}

std::string DaysOfWeekChart::accessibilityLabel(DayOfWeek firstDayOfWeek,
                                                const Locale& locale) const {
  const auto& percent = FormatManager::shared(locale).voiceoverPercentageFormatter;
  AccessibilityLabel label;
  for (const Value& value : sortedValues(firstDayOfWeek)) {
    label.parts.emplace_back(localizedTitle(value.dayOfWeek, locale) + ", " +
                             percent.string(value.value));
  }
  return label.text();
}

std::vector<LineGraphDataPoint> TimeOfDayChart::dataPoints(const Locale& locale) const {
  const auto& percent = FormatManager::shared(locale).percentageWholeFormatter;
  const NSDateFormatter& hours = keptForLocale<hourFormatter>(locale);
  std::vector<LineGraphDataPoint> points;
  for (std::int64_t hour = 0; hour < 24; ++hour) {
    const auto found = values.find(hour);
    const double value = found != values.end() ? found->second : 0;
    const Date time =
        YYYYMMDD{2000, 1, 1}.dateAt(HHMMSS::midnight, HHMMSS{.h = hour}, TimeZone::gmt());
    const std::string label = hours.string(time);
    points.push_back({.label = label,
                      .value = value,
                      .formattedValue = percent.string(value),
                      .formattedAccessibilityValue = label + ", " + percent.string(value),
                      .showLabel = hour % hoursPerLabel == 0});
  }
  return points;
}

void GlobalChartData::add(const TaskLogTally& tally) {
  globalNumNonSkippedEntries += tally.all.entries();
  globalTotalCompleted += tally.all.completed;
  globalTotalMissed += tally.all.missed;
  const auto count = [](auto& counts, auto key, std::int64_t number) {
    if (number > 0) counts[key] += number;
  };
  for (std::size_t hour = 0; hour < tally.hours.size(); ++hour) {
    const auto key = static_cast<std::int64_t>(hour);
    count(globalCompletionsByHour, key, tally.hours[hour].completed);
    count(globalMissesByHour, key, tally.hours[hour].missed);
  }
  for (const DayOfWeek day : everyDay(DayOfWeek::sunday)) {
    const auto& counts = tally.daysOfWeek[static_cast<std::size_t>(day)];
    count(globalCompletionsByDayOfWeek, day, counts.completed);
    count(globalMissesByDayOfWeek, day, counts.missed);
  }
  for (const TaskLogTally::Day& day : tally.days) {
    count(globalCompletedByDay, day.day.intValue(), day.completed);
    count(globalNumEntriesByDay, day.day.intValue(), day.entries());
  }
}

TrophyRoomTaskStats TrophyRoomTaskStats::fromLog(TaskLogRows rows, const Question& question) {
  return fromTally(TaskLogTally::fromLog(rows, question.rules, question.timePeriod), question);
}

TrophyRoomTaskStats TrophyRoomTaskStats::fromTally(const TaskLogTally& tally,
                                                   const Question& question) {
  TrophyRoomTaskStats stats{
      .timePeriod = question.timePeriod,
      .direction = question.rules.isNegative ? Direction::negative : Direction::positive,
      .firstDayOfWeek = question.rules.firstDayOfWeek,
      .streak = question.streak,
      .pct = tally.all.share(),
      .numCompletions = tally.all.completed,
      .numMisses = tally.all.missed,
      .allTimeChart = chartOf(tally, question),
      .isMilestone = isOnMilestone(question.streak),
      .isIncludedInGlobalStats = question.isIncludedInGlobalStats};
  for (const DayOfWeek day : everyDay(DayOfWeek::sunday)) {
    const auto& counts = tally.daysOfWeek[static_cast<std::size_t>(day)];
    if (counts.entries() > 0) stats.daysOfWeekChart.values.emplace(day, counts.share());
  }
  for (std::size_t hour = 0; hour < tally.hours.size(); ++hour) {
    const auto& counts = tally.hours[hour];
    if (counts.entries() == 0) continue;
    stats.timeOfDayChart.values.emplace(static_cast<std::int64_t>(hour), counts.share());
  }
  return stats;
}

}  // namespace velloro
