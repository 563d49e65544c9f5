#include "Notifications/Planning/BadgePlan.h"

#include "VelloroCore/Frequency/SkipMode.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace velloro {
namespace {

using ScheduleRequest = NotificationHelper::ScheduleRequest;

constexpr std::size_t identifiersToCancel = 20;

bool isIncomplete(const CompletionStatus::Status& status) {
  return status.kind == CompletionStatus::Status::Kind::positiveIncomplete &&
         status.skipMode != SkipMode::willSkipWithIndicator;
}

}  // namespace

void BadgePlan::add(const TaskStanding& task, const TaskNotificationSettings& settings,
                    Status status) {
  if (settings.badgeMode != BadgeMode::includeWhenIncomplete) return;
  YYYYMMDD day = YYYYMMDD::today(task.startOfDay, task.timeZone, now_);
  for (std::int64_t i = 0; i <= lastDay; ++i, day = day.nextDay(task.timeZone)) {
    const auto period = task.frequency.period(day, task.firstDayOfWeek, task.timeZone).period;
    if (!isIncomplete(status(period))) continue;
    const auto at = [&](HHMMSS time) { return day.dateAt(task.startOfDay, time, task.timeZone); };
    const Date start = at(task.startOfDay);
    // What the days behind the last one will be like is not known.
    const auto end =
        i < lastDay
            ? std::optional(day.nextDay(task.timeZone).startOfDay(task.startOfDay, task.timeZone))
            : std::nullopt;
    const Date from = settings.badgeFrom ? at(*settings.badgeFrom) : start;
    const auto to = settings.badgeTo ? std::optional(at(*settings.badgeTo)) : end;
    if (!to || from < *to) {
      addStretch(from, to);
    } else {
      addStretch(start, to);
      addStretch(from, end);
    }
  }
}

void BadgePlan::addStretch(Date from, std::optional<Date> to) {
  ++changes_[from];
  if (to) --changes_[*to];
}

std::int64_t BadgePlan::count() const {
  std::int64_t count = 0;
  for (const auto& [date, change] : changes_) {
    if (date > now_) break;
    count += change;
  }
  return count;
}

std::vector<NotificationContentBuilder::BadgeUpdate> BadgePlan::updates() const {
  std::vector<NotificationContentBuilder::BadgeUpdate> updates;
  std::int64_t badge = count();
  for (auto at = changes_.upper_bound(now_); at != changes_.end(); ++at) {
    if (at->second == 0) continue;
    badge += at->second;
    updates.push_back({.date = at->first, .badge = badge});
  }
  return updates;
}

ScheduleRequest BadgePlan::request(const NotificationContentBuilder& builder) const {
  ScheduleRequest request = cancels();
  request.notifications.push_back(builder.badge({.badge = count()}, 0));
  for (const auto& update : updates()) {
    request.notifications.push_back(builder.badge(update, request.notifications.size()));
  }
  return request;
}

/// As many as the tasks of now could have, where that is more than the usual number.
ScheduleRequest BadgePlan::cancels() const {
  ScheduleRequest request;
  for (std::size_t i = 0; i < std::max(identifiersToCancel, changes_.size()); ++i) {
    request.cancelPending.insert(NotificationID::badge(i).str);
  }
  return request;
}

}  // namespace velloro
