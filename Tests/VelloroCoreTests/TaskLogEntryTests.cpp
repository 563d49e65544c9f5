#include "Support/Fixtures.h"
#include "VelloroCore/Log/TaskLogEntryPeriod.h"
#include "VelloroCore/Log/TaskLogEntryType.h"

#include <set>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using enum TaskLogEntryType;
using Sets = TaskLogEntryTypes;
using Types = EnumSet<TaskLogEntryType>;

TEST(TaskLogEntryType, KeepsItsNumbersAndNames) {
  expectRawValues<TaskLogEntryType>({0, 1, 2, 6, 3, 4, 13, 14, 5, 7, 8, 9, 10, 11, 12, 15});
  EXPECT_FALSE(fromRawValue<TaskLogEntryType>(0x10001)) << "1 in its low 16 bits";
  std::string names;
  for (const auto type : allCases<TaskLogEntryType>()) names.append(description(type)) += ' ';
  EXPECT_EQ(names,
            "unknown completed_manually completed_auto completed_manually_partial skipped_manually "
            "skipped_auto allowed_missed_manually allowed_missed_auto missed_auto missed_manually "
            "missed_manually_partial missed_auto_partial completed_auto_partial timer_manually "
            "timer_auto external_health_data ");
  EXPECT_EQ(debugDescription(skippedManuallyFull), "TaskLogEntryType[3, skipped_manually]");
}

TEST(TaskLogEntryType, IsInTheSetsOfItsKind) {
  struct Case {
    const char* what;
    std::set<std::int64_t> members;  // by their stored numbers
    std::optional<Types> set;
    bool (*test)(TaskLogEntryType);
  };
  const Case cases[] = {
      {"partial", {6, 10, 8, 9}, Sets::allPartialTypes, isPartial},
      {"manual", {1, 6, 3, 13, 7, 8, 11}, Sets::allManualTypes, nullptr},
      {"full", {1, 2, 7, 5, 3, 4, 13, 14}, Sets::allFullTypes, isFull},
      {"automatic", {2, 10, 5, 9, 4, 14, 12, 15}, Sets::allAutomaticTypes, isAutomatic},
      {"timer", {11, 12}, Sets::allTimerTypes, isTimer},
      {"skipped", {3, 4}, Sets::allSkipTypes, isSkipped},
      {"completed", {1, 2, 6, 10}, Sets::allCompletedTypes, isCompletedFullOrPartial},
      {"missed", {7, 5, 8, 9}, Sets::allMissedTypes, isMissedFullOrPartial},
      {"completed full", {1, 2}, {}, isCompletedFull},
      {"completed partial", {6, 10}, {}, isCompletedPartial},
      {"missed full", {7, 5}, {}, isMissedFull},
      {"missed partial", {8, 9}, {}, isMissedPartial},
      {"allowable miss", {13, 14}, {}, isAllowableMissFull}};
  for (const auto type : allCases<TaskLogEntryType>()) {
    EXPECT_TRUE(Sets::allTypes.contains(type)) << debugDescription(type);
    for (const auto& [what, members, set, test] : cases) {
      const bool isMember = members.contains(rawValue(type));
      EXPECT_EQ(set ? set->contains(type) : isMember, isMember) << what << debugDescription(type);
      EXPECT_EQ(test ? test(type) : isMember, isMember) << what << debugDescription(type);
    }
  }
}

TEST(TaskLogEntryType, GoesBeforeAnotherFullEntryByOriginThenRank) {
  // By the stored numbers
  const std::set<std::int64_t> automatic{2, 4, 5, 9, 10, 12, 14, 15};
  const int ranks[2][16] = {{4, 1, 1, 2, 2, 3, 4, 3, 4, 4, 4, 4, 4, 4, 4, 4},
                            {4, 2, 2, 3, 3, 1, 4, 1, 4, 4, 4, 4, 4, 4, 4, 4}};
  for (int a = 0; a < 16; ++a) {
    for (int b = 0; b < 16; ++b) {
      for (const bool negative : {false, true}) {
        const bool isBefore = automatic.contains(a) == automatic.contains(b)
                                  ? ranks[negative][a] <= ranks[negative][b]
                                  : automatic.contains(b);
        const auto first = fromRawValue<TaskLogEntryType>(a).value();
        const auto other = fromRawValue<TaskLogEntryType>(b).value();
        EXPECT_EQ(isFullEntryBefore(first, other, negative), isBefore) << a << b << negative;
      }
    }
  }
}

using enum TaskFrequencyPeriodType;

std::optional<YYYYMMDD> date(int dayOfMarch) {
  return YYYYMMDD::fromRawValue(dayOfMarch == 0 ? 0 : 20240300 + dayOfMarch);
}

TaskLogEntryPeriod period(TaskFrequencyPeriodType type, int from, int to, int day) {
  return {type, date(from).value(), date(to).value(), date(day).value()};
}

TEST(TaskLogEntryPeriod, IsMadeOfWhatIsStored) {
  struct Case {
    std::optional<TaskFrequencyPeriodType> type;
    int date, from, to;  // 0 for absent
    std::optional<TaskLogEntryPeriod> period;
  };
  const Case cases[] = {
      {week, 6, 3, 9, period(week, 3, 9, 6)},  {week, 2, 3, 9, period(week, 3, 9, 3)},
      {week, 10, 3, 9, period(week, 3, 9, 9)}, {week, 0, 3, 9, period(week, 3, 9, 9)},
      {week, 6, 3, 0, period(week, 6, 6, 6)},  {day, 6, 3, 9, period(day, 6, 6, 6)},
      {{}, 6, 3, 9, period(day, 6, 6, 6)},     {week, 0, 3, 0, {}}};
  for (const auto& [type, on, from, to, expected] : cases) {
    EXPECT_TRUE(TaskLogEntryPeriod::fromStored(type, date(on), date(from), date(to)) == expected)
        << on << " in " << from << "…" << to;
  }
  const auto stored = period(week, 3, 9, 6);
  expectFixture("TaskLogEntryPeriod", stored);
  const char* outside = R"({"type":"w","from":20240303,"to":20240309,"date":20240401})";
  EXPECT_EQ(JSONDecoder{}.decode<TaskLogEntryPeriod>(outside), period(week, 3, 9, 9));
  const auto whole = stored.frequencyPeriod(DayOfWeek::sunday);
  EXPECT_EQ(whole, TaskFrequencyPeriod::fromDate(week, *date(6), DayOfWeek::sunday, {}));
  EXPECT_EQ(whole.periodType, week);
}

TEST(TaskLogEntryPeriod, OverlapsAndGoesBefore) {
  const auto first = period(week, 3, 9, 6);
  EXPECT_TRUE(first.hasOverlap(first));
  EXPECT_TRUE(first.hasOverlap(period(day, 9, 9, 9)) && period(day, 9, 9, 9).hasOverlap(first));
  EXPECT_TRUE(first.hasOverlap(period(month, 1, 31, 31)));
  EXPECT_FALSE(first.hasOverlap(period(day, 10, 10, 10)) || period(day, 2, 2, 2).hasOverlap(first));

  EXPECT_FALSE(first.isBefore(period(week, 3, 9, 7))) << "the date does not count";
  EXPECT_TRUE(first.isBefore(period(month, 1, 8, 6)));
  EXPECT_TRUE(period(month, 1, 8, 6).isBefore(first)) << "each before the other";
  EXPECT_TRUE(first.isBefore(period(day, 1, 10, 6)));
}

}  // namespace
}  // namespace velloro
