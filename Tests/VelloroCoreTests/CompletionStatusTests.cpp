#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/Locale.h"
#include "Support/Fixtures.h"
#include "VelloroCore/Status/StreakRecord.h"

#include <filesystem>
#include <map>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;
using Timer = TaskProgressTimer;
using enum TaskLogEntryType;

const DatedPeriod today{{2024, 3, 7}, {TaskFrequencyPeriodType::day, {2024, 3, 7}, {2024, 3, 7}}};

Status status(std::string_view text) {
  return Status::fromStringValue(text).value();
}
Timer timer(std::int64_t completions, double seconds) {
  return {today, Timer::Unit::minutes, 2, completions, 600, seconds};
}

/// Each record before its end, one step from it, at it and beyond it, as far as it can be there.
std::vector<TaskProgress> everyKindOfProgress() {
  std::vector<TaskProgress> all;
  for (const std::int64_t n : {0, 1, 2, 3}) {
    all.emplace_back(TaskProgressDiscrete{today, 2, n});
    all.emplace_back(TaskProgressContinuous{today, 4, 0.4, static_cast<double>(n) * 0.15});
    all.emplace_back(timer(n, 30));
    const double ring = static_cast<double>(n) / 2;
    all.emplace_back(TaskProgressActivityRings{today, ring, 1, 1.5});
    all.emplace_back(TaskProgressSimple{today, ring, 0.5});
    const Date noon = today.date.dateAt(HHMMSS::midnight, HHMMSS::midday, TimeZone::gmt());
    all.emplace_back(TaskProgressDateRange{.currentDate = noon + static_cast<double>(n) * 43200,
                                           .period = today});
  }
  return all;
}

TEST(CompletionStatus, KeepsItsForms) {
  std::string texts;
  for (const Status each : Status::allCases()) {
    texts += each.stringValue() + ' ';
    EXPECT_EQ(Status::fromStringValue(each.stringValue()), each) << each.stringValue();
    EXPECT_EQ(each.isNegative(), (std::string_view("na").contains(each.stringValue()[0])));
  }
  EXPECT_EQ(texts, "c m s nm a i_mwi i_mwoi i_swi i_swoi nc_mwi nc_mwoi nc_swi nc_swoi ");
  for (const char* text : {"", "i", "i_", "i_x", "i_mwi_", "c_mwi", "nc", "C", "mwi"}) {
    EXPECT_FALSE(Status::fromStringValue(text)) << text;
  }
  EXPECT_EQ(decodingFailure<Status>(R"("i_x")"), "Unable to decode enum with value i_x");
  expectFixture("CompletionStatus", CompletionStatus(status("nc_swi"), timer(1, 100.5)));
  expectFixture("StreakRecord", StreakRecord(9, 40));
  EXPECT_EQ(JSONDecoder{}.decode<StreakRecord>(R"({"current":5,"best":3})"), StreakRecord(5, 5));
}

TEST(CompletionStatus, LeadsOn) {
  struct Next {
    const char *unchecked, *checked;
    std::int64_t run;  // in a later period, after 4
  };
  const std::map<std::string, Next> all = {
      {"i_mwi", {"i_mwi", "c", 0}},    {"i_mwoi", {"i_mwoi", "c", 0}},
      {"i_swi", {"i_swi", "c", 4}},    {"i_swoi", {"i_swoi", "c", 4}},
      {"nc_mwi", {"nc_mwi", "a", 5}},  {"nc_mwoi", {"nc_mwoi", "a", 5}},
      {"nc_swi", {"nc_swi", "nm", 5}}, {"nc_swoi", {"nc_swoi", "nm", 5}},
      {"c", {"i_mwoi", "c", 4}},       {"m", {"i_mwoi", "m", 0}},
      {"s", {"i_mwoi", "s", 4}},       {"nm", {"nc_mwoi", "nm", 1}},
      {"a", {"nc_swi", "a", 5}}};
  const auto week = TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType::week, {2024, 3, 6},
                                                  DayOfWeek::monday, {});
  auto longer = week;
  longer.finishDate = longer.finishDate.nextDay({});
  const StreakRecord run(4, 40);
  for (const Status each : Status::allCases()) {
    const Next& next = all.at(each.stringValue());
    EXPECT_EQ(each.uncheckedStatus(), status(next.unchecked)) << each.stringValue();
    EXPECT_EQ(each.completedStatus(), status(next.checked)) << each.stringValue();
    for (const auto& later : {week.next({}), week.add(50, {}), longer}) {
      EXPECT_EQ(run.adjust(week, later, each), StreakRecord(next.run, 40)) << each.stringValue();
    }
    EXPECT_EQ(run.adjust(week, week, each), run);
    EXPECT_EQ(run.adjust(week, week.previous({}), each), run);
  }
  EXPECT_EQ(StreakRecord().adjust(week, longer, Status::negativeMiss), StreakRecord(1, 1));
}

