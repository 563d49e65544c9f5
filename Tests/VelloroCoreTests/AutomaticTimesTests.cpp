// Automatic times by tables of cases, and on random logs beside a plain version of the rule, which
// counts in minutes.

#include "Foundation/Process/VirtualEnvironment.h"
#include "VelloroCore/Reminders/AutomaticTimes.h"

#include <random>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using enum TaskLogEntryType;
using Trigger = TaskReminder::Trigger;
using Type = AutomaticTaskType;

const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();

/// On Thursday, 7 March 2024, at noon in Berlin.
AutomaticTimesFacts facts(std::int64_t numPartial, std::int64_t displayOrder = 0) {
  AutomaticTimesFacts result{.rules = {.timeZone = berlin, .now = Date::since1970(1709809200)},
                             .displayOrder = displayOrder};
  result.rules.frequency.numPartialCompletions = numPartial;
  return result;
}

TaskLogRow row(std::int64_t daysAgo, HHMMSS time, std::int64_t type) {
  const YYYYMMDD day = YYYYMMDD{2024, 3, 7}.add(-daysAgo, berlin);
  return {.entryDate = static_cast<std::int32_t>(day.intValue()),
          .entryType = static_cast<std::int16_t>(type),
          .createdTimestamp = day.dateAt(HHMMSS::midnight, time, berlin)};
}

/// A log as days ago, time and raw value of the type, such as "0 7:50:00 1", the newest first.
std::vector<TaskLogRow> log(const std::string& list) {
  std::vector<TaskLogRow> rows;
  std::istringstream items(list);
  char colon = 0;
  for (std::int64_t ago = 0, h = 0, m = 0, s = 0, type = 0;
       items >> ago >> h >> colon >> m >> colon >> s >> type;) {
    rows.push_back(row(ago, {h, m, s}, type));
  }
  return rows;
}

std::vector<AutomaticTime> times(const AutomaticTimesFacts& of, const std::vector<TaskLogRow>& in) {
  return automaticTimes(of, [&](const YYYYMMDD::Range&) { return TaskLogRows(in); });
}

/// "07:20:00 history of 07:50:00 x8"
std::string text(const AutomaticTimesFacts& of, const std::vector<TaskLogRow>& rows) {
  std::string result;
  for (const AutomaticTime& each : times(of, rows)) {
    result += (result.empty() ? "" : ", ") + each.time.debugDescription() + " " +
              std::string(rawValue(each.source));
    if (each.median) result += " of " + each.median->debugDescription();
    if (each.samples) result += " x" + std::to_string(*each.samples);
  }
  return result;
}

TEST(AutomaticTimes, FollowTheHistory) {
  struct Case {
    std::int64_t numPartial, displayOrder;
    const char *log, *times;
    bool isNegative = false;
  };
  const char* everyDay =
      "0 7:50:00 1 1 7:50:00 1 2 7:50:00 1 3 7:50:00 2 4 7:50:00 1 7 7:50:00 1 8 23:00:00 1";
  const Case cases[] = {
      {1, 0, everyDay, "07:20:00 history of 07:50:00 x6"},
      {2, 0, everyDay, "07:20:00 history of 07:50:00 x6"},
      {1, 4, "", "18:40:00 default"},
      {1, 103, "", "18:10:00 default"},
      {5, 0, "", "14:00:00 default, 16:00:00 default, 18:00:00 default"},
      {1, 0, "1 0:10:00 1", "18:00:00 default"},
      {1, 0, "1 0:30:00 1", "00:00:00 history of 00:30:00 x1"},
      {1, 0, "0 8:00:01 1 1 8:00:00 1", "07:30:00 history of 08:00:00 x2"},
      {1, 0, "1 9:02:30 1", "08:35:00 history of 09:02:30 x1"},
      {1, 0, "1 9:02:29 1", "08:30:00 history of 09:02:29 x1"},
      {1, 0, "0 9:00:00 3 1 10:00:00 7 2 11:00:00 15 3 12:00:00 11 4 9:00:00 99",
       "18:00:00 default"},
      {1, 0, "0 9:00:00 1 1 10:00:00 7", "09:30:00 history of 10:00:00 x1", true},
      // The first entry of a day is counted with the day after it.
      {3, 0, "0 20:00:00 6 0 15:00:00 6 0 9:30:00 6 1 21:00:00 6 1 14:00:00 6",
       "09:00:00 history of 09:30:00 x1, 14:30:00 history of 15:00:00 x3, "
       "20:30:00 history of 21:00:00 x1"},
      {2, 0, "0 20:00:00 1 0 15:00:00 6 0 9:30:00 6 0 8:30:00 6",
       "14:15:00 history of 14:45:00 x2, 14:30:00 history of 15:00:00 x1"},
      {2, 0, "1 20:02:00 1 1 20:00:00 6", "16:30:00 filled, 19:30:00 history of 20:00:00 x1"},
      {3, 0, "1 20:00:00 1", "13:30:00 filled, 16:30:00 filled, 19:30:00 history of 20:00:00 x1"},
      {3, 0, "1 11:30:00 1", "08:00:00 filled, 11:00:00 history of 11:30:00 x1"},
      {3, 0, "1 11:25:00 1", "10:55:00 history of 11:25:00 x1"},
      {3, 0, "1 2:30:00 1", "02:00:00 history of 02:30:00 x1, 05:00:00 filled, 08:00:00 filled"},
  };
  for (const auto& [numPartial, order, entries, times, isNegative] : cases) {
    auto of = facts(numPartial, order);
    of.rules.isNegative = isNegative;
    EXPECT_EQ(text(of, log(entries)), times) << entries;
  }
  auto elsewhere = row(1, {.h = 9}, 1);
  elsewhere.createdTimeZone = "America/New_York";
  EXPECT_EQ(text(facts(1), {elsewhere}), "02:30:00 history of 03:00:00 x1");
  elsewhere.createdTimeZone = "Nowhere";
  EXPECT_EQ(text(facts(1), {elsewhere}), "08:30:00 history of 09:00:00 x1");
  elsewhere.createdTimestamp.reset();
  EXPECT_EQ(text(facts(1), {elsewhere}), "18:00:00 default");
}

