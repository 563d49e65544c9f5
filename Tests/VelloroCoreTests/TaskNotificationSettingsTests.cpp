#include "Foundation/Process/VirtualEnvironment.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "Support/Fixtures.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"

#include <ranges>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using enum NotificationTimeZone;
using enum TaskReminder::TriggerType;
using Settings = TaskNotificationSettings;
using TaskType = DefaultSettingsTaskType;
using Trigger = TaskReminder::Trigger;
using Indexes = TaskReminder::DayIndexes;

TimeZone zone(const char* identifier) {
  return TimeZone::fromIdentifier(identifier).value();
}

/// So many hours behind the midnight in which 7 March 2024, a Thursday, begins in Berlin.
Date hour(double hours) {
  return Date::fromISO8601("2024-03-07T00:00:00+01:00").value() + hours * 3600;
}

std::vector<Date> dates(const std::vector<double>& hours) {
  std::vector<Date> all;
  for (const double each : hours) all.push_back(hour(each));
  return all;
}

/// Reminders as type, value and weekdays from 0, and a place in the list as the last digit of the
/// identifier. The value, or none for "-", serves as hours, title and seconds.
Settings settings(const std::string& list, ReminderType reminderType = ReminderType::custom) {
  Settings result{.reminderType = reminderType};
  std::istringstream items(list);
  for (std::string type, value, days; items >> type >> value >> days;) {
    const auto place = std::to_string(result.reminders.size());
    TaskReminder& reminder = result.reminders.emplace_back();
    reminder.uniqueId = UniqueID::fromString("00000000-0000-4000-8000-00000000000" + place).value();
    reminder.trigger.type = fromRawValue<TaskReminder::TriggerType>(type).value();
    for (const char day : days) reminder.daysOfWeek.insert(static_cast<DayOfWeek>(day - '0'));
    if (value == "-") continue;
    reminder.trigger.duration = std::stod(value);
    reminder.trigger.timeOfDay = HHMMSS::midnight.add(std::stod(value) * 3600, /*canWrap=*/true);
    reminder.trigger.region = TriggerRegion{.title = value};
  }
  return result;
}

/// "120": the reminders by their places in the list.
std::string places(const std::vector<TaskReminder>& reminders) {
  std::string text;
  for (const TaskReminder& reminder : reminders) text += reminder.uniqueId.stringValue().back();
  return text;
}

/// A reminder with every member, whose days are shifted.
TaskReminder full(const Trigger& trigger, std::int64_t shift = 0) {
  const auto id = UniqueID::fromString("2F9BCF6C-9C3A-4D0B-8F43-0A1E6B7C5D21").value();
  const EnumSet<DayOfWeek> days{add(DayOfWeek::monday, shift), add(DayOfWeek::saturday, shift)};
  const Indexes fromStart{shift - 1, shift, shift + 12}, fromFinish{-shift};
  return TaskReminder(id, taskOwner, trigger, days, fromStart, fromFinish, HHMMSS{7, 5},
                      YYYYMMDD{2024, 3, 7}, taskViewer, SoundEffect::nilSound, false);
}

const TriggerRegion gym{RegionType::gym,         {}, -36.85, 174.75, 99.5, true, false,
                        IconManagerIcon::dumbell};

TEST(TaskNotificationSettings, KeepTheirForm) {
  expectRawValues<BadgeMode>({"none", "incomplete"});
  expectRawValues<ReminderType>({"none", "automatic", "custom"});
  expectRawValues<NotificationTimeZone>({"owner", "viewer"});
  expectRawValues<LiveActivityDisplayMode>({"a", "y", "n"});
  expectRawValues<RegionType>({"home", "work", "school", "gym"});
  expectRawValues<TaskReminder::TriggerType>({"tod", "todm", "loc", "das", "dbf"});
  expectRawValues<SoundEffect>({"system", "chillbell", "chora",   "console",  "esta",
                                "flore",  "glow",      "hexiled", "islands",  "marem",
                                "panel",  "ping",      "silica",  "unity",    "beeply",
                                "nil",    "query",     "runner",  "meditate", "levitate"});
  using enum SoundEffect;
  expectFixture("TaskNotificationSettings",
                Settings(BadgeMode::includeWhenIncomplete, HHMMSS::midnight, HHMMSS::midday,
                         taskViewer, ReminderType::custom, 3, true, false, glow, ping, nilSound,
                         system, true, false, true, false, LiveActivityDisplayMode::no,
                         {{{}, {}, {durationAfterStart, {}, {}, 90.5}, DayOfWeek::sunday}}));
  expectFixture("TaskNotificationSettingsWithoutOptionals", Settings{});
  expectFixture("TaskReminder", full(Trigger::fromRegion(gym)));
  expectFixture("TriggerRegion", TriggerRegion{{}, "Library", 52.5, 13.25, 150, false, true});
}

