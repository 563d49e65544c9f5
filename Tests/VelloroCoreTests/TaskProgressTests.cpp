#include "Foundation/Text/String.h"
#include "Support/Fixtures.h"
#include "VelloroCore/Progress/TaskProgressCodable.h"

#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Discrete = TaskProgressDiscrete;
using Timer = TaskProgressTimer;
using Rings = TaskProgressActivityRings;
using DateRange = TaskProgressDateRange;
using Unit = Timer::Unit;

const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();
const DatedPeriod today{{2024, 3, 31},
                        {TaskFrequencyPeriodType::day, {2024, 3, 31}, {2024, 3, 31}}};
const DatedPeriod week{{2024, 3, 31},
                       {TaskFrequencyPeriodType::week, {2024, 3, 25}, {2024, 3, 31}}};
const Date noon = Date::fromISO8601("2024-03-31T12:00:00+02:00").value();

Discrete discrete(std::int64_t completions, std::int64_t expected) {
  return {today, expected, completions};
}
TaskProgressContinuous continuous(double current, double target, std::int64_t expected) {
  return {today, expected, target, current};
}
/// Ten minutes in two completions.
Timer timer(std::int64_t completions, double seconds) {
  return {today, Unit::minutes, 2, completions, 600, seconds};
}
Rings rings(double energy, double exercise, double stand) {
  return {today, energy, exercise, stand};
}
TaskProgressSimple simple(double progress, double current) {
  return {today, progress, current};
}
DateRange dateRange(std::optional<Date> at, bool enabled = true) {
  return DateRange::from({.period = today,
                          .startOfDay = HHMMSS{.h = 3},
                          .timeZone = berlin,
                          .currentDate = at,
                          .enabled = enabled});
}

/// The common interface's numbers, in its order.
std::string numbers(const TaskProgress& it, Date now = {}) {
  return stringWithFormat("%lld %lld | %.10g %.10g %.10g | %.10g %.10g | %.10g %.10g",
                          static_cast<long long>(it.expectedCompletions()),
                          static_cast<long long>(it.numCompletions(now)), it.targetValue(),
                          it.currentValue(now), it.valuePerCompletion(), it.progressPct(now),
                          it.currentCompletionProgressPct(), it.remainingValue(now),
                          it.remainingValueForCurrentCompletion(now));
}

