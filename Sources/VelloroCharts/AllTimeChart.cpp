#include "VelloroCharts/AllTimeChart.h"

#include "Foundation/Formatting/NSDateFormatter.h"
#include "OxKit/KeptForLocale.h"
#include "OxKit/Localization.h"
#include "VelloroCharts/ChartTextKeys.h"
#include "VelloroCore/Titles/FormatManager.h"
#include "VelloroCore/Wording/ReminderWordingKeys.h"

#include <algorithm>

namespace velloro {
namespace {

using Days = std::span<const TaskLogTally::Day>;

/// Takes the days one stretch after another, from the first one on.
class Spans {
 public:
  explicit Spans(Days days) : rest_(days) {}

  TaskLogTally::Counts countsOf(YYYYMMDD first, YYYYMMDD last) {
    TaskLogTally::Counts counts;
    for (; !rest_.empty() && rest_.front().day <= last; rest_ = rest_.subspan(1)) {
      if (rest_.front().day < first) continue;
      counts.completed += rest_.front().completed;
      counts.missed += rest_.front().missed;
    }
    return counts;
  }

 private:
  Days rest_;
};

std::vector<double> pointsOfSpans(const AllTimeChart::DataPointsRequest& request) {
  const auto& [timePeriod, earliest, latest, days, maxNumPoints] = request;
  const std::int64_t most = std::max<std::int64_t>(maxNumPoints, 1);
  const std::int64_t total = earliest.distance(latest, true, {});
  const std::int64_t perPoint = std::max<std::int64_t>(total / most + (total % most != 0), 1);
  Spans spans(days);
  std::vector<double> points;
  for (YYYYMMDD at = earliest; at <= latest; at = at.add(perPoint, {})) {
    const auto counts = spans.countsOf(at, at.add(perPoint - 1, {}));
    if (counts.entries() > 0) points.push_back(counts.share());
  }
  return points;
}

std::vector<double> pointsOfMonths(const AllTimeChart::DataPointsRequest& request) {
  Spans spans(request.days);
  std::vector<double> points;
  const YYYYMM last = request.latestDate.yyyymm();
  for (YYYYMM at = request.earliestDate.yyyymm(); at <= last; at = at.nextMonth()) {
    points.push_back(spans.countsOf(at.firstDay(), at.lastDay()).share());
  }
  return points;
}

std::vector<double> pointsOfDays(const AllTimeChart::DataPointsRequest& request) {
  Spans spans(request.days);
  std::vector<double> points;
  for (YYYYMMDD at = request.earliestDate; at <= request.latestDate; at = at.nextDay({})) {
    points.push_back(spans.countsOf(at, at).share());
  }
  return points;
}

NSDateFormatter startFormatter(const Locale& locale) {
  return NSDateFormatter::withFormat("d MMM yy", {.locale = locale, .timeZone = TimeZone::gmt()});
}

/// The days from the one with the given start to the last, both counted.
std::int64_t numDays(YYYYMMDD first, YYYYMMDD last) {
  return first > last ? 0 : first.distance(last, true, {});
}

}  // namespace

AllTimeChart AllTimeChart::empty(HHMMSS startOfDay, TimeZone timeZone, Date now) {
  const YYYYMMDD today = YYYYMMDD::today(startOfDay, timeZone, now);
  return {.timePeriod = TaskChartsTimePeriod::allTime(),
          .startOfDay = startOfDay,
          .timeZone = timeZone,
          .earliestDate = today,
          .latestDate = today};
}

std::vector<double> AllTimeChart::createDataPoints(const DataPointsRequest& request) {
  if (request.earliestDate > request.latestDate) return {};
  const YYYYMMDD today = request.latestDate;
  if (request.timePeriod.asMonth(today)) return pointsOfDays(request);
  return request.timePeriod.asYear(today) ? pointsOfMonths(request) : pointsOfSpans(request);
}

std::vector<LineGraphDataPoint> AllTimeChart::dataPoints(const Locale& locale) const {
  const FormatManager& formats = FormatManager::shared(locale);
  std::vector<LineGraphDataPoint> points;
  for (const double value : data.empty() ? std::vector<double>{0, 0} : data) {
    points.push_back(
        {.value = value,
         .formattedValue = formats.percentageWholeFormatter.string(value),
         .formattedAccessibilityValue = formats.voiceoverPercentageFormatter.string(value)});
  }
  points.front().highlightMarker = points.back().highlightMarker = true;
  return points;
}

std::int64_t AllTimeChart::displayNumberOfPeriods(Date now) const {
  const YYYYMMDD today = YYYYMMDD::today(startOfDay, timeZone, now);
  YYYYMMDD::Range range = timePeriod.days(today);
  // A year that is under way is counted up to the last day that is covered.
  const bool isThisYear = std::holds_alternative<TaskChartsTimePeriod::ThisYear>(timePeriod.value);
  if (!range.maxDate || isThisYear) range.maxDate = latestDate;
  const YYYYMMDD first = range.minDate.value_or(earliestDate);
  const bool leavesOutToday = !statsAccountForToday && first <= today && today <= *range.maxDate;
  return std::max<std::int64_t>(numDays(first, *range.maxDate) - leavesOutToday, 0);
}

std::string AllTimeChart::startText(const Locale& locale) const {
  return keptForLocale<startFormatter>(locale).string(
      earliestDate.dateAt(HHMMSS::midnight, HHMMSS::midday, TimeZone::gmt()));
}

std::string AllTimeChart::endText(const Locale& locale, YYYYMMDD today) const {
  const YYYYMMDD end =
      statsAccountForToday ? latestDate : std::min(latestDate, today.previousDay({}));
  const std::int64_t daysAgo = end.distance(today);
  if (daysAgo == 0) return localized(reminder_wording::today);
  if (daysAgo == 1) return localized(reminder_wording::yesterday);
  if (daysAgo > 1 && daysAgo <= 6) return localizedTitle(end.dayOfWeek({}), locale);
  return end.yyyymm().localizedShortTitleWithYear(locale);
}

SummaryLabels AllTimeChart::labels(const Locale& locale, Date now) const {
  const YYYYMMDD today = YYYYMMDD::today(startOfDay, timeZone, now);
  if (const auto month = timePeriod.asMonth(today)) {
    return {.centerText = month->localizedTitleWithYear(locale)};
  }
  if (const auto year = timePeriod.asYear(today)) {
    return {.centerText = YYYYMM{*year, 1}.localizedYear(locale)};
  }
  return {.leadingText = startText(locale), .trailingText = endText(locale, today)};
}

SummaryLabels AllTimeChart::briefLabels(const Locale& locale, Date now) const {
  const YYYYMMDD today = YYYYMMDD::today(startOfDay, timeZone, now);
  if (timePeriod.asMonth(today) || timePeriod.asYear(today)) return veryBriefLabels(locale, now);
  return {.leadingText = earliestDate.yyyymm().localizedShortTitleWithYear(locale),
          .trailingText = endText(locale, today)};
}

SummaryLabels AllTimeChart::veryBriefLabels(const Locale& locale, Date now) const {
  const YYYYMMDD today = YYYYMMDD::today(startOfDay, timeZone, now);
  if (const auto month = timePeriod.asMonth(today)) {
    return {.centerText = month->localizedShortTitleWithYear(locale)};
  }
  if (const auto year = timePeriod.asYear(today)) {
    return {.centerText = YYYYMM{*year, 1}.localizedYear(locale)};
  }
  return {.centerText = localized(chart_text::allTime)};
}

}  // namespace velloro
