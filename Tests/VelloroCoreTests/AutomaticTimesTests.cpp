#include "VelloroCore/Reminders/AutomaticTimes.h"

#include <random>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

namespace velloro {
namespace {

const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();

TEST(AutomaticTimes, FollowTheTypeAndTheHistory) {
  using S = TypeSpeed;
  struct Case {
    std::int64_t numPartial, displayOrder;
    const char *log, *times;  // log: days ago, time and raw type of each entry, the newest first
    bool isNegative = false;
    std::optional<AutomaticTaskType> type = {};
  };
  const char* daily = "0 7:50:00 1 1 7:50:00 2 2 7:50:00 1 4 7:50:00 1 7 7:50:00 1 8 23:00:00 1";
  const char *nine = "1 9:00:00 1", *byLog = "08:30 history of 09:00:00 x1";
  const auto of = [](HealthType type, TypeSpeeds speeds, double quantity) {
    return AutomaticTaskType(type, TaskTarget{quantity, TypeUnit::timeOfDay, speeds});
  };
  using enum HealthType;
  const Case cases[] = {
      {1, 0, daily, "07:20 history of 07:50:00 x5"},
      {2, 0, daily, "07:20 history of 07:50:00 x5"},
      {1, 4, "", "18:40 default"},
      {5, 103, "", "14:10 default, 16:10 default, 18:10 default"},
      {1, 0, "1 0:10:00 1", "18:00 default"},
      {1, 0, "0 8:00:01 1 1 8:00:00 1", "07:30 history of 08:00:00 x2"},
      {1, 0, "1 9:02:30 1", "08:35 history of 09:02:30 x1"},
      {1, 0, "1 9:02:29 1", "08:30 history of 09:02:29 x1"},
      {1, 0, "0 9:00:00 3 1 9:00:00 7 2 9:00:00 15 3 9:00:00 11 4 9:00:00 99", "18:00 default"},
      {1, 0, "0 9:00:00 1 1 10:00:00 7", "09:30 history of 10:00:00 x1", true},
      // The first entry of a day is counted with the day after it.
      {3, 0, "0 20:00:00 6 0 15:00:00 6 0 9:30:00 6 1 21:00:00 6 1 14:00:00 6",
       "09:00 history of 09:30:00 x1, 14:30 history of 15:00:00 x3, 20:30 history of 21:00:00 x1"},
      {2, 0, "1 20:02:00 1 1 20:00:00 6", "16:30 filled, 19:30 history of 20:00:00 x1"},
      {3, 0, "1 11:30:00 1", "08:00 filled, 11:00 history of 11:30:00 x1"},
      {3, 0, "1 2:30:00 1", "02:00 history of 02:30:00 x1, 05:00 filled, 08:00 filled"},
      {1, 0, nine, "22:30 fixed", false, of(bedtime, S::inBedBefore, 82800)},
      {1, 0, nine, byLog, false, of(bedtime, S::inBedBefore, 86400)},
      {1, 0, nine, byLog, false, of(bedtime, S::inBedBefore, std::nan(""))},
      {1, 0, nine, "22:30 fixed", false, of(energyDeficit, S::greaterThan, 500)},
      {1, 0, nine, "23:30 sleep", false, of(inBed, {}, 8)},
  };
  for (const auto& [numPartial, order, entries, times, isNegative, type] : cases) {
    const AutomaticTimesFacts task{{.frequency = {.numPartialCompletions = numPartial},
                                    .startOfDay = {.h = 3},
                                    .timeZone = berlin,
                                    .isNegative = isNegative,
                                    .now = Date::since1970(1709809200)},
                                   type,
                                   order,
                                   HHMMSS{.m = 30}};
    std::vector<TaskLogRow> rows;
    std::istringstream items(entries);
    HHMMSS time;
    std::int16_t raw = 0;
    char colon = 0;
    for (int ago = 0; items >> ago >> time.h >> colon >> time.m >> colon >> time.s >> raw;) {
      const YYYYMMDD day = YYYYMMDD{2024, 3, 7}.add(-ago, berlin);
      rows.push_back({.entryDate = static_cast<std::int32_t>(day.intValue()),
                      .entryType = raw,
                      .createdTimestamp = day.dateAt(HHMMSS::midnight, time, berlin)});
    }
    std::string text;
    for (const auto& each : automaticTimes(task, [&](auto&) { return TaskLogRows(rows); })) {
      text += (text.empty() ? "" : ", ") + each.time.debugDescription().substr(0, 5) + " " +
              std::string(rawValue(each.source));
      if (!each.median) continue;
      text += " of " + each.median->debugDescription() + " x" + std::to_string(*each.samples);
    }
    EXPECT_EQ(text, times) << entries;
  }
}

/// The same rule in minutes, of a log of whole minutes.
std::set<std::int64_t> plainTimes(const std::vector<TaskLogRow>& rows, std::size_t numPartial) {
  std::map<std::size_t, std::vector<std::int64_t>> lists;
  std::size_t slot = 0;
  int previous = 20240229;
  for (const TaskLogRow& each : rows) {
    const bool isPart = each.entryType == 6 || each.entryType == 10;
    if (!isPart && each.entryType != 1 && each.entryType != 2) continue;
    const HHMMSS time = HHMMSS::fromDate(*each.createdTimestamp, berlin);
    lists[isPart ? slot : numPartial - 1].push_back(time.intValue() / 60);
    slot = each.entryDate == previous ? slot + 1 : 0;
    previous = each.entryDate;
  }
  lists.erase(lists.lower_bound(numPartial), lists.end());
  std::set<std::int64_t> all;
  for (auto& [key, list] : lists) {
    std::ranges::sort(list);
    const auto seconds = 30 * (list[list.size() / 2] + list[(list.size() - 1) / 2]) - 1800;
    if (seconds >= 0) all.insert((seconds + 150) / 300 * 5);
  }
  const auto add = [&](std::int64_t time) {
    const auto isNear = [&](auto each) { return std::abs(each - time) < 180; };
    const bool isFull = all.size() >= std::min<std::size_t>(numPartial, 3);
    if (!isFull && std::ranges::none_of(all, isNear)) all.insert(time);
  };
  for (const auto time : std::set(all)) {
    for (auto each = time - 180; each >= 480; each -= 180) add(each);
    for (auto each = time + 180; each <= 480; each += 180) add(each);
  }
  return all;
}

TEST(AutomaticTimes, AreThoseOfThePlainRuleOnRandomLogs) {
  std::mt19937 random(4);
  const auto number = [&](unsigned below) { return static_cast<std::int16_t>(random() % below); };
  for (int round = 0; round < 4000; ++round) {
    std::vector<TaskLogRow> rows(random() % 24);
    for (TaskLogRow& row : rows) {
      const YYYYMMDD day = YYYYMMDD{2024, 3, 7}.add(-number(8), berlin);
      const HHMMSS time{.h = number(24), .m = number(60)};
      row = {.entryDate = static_cast<std::int32_t>(day.intValue()), .entryType = number(16)};
      row.createdTimestamp = day.dateAt(HHMMSS::midnight, time, berlin);
    }
    std::ranges::sort(rows, std::greater{}, &TaskLogRow::createdTimestamp);
    AutomaticTimesFacts task{{.timeZone = berlin, .now = Date::since1970(1709809200)}};
    task.rules.frequency.numPartialCompletions = 1 + number(5);
    std::set<std::int64_t> found;
    for (const auto& each : automaticTimes(task, [&](auto&) { return TaskLogRows(rows); })) {
      if (each.source != AutomaticTimeSource::default_) found.insert(each.time.intValue() / 60);
    }
    const auto numPartial = static_cast<std::size_t>(task.rules.frequency.numPartialCompletions);
    ASSERT_EQ(found, plainTimes(rows, numPartial)) << "round " << round;
  }
}

}  // namespace
}  // namespace velloro