TEST(AutomaticTimes, FollowTheTypeWhereItSaysEnough) {
  using enum HealthType;
  struct Case {
    HealthType type;
    TypeSpeeds speeds;
    double quantity;
    const char* times;
    HHMMSS startOfDay = {};
    std::optional<HHMMSS> timeOfGoingToBed = HHMMSS{.m = 30};
  };
  const char* byLog = "08:30:00 history of 09:00:00 x1";
  const Case cases[] = {
      {bedtime, TypeSpeed::inBedBefore, 82800, "22:30:00 fixed"},
      {bedtime, TypeSpeed::outOfBedAfter, 600.9, "23:40:00 fixed"},
      {bedtime, TypeSpeed::inBedBefore, 86400, byLog},
      {bedtime, TypeSpeed::inBedBefore, -1, byLog},
      {bedtime, TypeSpeed::inBedBefore, std::nan(""), byLog},
      {bedtime, {TypeSpeed::walk, TypeSpeed::inBedBefore}, 82800, byLog},
      {bedtime, {}, 82800, byLog},
      {energyDeficit, TypeSpeed::greaterThan, 500, "19:30:00 fixed"},
      {energyDeficit, {}, 500, "01:30:00 fixed", {.h = 6}},
      {sleep, {}, 8, "23:30:00 sleep"},
      {inBed, {}, 8, "21:00:00 sleep", {}, HHMMSS{.h = 22}},
      {sleep, {}, 8, byLog, {}, std::nullopt},
      {mindfulMinutes, {}, 10, byLog},
  };
  for (const auto& [type, speeds, quantity, times, startOfDay, timeOfGoingToBed] : cases) {
    auto of = facts(1);
    of.automaticTaskType.emplace(type).speeds = speeds;
    of.automaticTaskType->quantity = quantity;
    of.rules.startOfDay = startOfDay;
    of.timeOfGoingToBed = timeOfGoingToBed;
    EXPECT_EQ(text(of, log("1 9:00:00 1")), times) << rawValue(type) << quantity;
  }
}

/// Of a log with whole minutes.
std::set<int> plainTimes(const std::vector<TaskLogRow>& rows, std::size_t numPartial) {
  std::vector<std::vector<int>> lists(numPartial);
  std::size_t slot = 0;
  int previous = 20240229;
  for (const TaskLogRow& each : rows) {
    const std::set<int> full{1, 2}, partial{6, 10};
    if (!full.contains(each.entryType) && !partial.contains(each.entryType)) continue;
    const std::size_t key = partial.contains(each.entryType) ? slot : numPartial - 1;
    const HHMMSS time = HHMMSS::fromDate(*each.createdTimestamp, berlin);
    if (key < numPartial) lists[key].push_back(static_cast<int>(time.h * 60 + time.m));
    slot = each.entryDate == previous ? slot + 1 : 0;
    previous = each.entryDate;
  }
  std::set<int> all;
  for (auto& list : lists) {
    std::ranges::sort(list);
    if (list.empty()) continue;
    const int seconds = 30 * (list[list.size() / 2] + list[(list.size() - 1) / 2]) - 1800;
    if (seconds >= 0) all.insert((seconds + 150) / 300 * 5);
  }
  const auto add = [&](int time) {
    const bool isNear =
        std::ranges::any_of(all, [&](int each) { return std::abs(each - time) < 180; });
    if (!isNear && all.size() < std::min(numPartial, std::size_t{3})) all.insert(time);
  };
  for (const int time : std::set(all)) {
    for (int each = time - 180; each >= 480; each -= 180) add(each);
    for (int each = time + 180; each <= 480; each += 180) add(each);
  }
  return all;
}