TEST(TaskNotificationSettings, EffectsAreOfferedByName) {
  const std::set distinct(sortedEffects.begin(), sortedEffects.end());
  EXPECT_EQ(distinct.size(), allCases<SoundEffect>().size());
  EXPECT_EQ(sortedEffects[0], SoundEffect::system);
  EXPECT_TRUE(
      std::ranges::is_sorted(sortedEffects | std::views::drop(1), {}, rawValue<SoundEffect>));
}

TEST(TaskNotificationSettings, BeginWithNoticesByTheKindOfTask) {
  const std::pair<TaskType, std::vector<double>> cases[] = {
      {TaskType::timer(179), {}},      {TaskType::timer(180), {60}},
      {TaskType::timer(899), {60}},    {TaskType::timer(900), {60, 300}},
      {TaskType::screenTime(120), {}}, {TaskType::screenTime(121), {60}},
      {TaskType::untimed(), {}},       {TaskType::meditation(), {}}};
  defaultEffect = SoundEffect::query;
  initialReminderType = ReminderType::none;
  for (const auto& [taskType, durations] : cases) {
    const Settings found = Settings::default_(taskType, taskOwner);
    EXPECT_EQ(found.reminderSound, SoundEffect::query);
    EXPECT_EQ(found.reminderType, ReminderType::automatic) << "whatever is chosen first";
    ASSERT_EQ(found.reminders.size(), durations.size());
    for (std::size_t i = 0; i < durations.size(); ++i) {
      const auto trigger = Trigger::fromDuration(durationBeforeFinish, durations[i]);
      const UniqueID id = found.reminders[i].uniqueId;
      EXPECT_TRUE(found.reminders[i] == TaskReminder(id, taskOwner, trigger, everyDay()));
    }
  }
  defaultEffect = SoundEffect::islands;
  initialReminderType = ReminderType::automatic;
}

TEST(TaskNotificationSettings, EstimateWhenATaskMatters) {
  struct Case {
    Settings settings;
    double from, to;
    std::vector<double> completions, times;
    HHMMSS startOfDay = {};
  };
  const Case cases[] = {
      {settings("tod 10 45 tod 9 45"), 9, 34, {}, {9, 10, 33}},
      {settings("tod 9 45"), 33, 9, {}, {}},
      {settings("tod 9 5 loc 8 5 tod - 5 das 8 5"), -72, 264, {}, {33, 201}},
      {settings("tod 9.5 4 tod 10 4"), 0, 24, {9, 7}, {10}},  // the end of the allowance is in
      {settings("tod 10 4"), 0, 24, {9.01}, {}},
      {settings("tod 10 4"), 10, 24, {8.9}, {10}},
      {settings("tod 3 3 tod 3 4"), 2, 24, {}, {3}, {4}},           // Wednesday's early hours
      {settings("tod 2.5 0 tod 9 0"), 564, 600, {}, {578.5, 584}},  // summer time begins
      {settings("tod 9 4 todm 11 4"), 0, 24, {}, {9}},
      {settings("tod 9 4 todm 11 4", ReminderType::none), 0, 24, {}, {11}}};
  VirtualEnvironment environment;
  for (const auto& [given, from, to, completions, times, startOfDay] : cases) {
    const auto found = given.sortedEstimatedRelevantTimes(
        {hour(from), hour(to), startOfDay, TimeZone::current(), dates(completions), 3600});
    EXPECT_EQ(found, dates(times)) << "from " << from << " to " << to;
  }
}

TEST(TaskNotificationSettings, KnowWhatACompletionDealsWith) {
  VirtualEnvironment environment;
  const Settings all =
      settings("tod 3 4 tod 9.5 4 tod 10 1 tod 10.001 4 tod - 4 loc - 4 todm 20 4");
  const Date now = Date::now();
  EXPECT_EQ(places(all.remainingTimeOfDayReminders({}, 3600, {4}, TimeZone::current(), now)),
            "01234");
  EXPECT_EQ(
      places(all.remainingTimeOfDayReminders(dates({9, 7}), 3600, {4}, TimeZone::current(), now)),
      "034");
}

