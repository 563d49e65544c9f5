#include "VelloroCore/Wording/NotificationReminderString.h"
#include "VelloroCore/Wording/ReminderMotivations.h"

#include <algorithm>
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
    const auto has = [&](unsigned bit) { return (bits >> bit & 1) != 0; };
    task.isNegative = has(0);
    task.frequency.numPartialCompletions = task.expectedPartialCompletions = has(1) ? 3 : 1;
    task.partialCompletions = has(2) ? 2 : 0;
    task.hasAutomaticType = has(3);
    task.willSkip = has(4);
    if (has(5)) task.shareStatus = TaskShareStatus::isSharedWithMe;
    const bool isLastDay = task.period.date == task.period.period.finishDate;
    const Names expected = has(5)            ? Names{"reminderTaskSharedWithMe"}
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
        periodTypeForCompletionCountCalculation(mode), {2024, 3, 7}, first);
    const std::int64_t days = counting.numberOfDays();
    for (const std::int64_t left : {days - 1, days / 2, std::int64_t{1}, std::int64_t{0}}) {
      const YYYYMMDD date = counting.finishDate.add(-left);
      task.period = task.frequency.period(date, first);
      for (const YYYYMMDD today : {date, date.previousDay(), date.add(400)}) {
        for (const auto& [current, best] : streaks) {
          for (const std::int64_t spare : {-1, 0, 1}) {
            // A task that was made in the period can't have been done on more days than that has.
            for (const bool isNew : {false, true}) {
              task.today = today;
              task.streak = StreakRecord(current, best);
              task.createdDay = isNew ? date : YYYYMMDD{2020, 1, 1};
              task.completions = (isNew ? std::min(days, std::int64_t{400}) : 400) - left + spare;
              compareMotivations(task, spare < 0);
              if (HasFatalFailure()) return;
            }
          }
        }
      }
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
    relations += std::to_string(static_cast<int>(periodEndRelation(date.add(ahead), date)));
  }
  EXPECT_EQ(relations, "01234444445");
}

/// "key(parameters) bracket(parameters)"; empty where there are no words.
string naiveString(const string& kind, TaskFrequencyPeriodType type, PeriodEndRelation end,
                   bool named) {
  const string stem = "NotificationIndividualMotivation", no = named ? "" : ".NoTask";
  const bool isDay = type == TaskFrequencyPeriodType::day;
  const bool isMonth = type == TaskFrequencyPeriodType::month;
  const bool endsToday = end == PeriodEndRelation::today;
  const string title = named ? "(taskTitle)" : "()";
  const auto key = [&](const string& middle) { return stem + middle + no + title; };
  const auto progress = [](const string& period, const string& parameters) {
    return " NotificationWithProgress." + period + "Progress(" + parameters + ")";
  };
  const auto counted = [&](const string& whole, const string& period, const string& parameters) {
    return named ? whole + "(taskTitle," + parameters + ")"
                 : whole + "()" + progress(period, parameters);
  };
  const string steps = "partialCompletionsComplete,partialCompletionsTarget";
  const string days = "completionsComplete,completionsTarget";
  if (kind.starts_with("reminder")) {
    return string("NotificationIndividual") + (named ? "WithTaskName" : "Heading") + title;
  }
  if (kind == "dontBreak") return key("DontBreak");
  if (kind == "keepAlive") return key("KeepAlive");
  if (kind == "negativeStartNew") return key("NegativeStartNewStreak");
  if (kind == "negativeAlmostBest") return key("NegativeAlmostBest");
  if (kind == "missToBreak") return endsToday ? key(".MissToBreak") : "";
  if (kind == "missToBreakBestStreak") return endsToday ? key(".MissToBreakBest") : "";
  const string noPeriod = no + (isDay ? "" : ".NoPeriod");
  if (kind == "negativeStreak") {
    return stem + "NegativeStreak" + noPeriod + (named ? "(taskTitle," : "(") + "streakAtDate)";
  }
  if (kind == "negativeKeepAlive") {
    return stem + "NegativeKeepAlive" + noPeriod + (named ? "(taskTitle)" : "(streakAtDate)");
  }
  const std::map<string, string> ofStreaks = {
      {"extendBest", "ExtendBest"}, {"nearlyBest", "NearlyBest"}, {"startNew", "StartNewStreak"}};
  if (const auto found = ofStreaks.find(kind); found != ofStreaks.end()) {
    const string whole = stem + found->second + no;
    if (endsToday || isDay) return whole + title;
    if (isMonth && end == PeriodEndRelation::later) return whole + ".ThisMonth" + title;
    if (!isMonth && type != TaskFrequencyPeriodType::week) return "";
    return whole + ".PeriodEnd" + (named ? "(taskTitle,periodEnd)" : "(periodEnd)");
  }
  for (const auto& [own, words] : periodWords) {
    const bool hasWords = isDay || type == own;
    const string bracket = isDay ? progress("Today", days) : progress(words.first, steps);
    if (kind == "keepAlive" + words.first + "Progress") {
      return hasWords ? key("KeepAlive") + bracket : "";
    }
    if (kind == "missToBreak" + words.first + "Progress") {
      return hasWords ? key(".MissToBreak") + bracket : "";
    }
    if (kind != target(own, false)) continue;
    const string whole = stem + target(own, true) + no;
    if (isDay) return counted(whole, "Today", days);
    return hasWords ? counted(whole, words.first, "quantityComplete,quantityTarget") : "";
  }
  const string ofDay = kind == "dayMissed" ? "KeepAlive" + no + ".DayMissed" : "DailyTarget" + no;
  return isDay ? counted(stem + ofDay, "Today", steps) : "";
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
          const string expected = naiveString(string(rawValue(kind)), type, end, named);
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
