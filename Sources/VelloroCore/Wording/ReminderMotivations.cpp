#include "VelloroCore/Wording/ReminderMotivations.h"

#include "VelloroCore/Wording/ReminderWordingKeys.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace velloro {
namespace {

using Kind = NotificationIndividualReminder;
using Kinds = NotificationIndividualReminders;

constexpr std::int64_t shortestRun = 2;  // one period is no run to speak of

bool isToday(const ReminderFacts& facts) {
  return facts.period.date == facts.today;
}

bool hasSteps(const TaskFrequency& frequency) {
  return frequency.numPartialCompletions > TaskFrequency::minPartialCompletions;
}

const reminder_wording::Progress& progressRow(const TaskFrequency& frequency) {
  const auto type = periodTypeForCompletionCountCalculation(frequency.dayMode);
  const auto* row =
      std::ranges::find(reminder_wording::progress, type, &reminder_wording::Progress::value);
  assert(row != std::end(reminder_wording::progress) && "days are not counted in a day");
  return *row;
}

/// The days behind a day in the period in which completed days are counted.
std::int64_t daysLeft(const ReminderFacts& facts, TaskFrequencyPeriodType type) {
  const YYYYMMDD day = facts.period.date;
  switch (type) {
    case TaskFrequencyPeriodType::day:
      break;
    case TaskFrequencyPeriodType::week:
      return day.numberOfDaysRemainingThisWeek(facts.firstDayOfWeek, false, facts.timeZone);
    case TaskFrequencyPeriodType::fortnight:
      return day.numberOfDaysRemainingThisFortnight(facts.firstDayOfWeek, false, {},
                                                    facts.timeZone);
    case TaskFrequencyPeriodType::month:
      return day.numberOfDaysRemainingThisMonth(false, facts.timeZone);
    case TaskFrequencyPeriodType::year:
      return day.numberOfDaysRemainingThisYear(false, facts.timeZone);
  }
  return 0;
}

Kind missToBreak(const ReminderFacts& facts) {
  const bool isCurrent = facts.period.period.contains(facts.today);
  return isCurrent && facts.streak.isBest() ? Kind::missToBreakBestStreak : Kind::missToBreak;
}

Kinds ofDaysInPeriod(const ReminderFacts& facts) {
  const auto& row = progressRow(facts.frequency);
  const std::int64_t expected =
      facts.frequency.numberOfExpectedTimes(facts.period.period, facts.createdDay, facts.timeZone);
  if (daysLeft(facts, row.value) < expected - facts.completions) return row.missToBreak;
  return {row.keepAlive, row.target};
}

Kinds ofTotal(const ReminderFacts& facts) {
  Kinds kinds;
  if (facts.hasAutomaticType || hasSteps(facts.frequency)) {
    kinds.insert(progressRow(facts.frequency).target);
  }
  if (facts.period.isLastDay() && facts.period.period.contains(facts.today)) {
    kinds.insert(missToBreak(facts));
  }
  return kinds;
}

Kinds ofDayMode(const ReminderFacts& facts) {
  switch (facts.frequency.dayMode) {
    using enum DayMode;
    case specificDaysOfWeek:
    case dayInterval:
      return facts.willSkip ? Kinds() : Kinds(missToBreak(facts));
    case numberOfDaysInWeek:
    case numberOfDaysInFortnight:
    case numberOfDaysInMonth:
    case numberOfDaysInYear:
      return ofDaysInPeriod(facts);
    case aggregateOverWeek:
    case aggregateOverFortnight:
    case aggregateOverMonth:
    case aggregateOverYear:
      return ofTotal(facts);
    case specificDaysOfMonth:
      break;
  }
  return {};
}

/// \param others Whether there is something else to say.
Kinds ofRun(const ReminderFacts& facts, bool others) {
  if (facts.streak.isBest()) return Kind::extendBest;
  if (facts.streak.nearlyBest()) return Kind::nearlyBest;
  if (others || facts.streak.current < shortestRun) return {};
  return facts.period.isLastDay() ? Kinds{Kind::dontBreak, Kind::keepAlive}
                                  : Kinds(Kind::keepAlive);
}

Kinds ofPositive(const ReminderFacts& facts) {
  Kinds kinds;
  const bool isOfDays =
      measurementDuration(facts.frequency.dayMode) == TaskFrequencyPeriodType::day;
  if (isOfDays && isToday(facts) && hasSteps(facts.frequency)) {
    kinds.insert(Kind::partialCompletionsTarget);
  }
  if (facts.streak.current < 1) {
    kinds.insert(Kind::startNew);
    return kinds;
  }
  kinds.insert(ofDayMode(facts));
  kinds.insert(ofRun(facts, !kinds.isEmpty()));
  return kinds;
}

Kinds ofNegative(const ReminderFacts& facts) {
  Kinds kinds;
  if (facts.streak.current >= shortestRun) {
    kinds.insert(Kind::negativeStreak);
    if (facts.streak.isBest() || facts.streak.nearlyBest()) {
      kinds.insert(Kind::negativeAlmostBest);
    }
    if (hasSteps(facts.frequency) &&
        facts.partialCompletions == facts.expectedPartialCompletions - 1) {
      kinds.insert(Kind::negativeKeepAlive);
    }
  } else if (facts.period.isLastDay() && isToday(facts)) {
    kinds.insert(Kind::negativeStartNew);
  }
  return kinds;
}

}  // namespace

NotificationIndividualReminders motivations(const ReminderFacts& facts) {
  if (facts.shareStatus == TaskShareStatus::isSharedWithMe) return Kind::reminderTaskSharedWithMe;
  return facts.isNegative ? ofNegative(facts) : ofPositive(facts);
}

std::vector<NotificationIndividualReminder> pickOrder(NotificationIndividualReminders motivations,
                                                      FunctionRef<std::uint64_t()> random) {
  std::vector<Kind> order(motivations.begin(), motivations.end());
  for (std::size_t i = 0; i + 1 < order.size(); ++i) {
    // 64 random bits against a handful of kinds: none is noticeably likelier.
    std::swap(order[i], order[i + random() % (order.size() - i)]);
  }
  order.push_back(Kind::reminder);
  return order;
}

}  // namespace velloro
