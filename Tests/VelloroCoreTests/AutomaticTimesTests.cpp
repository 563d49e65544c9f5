#include "VelloroCore/Reminders/AutomaticTimes.h"

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

}  // namespace
}  // namespace velloro