TEST(TaskProgress, AnswersForEveryRecord) {
  struct Case {
    TaskProgress progress;
    const char* numbers;
    TaskProgress zero, next, complete;
  };
  const TaskProgress none = discrete(0, 1), one = discrete(1, 1);
  const Timer idle{today, Unit::hours, 0, 0, 0, 9};
  const Case cases[] = {
      {discrete(1, 3), "3 1 | 3 1 1 | 0.3333333333 0 | 2 1", discrete(0, 3), discrete(2, 3),
       discrete(3, 3)},
      {discrete(3, 3), "3 3 | 3 3 1 | 1 0 | 0 1", discrete(0, 3), discrete(3, 3), discrete(3, 3)},
      {discrete(4, 0), "1 4 | 1 4 1 | 4 0 | 0 1", none, one, one},
      {continuous(0.3, 0.4, 4), "4 3 | 0.4 0.3 0.1 | 0.75 0 | 0.1 0.1", continuous(0, 0.4, 4),
       continuous(0.4, 0.4, 4), continuous(0.3, 0.4, 4)},
      {continuous(9, 8, 0), "1 1 | 8 9 8 | 1 0 | 0 7", continuous(0, 8, 1), continuous(17, 8, 1),
       continuous(9, 8, 1)},
      {continuous(-1, 8, 2), "2 -1 | 8 -1 4 | 0 0 | 9 1", continuous(0, 8, 2), continuous(3, 8, 2),
       continuous(-1, 8, 2)},
      {continuous(5, 0, 2), "2 0 | 0 5 0 | 0 0 | 0 -5", continuous(0, 0, 2), continuous(5, 0, 2),
       continuous(5, 0, 2)},
      {timer(1, 100),
       "2 1 | 10 6.666666667 5 | 0.6666666667 0.3333333333 | 3.333333333 3.333333333", timer(0, 0),
       timer(2, 0), timer(2, 0)},
      {timer(0, 420), "2 0 | 10 5 5 | 0.5 1.4 | 5 0", timer(0, 0), timer(1, 0), timer(2, 0)},
      {idle, "1 0 | 0 0 0 | 0 0 | 0 0", Timer{today, Unit::hours, 1, 0, 0, 0},
       idle.completeProgress(), Timer{today, Unit::hours, 1, 1, 0, 0}},
      {rings(1.5, 0.5, 0), "1 0 | 1 50150 1 | 0.5 0 | 0 0", rings(0, 0, 0), rings(1.5, 1, 1),
       rings(1, 1, 1)},
      {simple(0.25, 0.5), "1 0 | 1 0.25 1 | 0.25 0.5 | 0.75 0.75", simple(0, 0), simple(1, 0),
       simple(1, 0)},
      {dateRange(noon + 3 * 3600), "1 0 | 1 0.5 1 | 0.5 0 | 0.5 0.5", none, one, one},
      {dateRange(noon + 86400), "1 1 | 1 1 1 | 1 0 | 0 0", none, one, one}};
  for (const auto& [progress, expected, zero, next, complete] : cases) {
    SCOPED_TRACE(progress.debugDescription({}));
    EXPECT_EQ(numbers(progress), expected);
    EXPECT_EQ(progress.zeroProgress(), zero);
    EXPECT_EQ(progress.nextProgress(), next);
    EXPECT_EQ(progress.completeProgress(), complete);
    TaskProgress moved = progress;
    moved.setPeriod(week);
    EXPECT_EQ(moved.nextProgress().period(), week);
  }
  EXPECT_EQ(one.debugDescription({}), "TaskProgress[discrete, 1 of 1 completions, 1 of 1]");
}

TEST(TaskProgress, KeepsItsForms) {
  expectRawValues<TaskProgressType>(
      {"discrete", "continuous", "timer", "activity", "simple", "dateRange"});
  expectRawValues<Unit>({"h", "m", "s"});
  expectFixture("TaskProgressDiscrete", discrete(1, 3));
  expectFixture("TaskProgressContinuous", continuous(0.3, 0.4, 4));
  expectFixture("TaskProgressTimer", timer(1, 100.5));
  expectFixture("TaskProgressActivityRings", rings(0.29, 1, 1.5));
  expectFixture("TaskProgressSimple", simple(0.25, 0.5));
  expectFixture("TaskProgressDateRange", dateRange(noon));
  expectFixture("TaskProgressCodable", TaskProgressCodable{timer(1, 100.5)});
  const auto failure = decodingFailure<TaskProgressCodable>;
  EXPECT_EQ(failure(R"({"type":"dice","base":{}})").substr(0, 5), "type:");
  EXPECT_EQ(failure(R"({"type":"timer","base":{}})").substr(0, 5), "base:");

  std::string json = fixtureText("TaskProgressTimer");
  json.replace(json.find("Completions\": 2") + 14, 1, "0");
  const auto stored = JSONDecoder{}.decode<Timer>(json);
  EXPECT_EQ(stored.expectedCompletions, 0) << "as it was stored";
  EXPECT_EQ(stored.durationPerCompletion(), 600);
  EXPECT_EQ((Discrete{today, stored.expectedCompletions, 1}.progressPct()), 0);

  // A count of which nothing is known lets neither what is done nor the next step look complete.
  for (const auto& [done, expected] : {std::pair{"0", 2}, {"3", 4}, {"1.5", 2}, {"null", 2}}) {
    std::string damaged = JSONEncoder{}.encode(discrete(7, 5));
    damaged.replace(damaged.find("ons\":5") + 5, 1, "1e300");
    damaged.replace(damaged.find("ons\":7") + 5, 1, done);
    EXPECT_EQ(JSONDecoder{}.decode<Discrete>(damaged).expectedCompletions, expected) << damaged;
  }
}