/// What an entry does, told once more by the stored numbers of the types.
StreakedCompletionStatus expected(const CompletionStatus& before, StreakRecord run,
                                  TaskLogEntryType type) {
  const std::string old = before.status.stringValue();
  const TaskProgress p = before.progress(), next = p.nextProgress();
  const bool isNegative = old == "nm" || old == "a" || old.starts_with("nc");
  const bool fills = p.progressPct({}) < 1 && next.progressPct({}) >= 1;
  const StreakRecord more(run.current + 1, run.best), none(0, run.best);
  const StreakRecord done = old == "c" ? run : more;
  const StreakedCompletionStatus same{before, run};
  const auto gives = [](const std::string& text, const TaskProgress& progress,
                        StreakRecord record) {
    return StreakedCompletionStatus{{status(text), progress}, record};
  };
  switch (rawValue(type)) {
    case 1:
    case 2:
      if (old.starts_with("nc")) return same;
      return isNegative ? gives("nc_mwoi", p.zeroProgress(), more)
                        : gives("c", p.completeProgress(), done);
    case 3:
    case 4:
      return isNegative ? same : gives("s", p, run);
    case 5:
    case 7:
      return isNegative ? gives("nm", p.completeProgress(), none)
                        : gives("m", p.zeroProgress(), none);
    case 6:
    case 10:
      if (isNegative) return same;
      return fills ? gives("c", next, done) : gives(old, next, run);
    case 8:
    case 9:
      if (!isNegative) return same;
      return fills ? gives("nm", next, none) : gives(old, next, run);
    case 13:
    case 14:
      return isNegative ? gives("a", p.zeroProgress(), run) : same;
    default:
      return same;
  }
}

TEST(CompletionStatus, FollowsEveryEntry) {
  for (const TaskProgress& progress : everyKindOfProgress()) {
    for (const Status each : Status::allCases()) {
      for (const StreakRecord run : {StreakRecord(4, 4), StreakRecord(4, 9)}) {
        const CompletionStatus before(each, progress);
        SCOPED_TRACE(each.stringValue() + " " + progress.debugDescription({}));
        for (const auto type : allCases<TaskLogEntryType>()) {
          EXPECT_EQ(before.applyEntryType(run, type, {}), expected(before, run, type))
              << debugDescription(type);
        }
        const auto full = each.isNegative() ? missedManuallyFull : completedManuallyFull;
        const auto partial = each.isNegative() ? missedManuallyPartial : completedManuallyPartial;
        EXPECT_EQ(before.nextCompletionStatus(run, false, {}), expected(before, run, full));
        EXPECT_EQ(before.nextCompletionStatus(run, true, {}), expected(before, run, partial));
        if (!progress.as<Timer>()) {
          EXPECT_EQ(before.nextCompletionStatus(run, 1e6, {}),
                    (StreakedCompletionStatus{before, run}));
        }
      }
    }
  }
}

