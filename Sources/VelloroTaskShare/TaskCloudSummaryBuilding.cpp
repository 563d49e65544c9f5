#include "VelloroTaskShare/TaskCloudSummaryBuilding.h"

#include <algorithm>

namespace velloro {
namespace {

using Entry = TaskCloudSummary::Entry;
using ReminderTime = TaskCloudSummary::ReminderTime;

bool isFinishedDay(const Entry& entry, YYYYMMDD today) {
  return entry.period && entry.period->to < today &&
         entry.period->type == TaskFrequencyPeriodType::day;
}

/// The earliest of the times in a day that begins at `startOfDay`; absent for none.
std::optional<HHMMSS> firstTime(const ReminderTime& of, const HHMMSS& startOfDay) {
  const auto first = std::ranges::min_element(
      of.times, {}, [&](const HHMMSS& time) { return std::pair(time < startOfDay, time); });
  return first == of.times.end() ? std::nullopt : std::optional(*first);
}

}  // namespace

TaskCloudSummary::History historyOf(std::span<const Entry> entries, const HistoryRequest& request,
                                    Date now) {
  const YYYYMMDD today = YYYYMMDD::today(request.startOfDay, request.taskTimeZone, now);
  TaskCloudSummary::History history{.firstDayOfWeek = request.firstDayOfWeek};
  for (Entry entry : entries) {
    if (entry.timeZone == request.taskTimeZone) entry.timeZone.reset();
    if (isFinishedDay(entry, today)) {
      history.single.insert_or_assign(entry.period->date, entry);
    } else {
      history.multi.push_back(entry);
    }
  }
  return history;
}

std::vector<ReminderTime> reduceToMinimalSet(std::vector<ReminderTime> times, HHMMSS startOfDay) {
  std::ranges::stable_sort(times, {}, [&](const ReminderTime& each) {
    const auto first = firstTime(each, startOfDay);
    return std::tuple(first.has_value(), first && *first < startOfDay, first);
  });
  EnumSet<DayOfWeek> covered;
  std::vector<ReminderTime> minimal;
  for (const ReminderTime& each : times) {
    const auto first = firstTime(each, startOfDay);
    if (!each.days || !first) continue;
    const EnumSet<DayOfWeek> left = each.days->subtracting(covered);
    if (left.isEmpty()) continue;
    covered = covered.union_(left);
    minimal.push_back({.days = left, .times = {*first}});
  }
  return minimal;
}

}  // namespace velloro