TEST(TaskProgressCodable, DiffersInTypeAndEachMember) {
  std::vector<TaskProgress> different;
  const auto add = [&](const auto&... progress) { (different.emplace_back(progress), ...); };
  add(discrete(0, 1), discrete(1, 1), discrete(0, 2), Discrete{week, 1, 0});
  add(continuous(0, 1, 1), continuous(1, 1, 1), continuous(0, 2, 1), continuous(0, 1, 2));
  add(timer(0, 0), timer(1, 0), timer(0, 1), Timer{today, Unit::hours, 2, 0, 600, 0});
  add(Timer{today, Unit::minutes, 3, 0, 600, 0}, Timer{today, Unit::minutes, 2, 0, 601, 0});
  add(rings(0, 0, 0), rings(1, 0, 0), rings(0, 1, 0), rings(0, 0, 1));
  add(simple(0, 0), simple(1, 0), simple(0, 1));
  add(dateRange({}), dateRange({}, false), dateRange(noon), dateRange(noon + 1));
  add(DateRange::from({.period = today, .startOfDay = {.h = 3}}));
  add(DateRange::from({.period = today, .timeZone = berlin}));
  for (const TaskProgress& a : different) {
    const TaskProgressCodable wrapper{a};
    const std::string json = JSONEncoder{}.encode(wrapper);
    EXPECT_EQ(JSONDecoder{}.decode<TaskProgressCodable>(json), wrapper) << json;
    for (const TaskProgress& b : different) {
      EXPECT_EQ(wrapper == TaskProgressCodable{b}, &a == &b) << json << b.debugDescription({});
      EXPECT_EQ(a == b, &a == &b) << json << b.debugDescription({});
    }
  }
  EXPECT_EQ(TaskProgressCodable{rings(-0.0, 0, 0)}, TaskProgressCodable{rings(0, 0, 0)});
}

TEST(TaskProgressContinuous, CountsSumsAsDecimals) {
  double sum = 0;
  for (int count = 1; count <= 1000; ++count) {
    sum += 0.1;
    const auto progress = continuous(sum, 100, 1000);
    ASSERT_EQ(progress.numCompletions(), count);
    ASSERT_NEAR(progress.remainingValueForCurrentCompletion(), 0.1, 1e-11) << count;
    ASSERT_EQ(progress.progressPct() == 1, count == 1000) << count;
    ASSERT_EQ(continuous(sum + 0.05, 100, 1000).numCompletions(), count);
  }
  EXPECT_EQ(continuous(2.9999999, 3, 3).numCompletions(), 2);
  EXPECT_GT(continuous(1e300, 1e-300, 1).numCompletions(), 0);
}

TEST(TaskProgressTimer, AddsStretchesOfTime) {
  // Before, duration, after with the overflow, after without it
  const std::tuple<Timer, double, Timer, Timer> cases[] = {
      {timer(0, 100), 199, timer(0, 299), timer(0, 299)},
      {timer(0, 100), 200, timer(1, 0), timer(1, 0)},
      {timer(0, 100), 1000, timer(1, 800), timer(1, 0)},
      {timer(1, 100), 250, timer(2, 0), timer(2, 0)},
      {timer(2, 100), 250, timer(2, 0), timer(2, 0)},
      {timer(1, 100), -50, timer(1, 50), timer(1, 50)}};
  for (const auto& [before, duration, withOverflow, without] : cases) {
    EXPECT_EQ(before.addCurrentCompletionDuration(duration, true), withOverflow) << duration;
    EXPECT_EQ(before.addCurrentCompletionDuration(duration, false), without) << duration;
  }
}

