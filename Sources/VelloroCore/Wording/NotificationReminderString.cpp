#include "VelloroCore/Wording/NotificationReminderString.h"

#include "VelloroCore/Status/StreakTextKeys.h"
#include "VelloroCore/Wording/ReminderWordingKeys.h"

#include <initializer_list>

namespace velloro {
namespace {

using Kind = NotificationIndividualReminder;
using Parameter = NotificationReminderString::ParameterType;
using String = NotificationReminderString;
using PeriodType = TaskFrequencyPeriodType;

/// So much done of so much, and the text that puts it in brackets.
struct Counted {
  LocalizedKey bracket;
  Parameter complete;
  Parameter target;
};

constexpr Counted stepsOfDay{reminder_wording::todayProgress, Parameter::partialCompletionsComplete,
                             Parameter::partialCompletionsTarget};
constexpr Counted daysOfPeriod{reminder_wording::todayProgress, Parameter::completionsComplete,
                               Parameter::completionsTarget};

String bracketed(String string, const Counted& counted) {
  string.bracketStringKey = counted.bracket.key;
  string.bracketParam1 = counted.complete;
  string.bracketParam2 = counted.target;
  return string;
}

/// The words for a kind in one period, by the rule of the table that has the kind.
struct Choice {
  Kind kind;
  PeriodType periodType;
  PeriodEndRelation endRelation;
  bool includeTaskName;

  using Result = std::optional<String>;

  [[nodiscard]] Result operator()() const {
    for (const auto& row : reminder_wording::plain) {
      if (row.value == kind) return plain(row);
    }
    for (const auto& row : reminder_wording::byDay) {
      if (row.value == kind) return byDay(row);
    }
    for (const auto& row : reminder_wording::byPeriodEnd) {
      if (row.value == kind) return byPeriodEnd(row);
    }
    for (const auto& row : reminder_wording::dailyTargets) {
      if (row.value == kind) return dailyTarget(row);
    }
    for (const auto& row : reminder_wording::progress) {
      if (row.keepAlive == kind) return withProgress(reminder_wording::keepAlive, row);
      if (row.missToBreak == kind) return withProgress(reminder_wording::missToBreak, row);
      if (row.target == kind) return target(row);
    }
    return std::nullopt;
  }

 private:
  [[nodiscard]] Result plain(const reminder_wording::Plain& row) const {
    if (row.isForLastDay && endRelation != PeriodEndRelation::today) return std::nullopt;
    return worded(row.wording);
  }

  [[nodiscard]] Result byDay(const reminder_wording::ByDay& row) const {
    return worded(periodType == PeriodType::day ? row.days : row.noPeriod,
                  {Parameter::streakAtDate});
  }

  [[nodiscard]] Result byPeriodEnd(const reminder_wording::ByPeriodEnd& row) const {
    if (endRelation == PeriodEndRelation::today || periodType == PeriodType::day) {
      return worded(row.today);
    }
    if (periodType == PeriodType::month && endRelation == PeriodEndRelation::later) {
      return worded(row.thisMonth);
    }
    if (periodType == PeriodType::week || periodType == PeriodType::month) {
      return worded(row.periodEnd, {Parameter::periodEnd});
    }
    return std::nullopt;
  }

  [[nodiscard]] Result dailyTarget(const reminder_wording::DailyTarget& row) const {
    if (periodType != PeriodType::day) return std::nullopt;
    return countedTarget(row.wording, stepsOfDay);
  }

  [[nodiscard]] Result withProgress(const ReminderWording& wording,
                                    const reminder_wording::Progress& row) const {
    if (periodType == PeriodType::day) return bracketed(worded(wording), daysOfPeriod);
    if (periodType != row.value) return std::nullopt;
    return bracketed(worded(wording), {row.bracket, Parameter::partialCompletionsComplete,
                                       Parameter::partialCompletionsTarget});
  }

  [[nodiscard]] Result target(const reminder_wording::Progress& row) const {
    if (periodType == PeriodType::day) return countedTarget(row.wording, daysOfPeriod);
    if (periodType != row.value) return std::nullopt;
    return countedTarget(row.wording,
                         {row.bracket, Parameter::quantityComplete, Parameter::quantityTarget});
  }

  /// The text with the task's name tells the count itself.
  [[nodiscard]] String countedTarget(const ReminderWording& wording, const Counted& counted) const {
    const String string = worded(wording, {counted.complete, counted.target});
    return includeTaskName ? string : bracketed(string, counted);
  }

  /// Of the details the text takes as many as its key says.
  [[nodiscard]] String worded(const ReminderWording& wording,
                              std::initializer_list<Parameter> details = {}) const {
    const LocalizedKey& key = includeTaskName ? wording.withTaskName : wording.noTask;
    String string{.stringKey = key.key};
    std::optional<Parameter>* const places[] = {&string.param1, &string.param2, &string.param3};
    std::size_t taken = 0;
    if (includeTaskName) *places[taken++] = Parameter::taskTitle;
    for (const Parameter detail : details) {
      if (taken < key.arguments.size()) *places[taken++] = detail;
    }
    return string;
  }
};

}  // namespace

PeriodEndRelation periodEndRelation(YYYYMMDD lastDay, YYYYMMDD date, const CountedIn& timeZone) {
  constexpr std::int64_t week = 7;
  if (lastDay == date) return PeriodEndRelation::today;
  if (lastDay == date.nextDay(timeZone)) return PeriodEndRelation::tomorrow;
  if (lastDay == date.previousDay(timeZone)) return PeriodEndRelation::yesterday;
  if (lastDay < date) return PeriodEndRelation::past;
  const std::int64_t ahead = date.distance(lastDay, false, timeZone);
  return ahead <= week ? PeriodEndRelation::withinWeek : PeriodEndRelation::later;
}

std::optional<NotificationReminderString> NotificationReminderString::from(
    NotificationIndividualReminder kind, TaskFrequencyPeriodType periodType,
    PeriodEndRelation endRelation, bool includeTaskName) {
  const Kind worded = kind == Kind::reminderTaskSharedWithMe ? Kind::reminder : kind;
  return Choice{worded, periodType, endRelation, includeTaskName}();
}

NotificationReminderString NotificationReminderString::withStreakBracket(
    const StreakRecord& streak) const {
  if (bracketStringKey || streak.current <= 0 || has(ParameterType::streakAtDate)) return *this;
  return bracketed(*this, {withCurrentAndBestStreak, ParameterType::streakAtDate,
                           ParameterType::bestStreakAtDate});
}

bool NotificationReminderString::has(ParameterType parameter) const {
  return param1 == parameter || param2 == parameter || param3 == parameter ||
         bracketParam1 == parameter || bracketParam2 == parameter;
}

}  // namespace velloro