TEST(CompletionStatus, LooksAheadOfARunningTimer) {
  const auto next = [](const char* from, const Timer& before, double pending) {
    return CompletionStatus(status(from), before).nextCompletionStatus({4, 9}, pending, {});
  };
  const auto gives = [](const char* to, const Timer& after, std::int64_t run) {
    return StreakedCompletionStatus{{status(to), after}, {run, 9}};
  };
  const Timer last = timer(1, 100);
  EXPECT_EQ(next("i_mwi", last, 0), gives("i_mwi", last, 4));
  EXPECT_EQ(next("i_mwi", last, -5), gives("i_mwi", last, 4));
  EXPECT_EQ(next("i_mwi", last, 199.5), gives("i_mwi", timer(1, 299.5), 4));
  EXPECT_EQ(next("i_mwi", last, 1000), gives("c", timer(2, 0), 5));
  EXPECT_EQ(next("i_mwi", timer(0, 100), 200), gives("i_mwi", timer(1, 0), 4));
  EXPECT_EQ(next("nc_mwi", last, 199), gives("nc_mwi", timer(1, 299), 4));
  EXPECT_EQ(next("nc_mwi", last, 200), gives("nm", timer(2, 0), 0));
}

TEST(StreakRecord, CountsWithItsBest) {
  EXPECT_EQ(StreakRecord(5, 3).best, 5);
  EXPECT_EQ(StreakRecord(9, 10).increment(), StreakRecord(10, 10));
  EXPECT_EQ(StreakRecord(9, 10).increment(3), StreakRecord(12, 12));
  EXPECT_EQ(StreakRecord(9, 10).increment(0), StreakRecord(9, 10));
  EXPECT_EQ(StreakRecord(9, 10).reset().debugDescription(), "current=0 best=10");
  EXPECT_TRUE(StreakRecord(0, 0).isBest() && StreakRecord(9, 10).nearlyBest());
  EXPECT_FALSE(StreakRecord(9, 10).isBest() || StreakRecord(10, 10).nearlyBest());
  EXPECT_FALSE(StreakRecord(8, 10).nearlyBest());
}

TEST(StreakRecord, PassesMilestones) {
  using Milestone = StreakRecord::Milestone;
  for (std::int64_t run = -7; run <= 1000; ++run) {
    std::optional<Milestone> last;
    for (std::int64_t length = 1; length <= run; ++length) {
      const bool isOne = length == 7 || length == 14 || length == 28 /* twice 14 */ ||
                         length == 30 || length == 60 || length == 365 ||
                         (length >= 100 && length % (length < 300 ? 50 : 100) == 0);
      if (isOne) last = length == run ? Milestone::exact(length) : Milestone::mostRecent(length);
    }
    EXPECT_EQ(StreakRecord(run, 0).currentMilestone(), last) << run;
  }
}

TEST(StreakRecord, IsShown) {
  VirtualEnvironment environment;
  const auto texts = environment.directories().temporary / "texts";
  std::filesystem::create_directories(texts / "en");
  ASSERT_TRUE(NSFileManager::write(
      R"({"days.quantity": "{0, plural, one {# day} other {# days}}", "weeks.quantity": "{0} w",
          "fortnights.quantity": "{0} f", "months.quantity": "{0} m", "years.quantity": "{0} y"})",
      texts / "en/Localizable.json"));
  environment.setResources(texts);
  const Locale locale = Locale::fromIdentifier("en_US");
  EXPECT_EQ(StreakRecord(0, 9).localizedCurrent(locale), std::nullopt);
  EXPECT_EQ(StreakRecord(0, 9).localizedCurrentWithZero(locale), "0");
  EXPECT_EQ(StreakRecord(1234, 0).localizedCurrent(locale), "1,234");
  std::string all =
      StreakRecord(1, 1).localizedWithMeasurementDuration(TaskFrequencyPeriodType::day);
  for (const auto type : allCases<TaskFrequencyPeriodType>()) {
    all += ", " + StreakRecord(1234, 0).localizedWithMeasurementDuration(type);
  }
  EXPECT_EQ(all, "1 day, 1,234 days, 1,234 w, 1,234 f, 1,234 m, 1,234 y");
}

}  // namespace
}  // namespace velloro