TEST(TaskProgressTimer, LosesNothingToBinaryRounding) {
  Timer running{today, Unit::seconds, 7, 0, 7, 0};
  for (int tenth = 1; tenth <= 70; ++tenth) {
    running = running.addCurrentCompletionDuration(0.1, true);
    ASSERT_EQ(running.numCompletions, tenth / 10) << tenth;
  }
  for (int expected = 1; expected <= 60; ++expected) {
    for (const double total : {0.7, 1.0, 100.0, 600.0, 4000.0}) {
      const auto complete = Timer{today, Unit::hours, expected, 0, total, 0}.completeProgress();
      ASSERT_EQ(complete.progressPct(), 1) << total << " / " << expected;
      ASSERT_EQ(complete.remainingDuration(), 0) << total << " / " << expected;
    }
  }
  EXPECT_EQ(timer(0, 100).remainingDurationCurrentCompletion(), 200);
  EXPECT_EQ(Timer::convertToTimeInterval(1.1, Unit::minutes), 66);
  EXPECT_EQ(Timer::convertFromTimeInterval(5400, Unit::hours), 1.5);
  EXPECT_EQ(Timer::convertFromTimeInterval(90, Unit::seconds), 90);
}

TEST(TaskProgressActivityRings, AreOneNumberAndBack) {
  for (int k = 0; k < 1000; ++k) {
    const int other = 999 - k, third = k * 7 % 1000;
    const auto before = rings(k / 100.0, other / 100.0, third / 100.0);
    ASSERT_EQ(before.encoded(), k + 1000 * other + 1000000 * third) << k;
    ASSERT_EQ(Rings::fromEncoded(today, before.encoded()), before) << k;
  }
  EXPECT_EQ(rings(0.004, 1, 0.999).encoded(), 1 + 100000 + 99000000);
  EXPECT_EQ(rings(1.005, 0.994999, 0.005).encoded(), 101 + 99000 + 1000000) << "halves go up";
  EXPECT_EQ(rings(12.5, -1, NAN).encoded(), 999) << "three digits hold no more";
  EXPECT_EQ(Rings::fromEncoded(today, 29.4), rings(0.29, 0, 0));
  for (const double bad : {-150.0, double{NAN}, double{INFINITY}}) {
    EXPECT_EQ(Rings::fromEncoded(today, bad), rings(0, 0, 0)) << bad;
  }
  EXPECT_EQ(rings(1.5, 1.5, 0).progressPct(), 0.6667);
  EXPECT_EQ(rings(0.94088, 0.50371, 0.92226).progressPct(), 0.789) << "0.78895 on paper";
  EXPECT_EQ(TaskProgress(rings(1, 1, 0.999)).numCompletions({}), 0);
  EXPECT_EQ(TaskProgress(rings(1, 2, 1)).numCompletions({}), 1);
}

TEST(TaskProgressDateRange, GrowsWithTime) {
  const auto range = dateRange({});
  EXPECT_EQ(range.start(), Date::fromISO8601("2024-03-31T03:00:00+02:00"));
  EXPECT_EQ(range.end(), Date::fromISO8601("2024-04-01T03:00:00+02:00"));
  for (const auto& [hours, pct] : {std::pair{-1.0, 0.0}, {6, 0.25}, {24, 1}, {30, 1}}) {
    const Date at = range.start() + hours * 3600;
    EXPECT_EQ(range.progressPct(at), pct) << hours;
    EXPECT_EQ(dateRange(at).progressPct({}), pct) << hours;
    EXPECT_EQ(dateRange({}, false).progressPct(at), 0) << hours;
  }
  const auto early = DateRange::from({.period = today, .timeZone = berlin});
  EXPECT_EQ(early.end().timeIntervalSince(early.start()), 23 * 3600);
  EXPECT_EQ(early.progressPct(early.start() + 11.5 * 3600), 0.5) << "of a day of 23 hours";
}

}  // namespace
}  // namespace velloro
