#include "Notifications/Planning/TaskPlan.h"

#include "VelloroCore/Reminders/ReminderOrder.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace velloro {
namespace {

using ScheduleRequest = NotificationHelper::ScheduleRequest;
using Identifiers = ScheduleRequest::Identifiers;
using Report = TaskPlanReport;

using task_plan::daysPlanned;
constexpr std::int64_t daysBefore = 2;
constexpr int fullDays = 2;
/// A step deals with the reminders of so many seconds behind it; the shorter time counts where the
/// longer would leave no reminder for the rest of the day.
constexpr std::array<TimeInterval, 2> stepAllowances = {2100, 1200};

/// A reminder on a day, with the moment at which it comes.
struct Moment {
  Date date;
  bool isSnoozed = false;
};

class Planner {
 public:
  Planner(const PlannedTask& task, const PlanQuestions& ask, Report* report)
      : task_(task), ask_(ask), report_(report), today_(task.standing.today()) {}

  ScheduleRequest plan() {
    for (std::int64_t i = 0; i < daysPlanned; ++i) planDay(day(i));
    cancelReminders(day(daysPlanned), request_.cancelPending);
    for (std::int64_t i = -daysBefore; i < 0; ++i) {
      cancelReminders(day(i), request_.cancelDelivered);
      request_.cancelDelivered.insert(NotificationID::completion(day(i), task_.taskId).str);
    }
    if (isTodaySettled()) cancelReminders(today_, request_.cancelDelivered);
    return std::move(request_);
  }

 private:
  [[nodiscard]] YYYYMMDD day(std::int64_t offset) const {
    return today_.add(offset, task_.standing.timeZone);
  }
  [[nodiscard]] TaskFrequencyPeriod period(YYYYMMDD day) const {
    const TaskStanding& standing = task_.standing;
    return standing.frequency.period(day, standing.firstDayOfWeek, standing.timeZone).period;
  }

  void planDay(YYYYMMDD day) {
    Report::Day told{.day = day};
    const auto why = whyNotTaken(day, told);
    told.isTaken = !why;
    told.reason = why.value_or(Report::DayReason::needsReminders);
    if (why) {
      cancelReminders(day, request_.cancelPending);
    } else {
      told.isFull = daysTaken_++ < fullDays;
      const auto reminders = remindersOf(day, told);
      if (told.isFull) {
        planFullDay(day, reminders, told);
      } else {
        planSingleDay(day, reminders, told);
      }
    }
    if (report_ != nullptr) report_->days.push_back(std::move(told));
  }

  std::optional<Report::DayReason> whyNotTaken(YYYYMMDD day, Report::Day& told) const {
    if (task_.settings.reminderType == ReminderType::none) return Report::DayReason::noReminderType;
    const auto status = ask_.status(day);
    told.status = status;
    return whyNoReminders(task_.status, task_.standing.automaticTaskType, status);
  }

  [[nodiscard]] std::vector<TaskReminder> remindersOf(YYYYMMDD day, Report::Day& told) const {
    const HHMMSS startOfDay = task_.standing.startOfDay;
    auto all = sortedByTimeOfDay(task_.settings.timeOfDayReminders(), startOfDay);
    if (day != today_ || task_.standing.frequency.numPartialCompletions <= 1 ||
        task_.partialEntries.empty()) {
      return all;
    }
    auto remaining = remainingToday();
    if (report_ != nullptr) tellCovered(all, remaining, told);
    return remaining;
  }

  [[nodiscard]] std::vector<TaskReminder> remainingToday() const {
    const TaskStanding& standing = task_.standing;
    std::vector<TaskReminder> remaining;
    for (const TimeInterval allowance : stepAllowances) {
      remaining = task_.settings.remainingTimeOfDayReminders(
          task_.partialEntries, allowance, standing.startOfDay, standing.timeZone, standing.now);
      if (!remaining.empty()) break;
    }
    return sortedByTimeOfDay(std::move(remaining), standing.startOfDay);
  }

  static void tellCovered(const std::vector<TaskReminder>& all,
                          const std::vector<TaskReminder>& remaining, Report::Day& told) {
    for (const auto& reminder : all) {
      if (std::ranges::find(remaining, reminder) != remaining.end()) continue;
      told.reminders.push_back(
          {.reminder = reminder, .reason = Report::ReminderReason::coveredByStep});
    }
  }

  /// From the last one, since one that comes no earlier than a later one of the list has nothing to
  /// add to it.
  void planFullDay(YYYYMMDD day, const std::vector<TaskReminder>& reminders, Report::Day& told) {
    std::optional<Date> notBefore;
    for (std::size_t i = reminders.size(); i-- > 0;) {
      if (const auto date = planReminder(day, reminders[i], i, notBefore, told)) notBefore = date;
    }
  }

  /// All have the same identifier, so the last one stays.
  void planSingleDay(YYYYMMDD day, const std::vector<TaskReminder>& reminders, Report::Day& told) {
    for (const auto& reminder : reminders) {
      const std::size_t before = told.reminders.size();
      if (!planReminder(day, reminder, 0, {}, told) || report_ == nullptr) continue;
      for (std::size_t i = 0; i < before; ++i) {
        auto& earlier = told.reminders[i].reason;
        if (earlier == Report::ReminderReason::planned) earlier = Report::ReminderReason::replaced;
      }
    }
  }

