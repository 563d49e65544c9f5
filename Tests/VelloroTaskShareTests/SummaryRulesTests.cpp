#include "Support/Fixtures.h"
#include "VelloroTaskShare/TaskCloudSummaryBuilding.h"
#include "VelloroTaskShare/TaskCloudSummaryDifference.h"

#include <random>

namespace velloro {
namespace {

using ActionType = TaskCloudSummaryDifference::ActionType;
using Entry = TaskCloudSummary::Entry;
using Recency = TaskCloudSummaryDifference::Recency;
using ReminderTime = TaskCloudSummary::ReminderTime;
using Status = CompletionStatus::Status;

const TimeZone auckland = TimeZone::fromIdentifier("Pacific/Auckland").value();
const TimeZone newYork = TimeZone::fromIdentifier("America/New_York").value();

TEST(SummaryRules, HaveTheirForms) {
  expectRawValues<ActionType>(
      {"noAction", "fullCompletion", "partialCompletion", "missed", "allowedMiss"});
  EXPECT_EQ(JSONEncoder{}.encode(TaskCloudSummaryDifference{}), "{}");
}

TEST(SummaryRules, ASummaryIsAsOldAsThePeriodInTheZoneWhereTheTaskWasCreated) {
  const Date now = Date::fromISO8601("2024-03-07T12:00:00Z").value();  // the 8th in Auckland
  TaskCloudSummary summary;
  summary.taskDescriptor.firstDayOfWeek = DayOfWeek::monday;
  summary.taskDescriptor.createdTimeZone = auckland;
  summary.taskDescriptor.currentTimeZone = newYork;
  EXPECT_EQ(recency(summary, {2024, 3, 7}, now), Recency::future);
  EXPECT_EQ(recency(summary, {2024, 3, 8}, now), Recency::current);
  EXPECT_EQ(recency(summary, {2024, 3, 9}, now), Recency::old);
  summary.taskDescriptor.startOfDay = {.h = 2};  // 01:00 in Auckland
  EXPECT_EQ(recency(summary, {2024, 3, 7}, now), Recency::current);
  summary.taskDescriptor.frequency.dayMode = DayMode::aggregateOverWeek;
  EXPECT_EQ(recency(summary, {2024, 3, 3}, now), Recency::future);
  EXPECT_EQ(recency(summary, {2024, 3, 10}, now), Recency::current);
  EXPECT_EQ(recency(summary, {2024, 3, 11}, now), Recency::old);
}

CompletionStatus statusOn(int day, const Status& status, int numCompletions) {
  const auto period = DatedPeriod::fromDate(YYYYMMDD{2024, 3, day}, TaskFrequencyPeriodType::day,
                                            DayOfWeek::sunday, {});
  return {status,
          TaskProgressDiscrete{
              .period = period, .expectedCompletions = 3, .numCompletions = numCompletions}};
}

/// The rule, written down step by step.
ActionType naiveDifference(bool hasOld, bool sameTask, const CompletionStatus* before,
                           const CompletionStatus& after) {
  int step = 2;
  if (before == nullptr || !hasOld) step = 4;
  if (step == 2 && !sameTask) return ActionType::noAction;
  if (step == 2) {
    const bool samePeriod = before->progress().period().period == after.progress().period().period;
    step = samePeriod && before->status != after.status ? 4 : 5;
  }
  if (step == 4) {
    if (after.status == Status::positiveComplete) return ActionType::fullCompletion;
    if (after.status == Status::positiveMiss) return ActionType::missed;
    if (after.status == Status::negativeMiss) return ActionType::missed;
    if (after.status == Status::negativeAllowedMiss) return ActionType::allowedMiss;
  }
  const auto value = [](const CompletionStatus* status) {
    return status == nullptr ? 0 : status->progress().currentValue(Date());
  };
  return value(&after) > value(before) ? ActionType::partialCompletion : ActionType::noAction;
}

TEST(SummaryRules, SayWhatHappenedBetweenAnyTwoSummaries) {
  TaskCloudSummary same;
  TaskCloudSummary other;
  other.taskDescriptor.isPaused = true;
  std::set<ActionType> seen;
  for (const Status& status : Status::allCases()) {
    for (const int count : {0, 1, 2}) {
      const CompletionStatus after = statusOn(7, status, count);
      std::vector<std::optional<CompletionStatus>> olds{std::nullopt};
      for (const Status& old : Status::allCases()) {
        olds.insert(olds.end(), {statusOn(7, old, 1), statusOn(6, old, 1)});
      }
      for (const auto& old : olds) {
        const CompletionStatus* before = old ? &*old : nullptr;
        for (const TaskCloudSummary* summary :
             {&same, &other, static_cast<TaskCloudSummary*>(nullptr)}) {
          const SummaryChange change{
              .summary = same, .status = after, .old = summary, .oldStatus = before};
          const ActionType action = difference(change, Date());
          EXPECT_EQ(action, naiveDifference(summary != nullptr, summary != &other, before, after));
          seen.insert(action);
        }
      }
    }
  }
  EXPECT_EQ(seen.size(), 5U);
}

Entry randomEntry(std::mt19937& random) {
  const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
  const YYYYMMDD day{2024, 3, 1 + below(12)};
  Entry entry{.type = TaskLogEntryType::completedManuallyFull, .time = {.h = below(24)}};
  if (below(5) != 0) {
    const auto type = below(3) != 0 ? TaskFrequencyPeriodType::day : TaskFrequencyPeriodType::week;
    const auto period = DatedPeriod::fromDate(day, type, DayOfWeek::sunday, {}).period;
    entry.period = TaskLogEntryPeriod(type, period.startDate, period.finishDate, day);
  }
  if (below(2) != 0) entry.timeZone = below(2) != 0 ? auckland : newYork;
  return entry;
}

TEST(SummaryRules, RandomLogsAreSplitIntoDaysAndOthers) {
  std::mt19937 random(22);  // NOLINT: every run the same
  const Date now = Date::fromISO8601("2024-03-08T12:00:00Z").value();
  const YYYYMMDD today{2024, 3, 8};  // in Auckland, where the 9th has begun, before its day does
  for (int round = 0; round < 200; ++round) {
    std::vector<Entry> entries(random() % 20);
    for (Entry& entry : entries) entry = randomEntry(random);
    TaskCloudSummary::History expected{.firstDayOfWeek = DayOfWeek::monday};
    for (Entry entry : entries) {
      if (entry.timeZone && *entry.timeZone == auckland) entry.timeZone = std::nullopt;
      if (!entry.period || entry.period->to >= today ||
          entry.period->type != TaskFrequencyPeriodType::day) {
        expected.multi.push_back(entry);
      } else {
        expected.single[entry.period->date] = entry;
      }
    }
    const HistoryRequest request{
        .startOfDay = {.h = 4}, .firstDayOfWeek = DayOfWeek::monday, .taskTimeZone = auckland};
    EXPECT_EQ(historyOf(entries, request, now), expected);
    TaskCloudSummary there;
    there.history = expected;
    TaskCloudSummary here;
    here.history = {.firstDayOfWeek = DayOfWeek::monday, .multi = expected.multi};
    std::vector<std::pair<YYYYMMDD, Entry>> days(expected.single.begin(), expected.single.end());
    std::ranges::shuffle(days, random);
    for (const auto& [day, entry] : days) here.history.single.emplace(day, entry);
    EXPECT_EQ(here.summaryHash(), there.summaryHash());
  }
}

TEST(SummaryRules, EachWeekdayKeepsItsFirstTime) {
  using enum DayOfWeek;
  using Days = EnumSet<DayOfWeek>;
  const HHMMSS morning{.h = 4};
  const auto reduced = reduceToMinimalSet(
      {{.days = Days{monday, tuesday}, .times = {{.h = 3}, {.h = 21}}},
       {.days = Days{monday}},
       {.times = {{.h = 5}}},
       {.days = Days{}, .times = {{.h = 5}}},
       {.days = Days{wednesday}, .times = {{.h = 3}}},
       {.days = Days{monday, friday}, .dayIndexesFromStart = {{1}}, .times = {{.h = 20}}},
       {.days = Days{friday}, .times = {{.h = 22}}}},
      morning);
  const std::vector<ReminderTime> expected{{.days = Days{monday, friday}, .times = {{.h = 20}}},
                                           {.days = Days{tuesday}, .times = {{.h = 21}}},
                                           {.days = Days{wednesday}, .times = {{.h = 3}}}};
  EXPECT_EQ(reduced, expected);
}

}  // namespace
}  // namespace velloro