TEST(TaskNotificationSettings, TellWhatARunningTimerHasYetToSay) {
  const Date now;
  const auto pending = [&](const char* timers, double total, double remaining) {
    std::ostringstream text;
    for (const auto& [type, duration, date] :
         settings(timers).sortedPendingTimerReminderTimes(total, now + remaining, now)) {
      text << (type == TimerReminderType::completed ? "completed " : "remaining ") << duration
           << " in " << date.timeIntervalSince(now) << "; ";
    }
    return text.str();
  };
  EXPECT_EQ(
      pending("dbf 60 1 das 60 1 das 100 1 das 101 1 das - 1 dbf 0 1 tod 9 1 dbf 498 1", 600, 500),
      "completed 101 in 1; remaining 498 in 2; remaining 60 in 440; ");
  EXPECT_EQ(pending("das 0 1 das 1 1 dbf 60 1", 60, 90), "completed 1 in 31; ") << "starts later";
}

TEST(TaskNotificationSettings, SortTheirLists) {
  const Settings all = settings(
      "dbf 60 1 dbf - 1 loc - 1 das 300 1 das 60 15 loc 2 1 loc 10 1 "
      "loc 2 15 loc - 15 das 60 1");
  EXPECT_EQ(places(all.sortedTimerReminders()), "49310");
  EXPECT_EQ(places(all.sortedLocationReminders()), "67582");
  EXPECT_EQ(places(all.remindersOf({location, durationAfterStart})), "23456789");
}

TEST(TaskNotificationSettings, PutAReminderOff) {
  VirtualEnvironment environment;  // noon in Berlin, midnight in Auckland
  Settings before{.liveActivityDisplayMode = LiveActivityDisplayMode::no,
                  .reminders = {{}, full(Trigger::fromTimeOfDay({10}))}};
  Settings after = before;
  after.liveActivityDisplayMode = LiveActivityDisplayMode::automatic;
  const Settings::SnoozeRequest request{
      {}, zone("Pacific/Auckland"), TimeZone::current(), taskViewer, Date::now()};
  EXPECT_TRUE(before.snoozeNow(UniqueID::create(), request) == after);
  TaskReminder& snoozed = after.reminders[1];
  snoozed.dayIndexesFromStart = snoozed.dayIndexesFromFinish = std::nullopt;
  snoozed.timeZone = taskViewer;
  snoozed.snoozeTime = HHMMSS::midday;
  snoozed.snoozeDate = YYYYMMDD{2024, 3, 8};
  EXPECT_TRUE(before.snoozeNow(snoozed.uniqueId, request) == after);
}

TEST(TaskReminder, MovesToTheOtherPersonsClockAndBack) {
  struct Case {
    const char *owner, *viewer;
    NotificationTimeZone to;
    HHMMSS time, newTime;
    std::int64_t shift;
    double now = 12;
  };
  const Case cases[] = {
      {"GMT-0200", "GMT+0200", taskViewer, {23, 30}, {3, 30}, 1},
      {"GMT-0200", "GMT+0200", taskViewer, {19, 59, 59}, {23, 59, 59}, 0},
      {"GMT-0200", "GMT+0200", taskOwner, {1}, {21}, -1},
      {"GMT-1200", "GMT+1400", taskViewer, {23}, {1}, 1},  // one day on, though two dates
      {"Europe/Berlin", "America/New_York", taskViewer, {9}, {3}, 0},
      {"Europe/Berlin", "America/New_York", taskViewer, {9}, {4}, 0, 132},  // summer time there
  };
  VirtualEnvironment environment;
  for (const auto& [owner, viewer, to, time, newTime, shift, now] : cases) {
    TaskReminder before = full(Trigger::fromMutedTimeOfDay(time));
    TaskReminder after = full(Trigger::fromMutedTimeOfDay(newTime), shift);
    if (to == taskOwner) before.timeZone.reset();
    after.timeZone = to;
    after.timeSensitive.reset();
    EXPECT_TRUE(before.convert(to, zone(owner), zone(viewer), hour(now)) == after)
        << viewer << now << shift;
    before.timeZone = to == taskOwner ? taskViewer : taskOwner;
    before.timeSensitive.reset();
    EXPECT_TRUE(after.convert(*before.timeZone, zone(owner), zone(viewer), hour(now)) == before)
        << shift;
  }
}

TEST(TaskReminder, StaysWhereThereIsNothingToMove) {
  const auto isUnmoved = [](const Trigger& trigger, NotificationTimeZone to) {
    return full(trigger).convert(to, zone("GMT"), zone("Asia/Kathmandu"), {}) == full(trigger);
  };
  EXPECT_TRUE(isUnmoved(Trigger::fromTimeOfDay({9}), taskOwner));
  EXPECT_TRUE(isUnmoved(Trigger::fromRegion(gym), taskViewer));
  EXPECT_TRUE(isUnmoved({timeOfDay}, taskViewer));
  EXPECT_TRUE(isUnmoved({durationAfterStart, HHMMSS{9}}, taskViewer));
}

}  // namespace
}  // namespace velloro