  /// The date of the content that was made, if any.
  std::optional<Date> planReminder(YYYYMMDD day, const TaskReminder& reminder, std::size_t index,
                                   std::optional<Date> notBefore, Report::Day& told) {
    const auto moment = momentOf(reminder, day);
    auto reason = whyNot(reminder, day, moment, notBefore);
    if (!reason) {
      auto content = ask_.content(
          day, {.id = NotificationID::reminder(day, task_.taskId, index),
                .reminderId = reminder.uniqueId,
                .trigger = NotificationTrigger{moment->date},
                .timeSensitive = reminder.timeSensitive.value_or(
                    task_.settings.automaticRemindersAreTimeSensitive.value_or(false))});
      if (content) {
        request_.notifications.push_back(*std::move(content));
      } else {
        reason = Report::ReminderReason::nothingToSay;
      }
    }
    if (report_ != nullptr) {
      told.reminders.push_back({.reminder = reminder,
                                .date = moment.transform([](const Moment& of) { return of.date; }),
                                .isSnoozed = moment && moment->isSnoozed,
                                .reason = reason.value_or(Report::ReminderReason::planned)});
    }
    return reason ? std::nullopt : std::optional(moment->date);
  }

  [[nodiscard]] std::optional<Report::ReminderReason> whyNot(const TaskReminder& reminder,
                                                             YYYYMMDD day,
                                                             const std::optional<Moment>& moment,
                                                             std::optional<Date> notBefore) const {
    using enum Report::ReminderReason;
    if (!reminder.daysOfWeek.contains(day.dayOfWeek(task_.standing.timeZone))) return otherWeekday;
    if (!moment) return noTimeOfDay;
    if (moment->date < task_.standing.now) return past;
    if (notBefore && moment->date >= *notBefore) return coveredByLater;
    return std::nullopt;
  }

  [[nodiscard]] std::optional<Moment> momentOf(const TaskReminder& reminder, YYYYMMDD day) const {
    const auto& trigger = reminder.trigger;
    if (!trigger.timeOfDay || trigger.region) return std::nullopt;
    if (day == today_ && reminder.snoozeDate == today_ && reminder.snoozeTime &&
        reminder.snoozeTimeZone) {
      return Moment{
          .date = snoozedAt(*reminder.snoozeTime, *reminder.snoozeTimeZone) + task_.snoozeDuration,
          .isSnoozed = true};
    }
    const TaskStanding& standing = task_.standing;
    return Moment{.date = day.dateAt(standing.startOfDay, *trigger.timeOfDay, standing.timeZone)};
  }

  /// The instant of today's logical day at which a clock shows the time. A clock of another zone
  /// may show another date then.
  [[nodiscard]] Date snoozedAt(HHMMSS time, NotificationTimeZone clock) const {
    const TaskStanding& standing = task_.standing;
    const TimeZone zone =
        clock == NotificationTimeZone::taskViewer ? task_.deviceTimeZone : standing.timeZone;
    return time.nextOccurrence(today_.startOfDay(standing.startOfDay, standing.timeZone), zone);
  }

  void cancelReminders(YYYYMMDD day, Identifiers& into) const {
    const std::size_t count = NotificationID::numRemindersToCancel(task_.settings.reminders.size());
    for (std::size_t i = 0; i < count; ++i) {
      into.insert(NotificationID::reminder(day, task_.taskId, i).str);
    }
  }

  [[nodiscard]] bool isTodaySettled() const {
    const auto& temporal = task_.standing.temporal;
    const TaskFrequencyPeriod current = period(today_);
    const auto isIn = [&](const std::optional<YYYYMMDD>& last) {
      return last && current.contains(*last);
    };
    return task_.standing.isNegative ? isIn(temporal.lastMissed) || isIn(temporal.lastSkipped)
                                     : isIn(temporal.lastCompleted);
  }

  const PlannedTask& task_;
  const PlanQuestions& ask_;
  Report* const report_;
  const YYYYMMDD today_;
  int daysTaken_ = 0;
  ScheduleRequest request_;
};

/// Whose reminders stay when the period is done: they tell when to go to bed.
bool isAboutSleep(const std::optional<AutomaticTaskType>& type) {
  return type && (type->type == HealthType::sleep || type->type == HealthType::inBed ||
                  type->type == HealthType::bedtime);
}

}  // namespace

ScheduleRequest plannedReminders(const PlannedTask& task, const PlanQuestions& ask,
                                 TaskPlanReport* report) {
  return Planner(task, ask, report).plan();
}

std::optional<TaskPlanReport::DayReason> whyNoReminders(
    TaskStatus status, const std::optional<AutomaticTaskType>& type,
    const CompletionStatus::Status& standing) {
  using enum CompletionStatus::Status::Kind;
  if (status != TaskStatus::normal) return TaskPlanReport::DayReason::resting;
  if (standing.kind == positiveIncomplete || standing.kind == negativeComplete) {
    if (standing.skipMode == SkipMode::willSkipWithIndicator) {
      return TaskPlanReport::DayReason::willSkip;
    }
    return std::nullopt;
  }
  if (isAboutSleep(type)) return std::nullopt;
  return TaskPlanReport::DayReason::settled;
}

}  // namespace velloro
