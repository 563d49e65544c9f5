#include "VelloroCore/Wording/NotificationReminderString.h"
#include "VelloroCore/Wording/ReminderMotivations.h"

#include <bitset>
#include <map>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velloro {
namespace {

using Kind = NotificationIndividualReminder;
using Names = std::set<std::string>;
using std::string;

// The rules once more, in texts and without tables, are the oracle.

const std::map<TaskFrequencyPeriodType, std::pair<string, string>> periodWords = {
    {TaskFrequencyPeriodType::week, {"Week", "eeklyTarget"}},
    {TaskFrequencyPeriodType::fortnight, {"Fortnight", "ortnightlyTarget"}},
    {TaskFrequencyPeriodType::month, {"Month", "onthlyTarget"}},
    {TaskFrequencyPeriodType::year, {"Year", "earlyTarget"}}};

/// "weeklyTarget", or in a key "WeeklyTarget".
string target(TaskFrequencyPeriodType type, bool isKey) {
  const char first = rawValue(type)[0];
  return static_cast<char>(isKey ? first + 'A' - 'a' : first) + periodWords.at(type).second;
}

Names negativeMotivations(const ReminderFacts& task, bool isLastDay) {
  const auto [current, best] = task.streak;
  const bool isToday = task.period.date == task.today;
  if (current < 2) return isLastDay && isToday ? Names{"negativeStartNew"} : Names{};
  Names names{"negativeStreak"};
  if (best - current < 2) names.insert("negativeAlmostBest");
  const bool isStepBefore = task.partialCompletions + 1 == task.expectedPartialCompletions;
  if (task.frequency.numPartialCompletions >= 2 && isStepBefore) names.insert("negativeKeepAlive");
  return names;
}

/// \param isShort Whether more days are called for than are left.
Names positiveMotivations(const ReminderFacts& task, bool isLastDay, bool isShort) {
  const auto& [date, period] = task.period;
  const auto [current, best] = task.streak;
  const DayMode mode = task.frequency.dayMode;
  const bool hasSteps = task.frequency.numPartialCompletions > 1;
  const bool isNow = period.startDate <= task.today && task.today <= period.finishDate;
  const string miss = isNow && current == best ? "missToBreakBestStreak" : "missToBreak";
  const auto counting = periodTypeForCompletionCountCalculation(mode);
  Names names;
  if (!isAggregate(mode) && date == task.today && hasSteps) names = {"partialCompletionsTarget"};
  if (current == 0) {
    names.insert("startNew");
    return names;
  }
  if (mode == DayMode::specificDaysOfWeek || mode == DayMode::dayInterval) {
    if (!task.willSkip) names.insert(miss);
  } else if (isAggregate(mode)) {
    if (task.hasAutomaticType || hasSteps) names.insert(target(counting, false));
    if (isLastDay && isNow) names.insert(miss);
  } else if (mode != DayMode::specificDaysOfMonth) {
    const string progress = periodWords.at(counting).first + "Progress";
    names.insert((isShort ? "missToBreak" : "keepAlive") + progress);
    if (!isShort) names.insert(target(counting, false));
  }
  if (current == best) {
    names.insert("extendBest");
  } else if (current + 1 == best) {
    names.insert("nearlyBest");
  } else if (current >= 2 && names.empty()) {
    names = isLastDay ? Names{"keepAlive", "dontBreak"} : Names{"keepAlive"};
  }
  return names;
}

/// In every combination of what is either so or not.
void compareMotivations(ReminderFacts task, bool isShort) {
  for (unsigned bits = 0; bits < 64; ++bits) {
    const std::bitset<6> has(bits);
    task.isNegative = has[0];
    task.frequency.numPartialCompletions = task.expectedPartialCompletions = has[1] ? 3 : 1;
    task.partialCompletions = has[2] ? 2 : 0;
    task.hasAutomaticType = has[3];
    task.willSkip = has[4];
    if (has[5]) task.shareStatus = TaskShareStatus::isSharedWithMe;
    const bool isLastDay = task.period.date == task.period.period.finishDate;
    const Names expected = has[5]            ? Names{"reminderTaskSharedWithMe"}
                           : task.isNegative ? negativeMotivations(task, isLastDay)
                                             : positiveMotivations(task, isLastDay, isShort);
    Names names;
    for (const Kind kind : motivations(task)) names.emplace(rawValue(kind));
    ASSERT_EQ(names, expected) << bits << task.period.date.debugDescription() << " of "
                               << task.today.debugDescription() << task.streak.debugDescription();
  }
}

TEST(ReminderMotivations, FollowTheRulesInEveryPeriod) {
  constexpr auto first = DayOfWeek::saturday;
  constexpr std::pair<int, int> streaks[] = {{0, 0}, {0, 5}, {1, 1}, {1, 5},
                                             {2, 5}, {4, 5}, {5, 5}};
  for (const DayMode mode : allCases<DayMode>()) {
    ReminderFacts task{.frequency = {.dayMode = mode, .numCompletions = 400},
                       .firstDayOfWeek = first};
    const auto counting = TaskFrequencyPeriod::fromDate(
        periodTypeForCompletionCountCalculation(mode), {2024, 3, 7}, first, {});
    const std::int64_t days = counting.numberOfDays({});
    for (const std::int64_t left : {days - 1, days / 2, std::int64_t{1}, std::int64_t{0}}) {
      const YYYYMMDD date = counting.finishDate.add(-left, {});
      task.period = task.frequency.period(date, first, {});
      for (const YYYYMMDD today : {date, date.previousDay({}), date.add(400, {})}) {
        for (const auto& [current, best] : streaks) {
          for (const std::int64_t spare : {-1, 0, 1}) {
            // A task that was made in the period can't have been done on more days than that has.
            for (const bool isNew : {false, true}) {
              task.today = today;
              task.streak = StreakRecord(current, best);
              task.createdDay = isNew ? date : YYYYMMDD{2020, 1, 1};
              task.completions = (isNew ? days : 400) - left + spare;
              compareMotivations(task, spare < 0);
              if (HasFatalFailure()) return;
            }
          }
        }
      }
    }
  }
}

// In 2011 the last Friday of December was skipped there.
TEST(ReminderMotivations, CountTheDaysOfTheZone) {
  const TimeZone apia = TimeZone::fromIdentifier("Pacific/Apia").value();
  const YYYYMMDD thursday{2011, 12, 29}, saturday{2011, 12, 31};
  const std::tuple<TimeZone, bool, PeriodEndRelation, PeriodEndRelation> cases[] = {
      {TimeZone::gmt(), false, PeriodEndRelation::withinWeek, PeriodEndRelation::later},
      {apia, true, PeriodEndRelation::tomorrow, PeriodEndRelation::withinWeek}};
  for (const auto& [zone, isShort, fromThursday, fromWeekBefore] : cases) {
    EXPECT_EQ(periodEndRelation(saturday, thursday, zone), fromThursday);
    EXPECT_EQ(periodEndRelation(saturday, {2011, 12, 23}, zone), fromWeekBefore);
    for (const auto mode : {DayMode::numberOfDaysInMonth, DayMode::numberOfDaysInYear}) {
      const TaskFrequency thrice{.dayMode = mode, .numCompletions = 3};
      const ReminderFacts task{.frequency = thrice,
                               .timeZone = zone,
                               .today = thursday,
                               .period = thrice.period(thursday, DayOfWeek::sunday, zone),
                               .streak = StreakRecord(1, 9),
                               .createdDay = {2011, 1, 1},
                               .completions = 1};
      string kinds;
      for (const Kind kind : motivations(task)) kinds += rawValue(kind);
      EXPECT_EQ(kinds.find("missToBreak") != string::npos, isShort) << kinds;
    }
  }
}

TEST(PickOrder, DrawsFromTheFront) {
  std::vector<std::uint64_t> bits{3, 5};  // of two the second, of three the last
  const auto order = pickOrder({Kind::extendBest, Kind::nearlyBest, Kind::dontBreak}, [&] {
    const std::uint64_t next = bits.back();
    bits.pop_back();
    return next;
  });
  EXPECT_THAT(order, testing::ElementsAre(Kind::dontBreak, Kind::extendBest, Kind::nearlyBest,
                                          Kind::reminder));
}

TEST(PeriodEndRelation, GoesByDays) {
  string relations;
  for (std::int64_t ahead = -2; ahead <= 8; ++ahead) {
    const YYYYMMDD date{2024, 2, 29};
    relations += std::to_string(static_cast<int>(periodEndRelation(date.add(ahead, {}), date, {})));
  }
  EXPECT_EQ(relations, "01234444445");
}

/// The words of a kind, for periods and ends as their letters and numbers say; the first row that
/// fits counts. "@" in a key is ".NoTask" for the text without the task's name.
struct WordsRow {
  string kind, periods, ends, key, named, plain;
};

std::vector<WordsRow> wordsRows() {
  const string any = "dwfmy", all = "012345", title = "(taskTitle)", none = "()";
  const string run = "(streakAtDate)", titleAnd = "(taskTitle,";
  const string days = "completionsComplete,completionsTarget)";
  const string steps = "partialCompletionsComplete,partialCompletionsTarget)";
  const string amounts = "quantityComplete,quantityTarget)";
  const string with = " NotificationWithProgress.", today = "()" + with + "TodayProgress(";
  std::vector<WordsRow> rows = {
      {"dontBreak", any, all, "DontBreak@", title, none},
      {"keepAlive", any, all, "KeepAlive@", title, none},
      {"negativeStartNew", any, all, "NegativeStartNewStreak@", title, none},
      {"negativeAlmostBest", any, all, "NegativeAlmostBest@", title, none},
      {"missToBreak", any, "2", ".MissToBreak@", title, none},
      {"missToBreakBestStreak", any, "2", ".MissToBreakBest@", title, none},
      {"negativeStreak", "d", all, "NegativeStreak@", titleAnd + run.substr(1), run},
      {"negativeStreak", any, all, "NegativeStreak@.NoPeriod", titleAnd + run.substr(1), run},
      {"negativeKeepAlive", "d", all, "NegativeKeepAlive@", title, run},
      {"negativeKeepAlive", any, all, "NegativeKeepAlive@.NoPeriod", title, run},
      {"partialCompletionsTarget", "d", all, "DailyTarget@", titleAnd + steps, today + steps},
      {"dayMissed", "d", all, "KeepAlive@.DayMissed", titleAnd + steps, today + steps}};
  for (const auto& [kind, key] : {std::pair<string, string>{"extendBest", "ExtendBest@"},
                                  {"nearlyBest", "NearlyBest@"},
                                  {"startNew", "StartNewStreak@"}}) {
    rows.push_back({kind, any, "2", key, title, none});
    rows.push_back({kind, "d", all, key, title, none});
    rows.push_back({kind, "m", "5", key + ".ThisMonth", title, none});
    rows.push_back({kind, "wm", all, key + ".PeriodEnd", "(taskTitle,periodEnd)", "(periodEnd)"});
  }
  for (const auto& [own, words] : periodWords) {
    const string period(rawValue(own)), ofPeriod = words.first + "Progress";
    const string whole = with + ofPeriod + "(", key = target(own, true) + "@";
    for (const string kind : {"keepAlive", "missToBreak"}) {
      const string ofKind = kind == "keepAlive" ? "KeepAlive@" : ".MissToBreak@";
      rows.push_back(
          {kind + ofPeriod, "d", all, ofKind, "(taskTitle" + today.substr(1) + days, today + days});
      rows.push_back(
          {kind + ofPeriod, period, all, ofKind, title + whole + steps, none + whole + steps});
    }
    rows.push_back({target(own, false), "d", all, key, titleAnd + days, today + days});
    rows.push_back(
        {target(own, false), period, all, key, titleAnd + amounts, none + whole + amounts});
  }
  return rows;
}

/// "key(parameters) bracket(parameters)"; empty where there are no words.
string expectedWords(string kind, TaskFrequencyPeriodType type, PeriodEndRelation end, bool named) {
  static const auto rows = wordsRows();
  const string prefix = "NotificationIndividual", number(1, static_cast<char>('0' + int(end)));
  if (kind.starts_with("reminder"))
    return prefix + (named ? "WithTaskName(taskTitle)" : "Heading()");
  for (const auto& [ofKind, periods, ends, key, withName, plain] : rows) {
    if (ofKind != kind || periods.find(rawValue(type)) == string::npos) continue;
    if (ends.find(number) == string::npos) continue;
    string whole = prefix + "Motivation" + key;
    whole.replace(whole.find('@'), 1, named ? "" : ".NoTask");
    return whole + (named ? withName : plain);
  }
  return "";
}

string listed(std::string_view key, const auto& parameters) {
  string text;
  for (const auto& parameter : parameters) {
    if (parameter) text += (text.empty() ? "" : ",") + string(rawValue(*parameter));
  }
  return string(key) + "(" + text + ")";
}

string shown(const NotificationReminderString& words) {
  const string text = listed(words.stringKey, words.parameters());
  if (!words.bracketStringKey) return text;
  return text + " " + listed(*words.bracketStringKey, words.bracketParameters());
}

TEST(NotificationReminderString, HasTheKeysOfEveryKind) {
  const string run = " NotificationWithCurrentAndBestStreak(streakAtDate,bestStreakAtDate)";
  for (const Kind kind : allCases<Kind>()) {
    for (const auto type : allCases<TaskFrequencyPeriodType>()) {
      for (const auto end : allCases<PeriodEndRelation>()) {
        for (const bool named : {true, false}) {
          const auto words = NotificationReminderString::from(kind, type, end, named);
          const string expected = expectedWords(string(rawValue(kind)), type, end, named);
          ASSERT_EQ(words ? shown(*words) : "", expected);
          if (!words) continue;
          EXPECT_EQ(words->withStreakBracket({0, 9}), *words);
          const bool tellsMore = expected.find("streakAt") + 1 != 0 || words->bracketStringKey;
          EXPECT_EQ(shown(words->withStreakBracket({4, 9})), expected + (tellsMore ? "" : run));
        }
      }
    }
  }
}

}  // namespace
}  // namespace velloro
