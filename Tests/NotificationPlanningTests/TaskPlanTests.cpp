#include "Foundation/Process/VirtualEnvironment.h"
#include "Notifications/Planning/TaskPlan.h"
#include "Support/SampleTasks.h"

#include <map>
#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();
constexpr Status due = Status::positiveIncomplete(SkipMode::willMissWithIndicator);
constexpr Status notDue = Status::positiveIncomplete(SkipMode::willSkipWithIndicator);

Date instant(const char* iso) {
  return Date::fromISO8601(iso).value();
}

/// On Thursday, 7 March 2024, at 12:00 in Berlin, with a task of three reminders a day.
struct TaskPlanning : testing::Test {
  TaskPlanning() {
    task.standing.timeZone = berlin;
    task.standing.firstDayOfWeek = DayOfWeek::monday;
    task.standing.now = instant("2024-03-07T11:00:00Z");
    task.settings.reminderType = ReminderType::custom;
    setTimes({{.h = 21}, {.h = 15}, {.h = 18}});
  }

  void setTimes(const std::vector<HHMMSS>& times) {
    task.settings.reminders.clear();
    for (const HHMMSS time : times) {
      task.settings.reminders.push_back(
          {.uniqueId = sampleID(static_cast<int>(task.settings.reminders.size()) + 1),
           .trigger = TaskReminder::Trigger::fromTimeOfDay(time),
           .daysOfWeek = everyDay()});
    }
  }

  /// Identifiers without the task's, with the moments: "r7..2 2024-03-07T20:00:00Z".
  std::vector<std::string> plan() {
    report = {};
    request = plannedReminders(
        task,
        {.status = [&](YYYYMMDD day) { return status.contains(day) ? status.at(day) : due; },
         .content =
             [&](YYYYMMDD day, const TaskNotifications::Reminder& reminder) {
               return day == silent ? std::nullopt
                                    : std::optional(NotificationContent{
                                          .notificationId = reminder.id,
                                          .trigger = reminder.trigger,
                                          .timeSensitive = reminder.timeSensitive});
             }},
        &report);
    std::vector<std::string> planned;
    for (const auto& content : request.notifications) {
      planned.push_back(shortened(content.notificationId.str) + " " +
                        content.trigger->date.iso8601());
    }
    return planned;
  }
  [[nodiscard]] std::string shortened(std::string id) const {
    return id.erase(id.find('.') + 1, task.taskId.stringValue().size());
  }
  [[nodiscard]] std::vector<std::string> shortened(
      const NotificationHelper::ScheduleRequest::Identifiers& ids) const {
    std::vector<std::string> names;
    for (const auto& id : ids) {
      names.push_back(id.starts_with("r") ? shortened(id) : id.substr(0, id.find('.')));
    }
    return names;
  }
  [[nodiscard]] std::vector<TaskPlanReport::ReminderReason> reasons(std::size_t day) const {
    std::vector<TaskPlanReport::ReminderReason> reasons;
    for (const auto& reminder : report.days[day].reminders) reasons.push_back(reminder.reason);
    return reasons;
  }

  PlannedTask task{.taskId = sampleID(9), .deviceTimeZone = berlin};
  std::map<YYYYMMDD, Status> status;
  YYYYMMDD silent;
  TaskPlanReport report;
  NotificationHelper::ScheduleRequest request;
};

TEST_F(TaskPlanning, HasTwoFullDaysAndOneSingleOne) {
  EXPECT_THAT(plan(), ElementsAre("r7..2 2024-03-07T20:00:00Z", "r7..1 2024-03-07T17:00:00Z",
                                  "r7..0 2024-03-07T14:00:00Z", "r8..2 2024-03-08T20:00:00Z",
                                  "r8..1 2024-03-08T17:00:00Z", "r8..0 2024-03-08T14:00:00Z",
                                  "r9..0 2024-03-09T14:00:00Z", "r9..0 2024-03-09T17:00:00Z",
                                  "r9..0 2024-03-09T20:00:00Z"));
  EXPECT_THAT(shortened(request.cancelPending), ElementsAre("r10..0", "r10..1", "r10..2"));
  EXPECT_THAT(shortened(request.cancelDelivered),
              testing::UnorderedElementsAre("r5..0", "r5..1", "r5..2", "r6..0", "r6..1", "r6..2",
                                            "c20240305", "c20240306"));
  using enum TaskPlanReport::ReminderReason;
  EXPECT_THAT(reasons(2), ElementsAre(replaced, replaced, planned));

  status = {{{2024, 3, 7}, Status::positiveComplete}, {{2024, 3, 8}, notDue}};
  EXPECT_THAT(plan(), ElementsAre("r9..2 2024-03-09T20:00:00Z", "r9..1 2024-03-09T17:00:00Z",
                                  "r9..0 2024-03-09T14:00:00Z"));
  EXPECT_THAT(request.cancelPending, SizeIs(9));

  task.settings.reminderType = ReminderType::none;
  EXPECT_THAT(plan(), IsEmpty());
  EXPECT_THAT(request.cancelPending, SizeIs(12));
}

