#include "Agent/OpenReminder.h"

#include "Foundation/Coding/JSON.h"
#include "Notifications/NotificationCategory.h"

#include <charconv>

namespace velloro {
namespace {

bool isReminderCategory(const std::optional<NotificationCategory>& category) {
  using enum NotificationCategory;
  if (!category) return false;
  switch (*category) {
    case reminderPositive:
    case reminderNegative:
    case reminderPositiveSharedWithMe:
    case reminderNegativeSharedWithMe:
    case reminderPositiveWithURL:
    case reminderNegativeWithURL:
      return true;
    default:
      return false;
  }
}

/// The day of the month in an identifier such as "r7.…".
std::optional<int> dayOfMonth(const std::string& id) {
  if (!id.starts_with('r')) return std::nullopt;
  int day = 0;
  const char* const begin = id.data() + 1;
  const auto [end, error] = std::from_chars(begin, id.data() + id.size(), day);
  return error == std::errc() && *end == '.' ? std::optional(day) : std::nullopt;
}

/// A reminder that was put off may come after its day has ended.
YYYYMMDD dayOf(const std::string& id, Date due, const NotificationTask& task) {
  constexpr std::int64_t longestDelay = 8;
  const auto shown = YYYYMMDD::fromDate(task.startOfDay, due, task.timeZone);
  const auto wanted = dayOfMonth(id);
  // One whose zone has changed since may be due on the day before.
  for (std::int64_t i = -1; wanted && i <= longestDelay; ++i) {
    const YYYYMMDD day = shown.add(-i, task.timeZone);
    if (day.d == *wanted) return day;
  }
  return shown;
}

}  // namespace

OpenReminder OpenReminder::of(const UNNotification& notification) {
  const auto& [date, request] = notification;
  OpenReminder open{
      .key = request.identifier,
      .occurrence = request.identifier,
      .due = date,
      .notification = notification,
      .category = fromRawValue<NotificationCategory>(request.content.categoryIdentifier)};
  if (request.trigger) {
    open.occurrence += "@" + JSONEncoder{}.encode(*request.trigger);
    open.due = std::min(date, request.trigger->nextTriggerDate().value_or(date));
  } else {
    open.occurrence += "@" + date.iso8601();
  }
  open.isReminder = isReminderCategory(open.category);
  try {
    open.data = NotificationData::fromUserInfo(request.content.userInfo);
    open.day = dayOf(request.identifier, open.due, open.data->task);
    if (open.isReminder) open.key = open.data->task.taskId.stringValue();
  } catch (const Error&) {  // shown by its text alone
  }
  return open;
}

}  // namespace velloro
