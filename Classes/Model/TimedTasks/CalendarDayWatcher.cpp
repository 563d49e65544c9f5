#include "TimedTasks/CalendarDayWatcher.h"

#include "Foundation/Process/Environment.h"
#include "Foundation/Process/SlowPoll.h"
#include "OxLog/Log.h"
#include "Tasks/Rows/TaskEntity.h"

#include <algorithm>
#include <limits>

namespace velloro {
namespace {

/// Seconds. A clock that is set is noticed that late where nobody tells of it.
constexpr TimeInterval longestWait = 60;
/// So that a clock that runs a little behind the timers does not make it look without end.
constexpr TimeInterval shortestWait = 0.01;

struct DayStart {
  HHMMSS time;
  TimeZone zone;

  /// The logical day of an instant. One that begins in an hour that the clock repeats begins once.
  [[nodiscard]] YYYYMMDD day(Date now) const {
    const YYYYMMDD today = YYYYMMDD::today(time, zone, now);
    const YYYYMMDD next = today.nextDay(zone);
    return next.startOfDay(time, zone) <= now ? next : today;
  }
  [[nodiscard]] Date end(Date now) const { return day(now).nextDay(zone).startOfDay(time, zone); }
};

std::vector<DayStart> startsOf(const CalendarDayWatcher::DayStarts& starts) {
  const TimeZone device = Environment::current().timeZone();
  std::vector<DayStart> all;
  for (const HHMMSS time : starts.times) all.push_back({time, device});
  for (const auto& [zone, time] : starts.pinned) {
    all.push_back({time, TimeZone::fromIdentifier(zone).value_or(device)});
  }
  return all;
}

}  // namespace

CalendarDayWatcher::DayStarts CalendarDayWatcher::DayStarts::of(
    const std::vector<std::shared_ptr<TaskEntity>>& tasks, HHMMSS usual) {
  DayStarts starts{.times = {usual}};
  for (const auto& task : tasks) {
    const auto pinned = task->value(TaskAttributes::currentTimeZoneOverride);
    if (pinned) {
      starts.pinned.emplace(pinned->identifier(), task->startOfDay());
    } else {
      starts.times.insert(task->startOfDay());
    }
  }
  return starts;
}

Date CalendarDayWatcher::DayStarts::nextChange(Date now) const {
  Date next = Date::distantFuture();
  for (const DayStart& start : startsOf(*this)) next = std::min(next, start.end(now));
  return next;
}

CalendarDayWatcher::CalendarDayWatcher(std::function<void()> dayChanged)
    : dayChanged_(std::move(dayChanged)),
      observer_(NSNotificationCenter::defaultCenter().addObserver(
          clockDidChange, nullptr, DispatchQueue::main(), [this](const auto&) { look(); })),
      looks_(NSNotificationCenter::defaultCenter().addObserver(
          SlowPoll::looks, nullptr, DispatchQueue::main(), [this](const auto&) { look(); })) {}

void CalendarDayWatcher::monitor(DayStarts starts) {
  starts_ = std::move(starts);
  const Date now = Date::now();
  days_ = days(now);
  waitForNextChange(now);
}

void CalendarDayWatcher::look() {
  const Date now = Date::now();
  auto days = this->days(now);
  const bool isChanged = days != days_;
  days_ = std::move(days);
  waitForNextChange(now);
  if (isChanged) dayChanged_();
}

std::vector<YYYYMMDD> CalendarDayWatcher::days(Date now) const {
  std::vector<YYYYMMDD> days;
  for (const DayStart& start : startsOf(starts_)) days.push_back(start.day(now));
  return days;
}

void CalendarDayWatcher::waitForNextChange(Date now) {
  constexpr TimeInterval never = std::numeric_limits<TimeInterval>::infinity();
  const TimeInterval wait = std::min(SlowPoll::isCommon() ? never : longestWait,
                                     starts_.nextChange(now).timeIntervalSince(now));
  if (wait < longestWait) {
    Log::general.debug([&] { return "The day changes at " + (now + wait).iso8601(); });
  }
  timer_ = NSTimer::scheduled(std::max(wait, shortestWait), false, [this] { look(); });
}

}  // namespace velloro