TEST(AutomaticTimes, AreThoseOfThePlainRuleOnRandomLogs) {
  std::mt19937 random(4);
  const auto number = [&](unsigned below) { return static_cast<std::int64_t>(random() % below); };
  for (int round = 0; round < 4000; ++round) {
    std::vector<TaskLogRow> rows;
    for (auto rest = number(24); rest > 0; --rest) {
      rows.push_back(row(number(8), {.h = number(24), .m = number(60)}, number(16)));
    }
    std::ranges::sort(rows, std::greater{}, &TaskLogRow::createdTimestamp);
    const std::size_t numPartial = 1 + random() % 5;
    std::set<int> found;
    for (const AutomaticTime& each : times(facts(static_cast<std::int64_t>(numPartial)), rows)) {
      if (each.source == AutomaticTimeSource::default_) continue;
      found.insert(static_cast<int>(each.time.intValue() / 60));
    }
    ASSERT_EQ(found, plainTimes(rows, numPartial)) << "round " << round;
  }
}

TEST(AutomaticTimes, TakeThePlaceOfTheFormerOnes) {
  using enum ReminderType;
  using enum TaskReminder::TriggerType;
  using List = std::vector<TaskReminder>;
  VirtualEnvironment environment;
  const auto reminder = [](Trigger trigger, const EnumSet<DayOfWeek>& days = everyDay()) {
    return TaskReminder{
        .uniqueId = UniqueID::create(), .trigger = std::move(trigger), .daysOfWeek = days};
  };
  const HHMMSS seven{.h = 7}, eight{.h = 8}, nine{.h = 9}, ten{.h = 10};
  const TaskReminder timed = reminder(Trigger::fromTimeOfDay(seven)),
                     muted = reminder(Trigger::fromMutedTimeOfDay(seven)),
                     onMonday = reminder(Trigger::fromTimeOfDay(eight), DayOfWeek::monday),
                     place = reminder(Trigger::fromRegion({.title = "gym"})),
                     early = reminder(Trigger::fromDuration(durationAfterStart, 60)),
                     late = reminder(Trigger::fromDuration(durationBeforeFinish, 60));
  const auto list = [](ReminderType type, List reminders, const std::vector<AutomaticTime>& times) {
    const auto settings = withAutomaticTimes({.reminderType = type, .reminders = reminders}, times);
    return settings ? std::optional(settings->reminders) : std::nullopt;
  };
  const List all{place, timed, muted, onMonday, early, late};
  const std::vector<AutomaticTime> twice{{.time = seven}, {.time = seven}};
  EXPECT_EQ(list(automatic, all, twice), List({timed, place, early, late}));
  EXPECT_EQ(list(none, all, twice), List({muted, place, early, late}));
  EXPECT_EQ(list(custom, all, twice), std::nullopt);
  EXPECT_EQ(list(automatic, {late, timed}, {}), List({late}));
  EXPECT_EQ(list(custom, {late, muted, onMonday}, {}), List({late, onMonday}));

  const TaskReminder snoozed =
      onMonday.with(everyDay(), Trigger::fromTimeOfDay(eight))
          .withSnooze(YYYYMMDD{2024, 3, 7}, HHMMSS{8, 5}, NotificationTimeZone::taskViewer);
  EXPECT_EQ(list(automatic, {timed, snoozed}, {{.time = seven}, {.time = eight}}), std::nullopt);
  const auto moved =
      list(automatic, {timed, snoozed}, {{.time = seven}, {.time = nine}, {.time = ten}}).value();
  EXPECT_EQ(moved[0], timed);
  EXPECT_EQ(moved[1], snoozed.with(everyDay(), Trigger::fromTimeOfDay(nine)));
  EXPECT_NE(moved[2].uniqueId, UniqueID());
}

}  // namespace
}  // namespace velloro
