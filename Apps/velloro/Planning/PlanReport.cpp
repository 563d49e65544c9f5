#include "velloro/Planning/PlanReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "Host/PeriodCloser.h"
#include "Notifications/Planning/BadgePlan.h"
#include "Notifications/Planning/NotificationPlanner.h"
#include "Settings/Settings.h"
#include "Tasks/Reminders/AutomaticReminders.h"
#include "Tasks/Rows/TaskEntity.h"
#include "velloro/Output/Output.h"
#include "velloro/Output/StateText.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace velloro {
namespace {

using ScheduleRequest = NotificationHelper::ScheduleRequest;
using Reports = std::map<const TaskEntity*, TaskPlanReport>;
using Times = std::map<const TaskEntity*, AutomaticReminders>;

std::vector<PlanReport::Time> timesOf(const AutomaticReminders& automatic) {
  std::vector<PlanReport::Time> times;
  for (const AutomaticTime& time : automatic.times) {
    times.push_back(
        {.time = time.time.debugDescription(),
         .source = std::string(rawValue(time.source)),
         .median = time.median.transform([](HHMMSS of) { return of.debugDescription(); }),
         .samples = time.samples,
         .muted = automatic.isMuted ? std::optional(true) : std::nullopt});
  }
  return times;
}

std::string_view reasonText(TaskPlanReport::ReminderReason reason) {
  constexpr std::array<std::string_view, 8> texts = {
      "is planned",
      "gives way to a later one, since the third day has one reminder",
      "is not for this weekday",
      "has no time of day",
      "has passed",
      "comes no earlier than the next one",
      "has been dealt with by a step just before",
      "has nothing to say"};
  return texts[static_cast<std::size_t>(reason)];
}

std::string reminderText(const TaskPlanReport::Reminder& of) {
  const auto& time = of.reminder.trigger.timeOfDay;
  std::string text = time ? time->debugDescription() : "one without a time";
  if (of.isSnoozed) text += " (put off)";
  return text + " " + std::string(reasonText(of.reason));
}

std::string whyText(const TaskPlanReport::Day& day) {
  using enum TaskPlanReport::DayReason;
  switch (day.reason) {
    case noReminderType:
      return "the task has no reminders";
    case resting:
      return "the task rests";
    case settled:
    case willSkip:
      return std::string(stateText(*day.status));
    case needsReminders:
      break;
  }
  std::string text(stateText(*day.status));
  auto reminders = day.reminders;
  std::ranges::stable_sort(reminders, {},
                           [](const auto& of) { return of.date.value_or(Date::distantPast()); });
  for (const auto& reminder : reminders) text += "; " + reminderText(reminder);
  return day.reminders.empty() ? text + "; there is no reminder by time of day" : text;
}

std::vector<PlanReport::Day> daysOf(const TaskPlanReport& report) {
  std::vector<PlanReport::Day> days;
  for (const auto& day : report.days) {
    days.push_back({.day = day.day, .taken = day.isTaken, .why = whyText(day)});
  }
  return days;
}

Times automaticTimesOf(const NotificationPlanner::Tasks& tasks, Date now) {
  Times times;
  for (const auto& task : tasks) {
    times.emplace(task.get(), AutomaticReminders::of(TaskSnapshot::of(*task, now)));
  }
  return times;
}

/// What the centre is asked in the end, with what it is told first.
ScheduleRequest requestFor(const NotificationPlanner& planner, const PlanReport::Wanted& wanted,
                           const NotificationPlanner::Tasks& tasks, Date now) {
  ScheduleRequest request;
  if (wanted.tasks.empty()) {
    request = Settings::shared().taskCountBadgeEnabled() ? planner.badges(tasks)
                                                         : BadgePlan(now).cancels();
  }
  request.merge(planner.tasks(tasks));
  const auto siri = SiriExtensionUtilities::shared()->siriReminders();
  request.merge(planner.siriReminders(tasks, siri));
  return std::move(request).at(now);
}

std::string dayTitle(Date date) {
  return YYYYMMDD::fromDate(HHMMSS::midnight, date, TimeZone::current()).debugDescription();
}

std::string timeText(Date date) {
  return HHMMSS::fromDate(date, TimeZone::current()).debugDescription();
}

}  // namespace

PlanReport PlanReport::of(const HostStore& store, const Wanted& wanted, Date now,
                          const std::function<std::uint64_t()>& random) {
  const auto tasks = wanted.tasks.empty() ? store.tasks(activeStatuses) : wanted.tasks;
  PeriodCloser closer(store.context(), now);
  for (const auto& task : tasks) {
    if (task->outlook() == nullptr) closer.foresee(*task);
  }
  const Times times = automaticTimesOf(tasks, now);
  NotificationPlanner planner(store.context(), {.now = now, .makesImages = false}, random);
  for (const auto& [task, automatic] : times) {
    if (automatic.settings) planner.newSettings.emplace(task, *automatic.settings);
  }
  Reports reports;
  if (wanted.explains) planner.reports = &reports;

  const ScheduleRequest request = requestFor(planner, wanted, tasks, now);
  PlanReport report{
      .cancelPending = {request.cancelPending.begin(), request.cancelPending.end()},
      .cancelDelivered = {request.cancelDelivered.begin(), request.cancelDelivered.end()}};
  for (const auto& content : request.notifications)
    report.requests.push_back(NotificationLine::of(content));
  for (const auto& task : tasks)
    report.titles.emplace(task->uniqueId().stringValue(), task->title());
  if (!wanted.explains) return report;
  report.automaticTimes.emplace();
  report.days.emplace();
  for (const auto& task : tasks) {
    const std::string id = task->uniqueId().stringValue();
    report.automaticTimes->emplace(id, timesOf(times.at(task.get())));
    report.days->emplace(id, daysOf(reports[task.get()]));
  }
  return report;
}

std::string PlanReport::text() const {
  // Of equal identifiers, only the last one stays.
  std::map<std::string_view, const NotificationLine*> last;
  for (const NotificationLine& request : requests) last[request.id] = &request;
  std::vector<const NotificationLine*> inOrder;
  for (const auto& [id, request] : last) inOrder.push_back(request);
  std::ranges::stable_sort(inOrder, {}, [](const NotificationLine* line) {
    return line->trigger.value_or(Date::distantPast());
  });
  std::string text;
  std::string heading;
  for (const NotificationLine* request : inOrder) {
    const std::string day = request->trigger ? dayTitle(*request->trigger) : "now";
    if (std::exchange(heading, day) != day) text += day + "\n";
    text += "  " + (request->trigger ? timeText(*request->trigger) + "  " : "");
    if (request->badge) {
      text += "badge " + std::to_string(std::max<std::int64_t>(*request->badge, 0)) + "\n";
    } else {
      text += terminalText(request->title.value_or("")) + " – " +
              terminalText(request->body.value_or("")) + "\n";
    }
  }
  if (requests.empty()) text = "Nothing is planned for the next three days.\n";
  if (!days) return text;
  for (const auto& [id, title] : titles) {
    text += "\n" + terminalText(title) + "\n";
    for (const Time& time : automaticTimes->at(id)) {
      text += "  " + time.time + " by " + time.source;
      if (time.median) {
        text += ": about half an hour before " + *time.median + ", the middle of " +
                std::to_string(time.samples.value_or(0)) + " times at which it was done";
      }
      text += time.muted ? ", muted\n" : "\n";
    }
    for (const Day& day : days->at(id)) {
      text += "  " + day.day.debugDescription() + ": " + (day.taken ? "" : "no reminder, ") +
              day.why + "\n";
    }
  }
  return text;
}

}  // namespace velloro