TEST_F(TaskPlanning, LeavesOutWhatHasNoMomentOrNoPlace) {
  using enum TaskPlanReport::ReminderReason;
  setTimes({{.h = 11}, {.h = 12}, {.h = 15}, {.h = 15}, {.h = 16}});
  task.settings.reminders[4].daysOfWeek = {DayOfWeek::friday};
  EXPECT_EQ(plan()[0], "r7..3 2024-03-07T14:00:00Z");
  EXPECT_THAT(reasons(0), ElementsAre(otherWeekday, planned, coveredByLater, planned, past));
  EXPECT_EQ(request.notifications[1].trigger->date, task.standing.now) << "due at this moment";

  // What has nothing to say covers nothing.
  silent = {2024, 3, 7};
  plan();
  EXPECT_THAT(reasons(0),
              ElementsAre(otherWeekday, nothingToSay, nothingToSay, nothingToSay, past));

  silent = {};
  // A day that begins at 04:00 has its early hours last.
  task.standing.startOfDay = {.h = 4};
  setTimes({{.h = 2}, {.h = 23}});
  EXPECT_THAT(plan(), Contains("r7..1 2024-03-08T01:00:00Z"));
  EXPECT_THAT(plan(), Contains("r7..0 2024-03-07T22:00:00Z"));
}

TEST_F(TaskPlanning, BringsBackWhatWasPutOff) {
  setTimes({{.h = 10}});
  TaskReminder& reminder = task.settings.reminders[0];
  const TimeZone tokyo = TimeZone::fromIdentifier("Asia/Tokyo").value();
  const struct {
    YYYYMMDD day;
    HHMMSS time;
    std::optional<NotificationTimeZone> clock;
    const char* first;
  } cases[] = {
      {{2024, 3, 7}, {.h = 11, .m = 45}, NotificationTimeZone::taskOwner, "2024-03-07T11:15:00Z"},
      // The device is in Tokyo, where it is 19:45.
      {{2024, 3, 7}, {.h = 19, .m = 45}, NotificationTimeZone::taskViewer, "2024-03-07T11:15:00Z"},
      {{2024, 3, 6}, {.h = 11, .m = 45}, NotificationTimeZone::taskOwner, "2024-03-08T09:00:00Z"},
      {{2024, 3, 7}, {.h = 11, .m = 45}, std::nullopt, "2024-03-08T09:00:00Z"},
  };
  task.deviceTimeZone = tokyo;
  for (const auto& [day, time, clock, first] : cases) {
    reminder = reminder.withSnooze(day, time, clock);
    plan();
    EXPECT_EQ(request.notifications[0].trigger->date.iso8601(), first);
  }
}

TEST_F(TaskPlanning, TakesAStepAsAnAnswerToTheRemindersJustBehindIt) {
  using enum TaskPlanReport::ReminderReason;
  task.standing.frequency.numPartialCompletions = 3;
  setTimes({{.h = 15}, {.h = 12, .m = 20}});
  task.partialEntries = {instant("2024-03-07T10:45:01Z")};  // 2099 s before 12:20
  EXPECT_EQ(plan()[0], "r7..0 2024-03-07T14:00:00Z");
  EXPECT_THAT(reasons(0), ElementsAre(coveredByStep, planned));
  task.partialEntries = {instant("2024-03-07T10:44:59Z")};
  EXPECT_EQ(plan()[1], "r7..0 2024-03-07T11:20:00Z");

  setTimes({{.h = 12, .m = 20}});
  task.partialEntries = {instant("2024-03-07T10:59:00Z")};
  EXPECT_EQ(plan()[0], "r7..0 2024-03-07T11:20:00Z") << "the shorter allowance leaves it";
  task.partialEntries = {instant("2024-03-07T11:00:01Z")};
  EXPECT_EQ(plan()[0], "r8..0 2024-03-08T11:20:00Z");
}

TEST_F(TaskPlanning, TakesDeliveredRemindersOfASettledPeriodBack) {
  const auto withdrawsToday = [&] {
    plan();
    return request.cancelDelivered.contains(
        NotificationID::reminder({2024, 3, 7}, task.taskId, 0).str);
  };
  auto& temporal = task.standing.temporal;
  for (const bool isNegative : {false, true}) {
    task.standing.isNegative = isNegative;
    temporal = {};
    EXPECT_FALSE(withdrawsToday());
    temporal.lastCompleted = YYYYMMDD{2024, 3, 7};
    EXPECT_EQ(withdrawsToday(), !isNegative);
    temporal = {.lastMissed = YYYYMMDD{2024, 3, 7}};
    EXPECT_EQ(withdrawsToday(), isNegative);
    temporal = {.lastSkipped = YYYYMMDD{2024, 3, 6}};
    EXPECT_FALSE(withdrawsToday());
  }
}

TEST(WhyNoReminders, GoesByStatusAndType) {
  using enum TaskPlanReport::DayReason;
  const auto sleep = AutomaticTaskType(HealthType::sleep, std::nullopt);
  const struct {
    TaskStatus task;
    std::optional<AutomaticTaskType> type;
    Status status;
    std::optional<TaskPlanReport::DayReason> why;
  } cases[] = {
      {TaskStatus::normal, {}, due, {}},
      {TaskStatus::normal, {}, notDue, willSkip},
      {TaskStatus::normal, {}, Status::negativeComplete(SkipMode::willMissWithIndicator), {}},
      {TaskStatus::normal, {}, Status::negativeMiss, settled},
      {TaskStatus::normal, sleep, Status::positiveComplete, {}},
      {TaskStatus::normal, sleep, notDue, willSkip},
      {TaskStatus::paused, sleep, due, resting},
      {TaskStatus::trashed, {}, due, resting},
  };
  for (const auto& [task, type, status, why] : cases) {
    EXPECT_EQ(whyNoReminders(task, type, status), why) << status.stringValue();
  }
}

}  // namespace
}  // namespace velloro
