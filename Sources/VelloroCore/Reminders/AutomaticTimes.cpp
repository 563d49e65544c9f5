#include "VelloroCore/Reminders/AutomaticTimes.h"

#include "VelloroCore/Reminders/ReminderOrder.h"

#include <algorithm>
#include <map>

namespace velloro {
namespace {

using Facts = AutomaticTimesFacts;
using Source = AutomaticTimeSource;
using Times = std::map<HHMMSS, AutomaticTime>;

constexpr std::int64_t daysOfHistory = 7;
constexpr TimeInterval leadTime = 1800;
constexpr TimeInterval rounding = 300;
constexpr std::int64_t mostTimes = 3;
constexpr HHMMSS spacing{.h = 3};
// The times that are filled in lie between these; the upper bound is no later than the lower one.
constexpr HHMMSS lowerBound{.h = 8};
constexpr HHMMSS upperBound{.h = 8};
constexpr HHMMSS defaultTimeOfEnergyDeficit{.h = 18, .m = 30};

constexpr TypeSpeeds speedsOfBedtime{TypeSpeed::asleepBefore,   TypeSpeed::asleepAfter,
                                     TypeSpeed::awakeBefore,    TypeSpeed::awakeAfter,
                                     TypeSpeed::inBedBefore,    TypeSpeed::inBedAfter,
                                     TypeSpeed::outOfBedBefore, TypeSpeed::outOfBedAfter};

std::optional<HHMMSS> timeOfBedtime(const AutomaticTaskType& type) {
  if (type.speeds.isEmpty() || !speedsOfBedtime.contains(*type.speeds.begin())) {
    return std::nullopt;
  }
  const bool isTimeOfDay = 0 <= type.quantity && type.quantity < 86400;
  if (!isTimeOfDay) return std::nullopt;
  const auto target = HHMMSS::fromIntValue(static_cast<std::int64_t>(type.quantity));
  return target->add({.m = -30}, /*canWrap=*/true);
}

std::optional<HHMMSS> fixedTime(const Facts& facts) {
  if (!facts.automaticTaskType) return std::nullopt;
  const TaskType type = facts.automaticTaskType->type;
  if (type == HealthType::bedtime) return timeOfBedtime(*facts.automaticTaskType);
  if (type != HealthType::energyDeficit) return std::nullopt;
  return facts.rules.startOfDay.add({.h = -5, .m = 30}, /*canWrap=*/true)
      .value_or(defaultTimeOfEnergyDeficit);
}

std::optional<HHMMSS> timeBeforeBed(const Facts& facts) {
  if (!facts.automaticTaskType || !facts.timeOfGoingToBed) return std::nullopt;
  const TaskType type = facts.automaticTaskType->type;
  if (type != HealthType::sleep && type != HealthType::inBed) return std::nullopt;
  return facts.timeOfGoingToBed->add({.h = -1}, /*canWrap=*/true);
}

/// The times at which the task was done, by the step of the day. The newest entry comes first, and
/// the first entry of a day counts on from the day after it.
std::map<std::int64_t, std::vector<HHMMSS>> timesBySlot(TaskLogRows rows,
                                                        const TaskLogRules& rules) {
  const std::int64_t numPartial = rules.frequency.numPartialCompletions;
  const YYYYMMDD::Range window = windowOfHistory(rules);
  std::map<std::int64_t, std::vector<HHMMSS>> lists;
  std::int64_t slot = 0;
  auto previousDate = window.minDate;
  for (const TaskLogRow& row : rowsWithin(rows, window)) {
    const auto date = YYYYMMDD::fromRawValue(row.entryDate);
    const TaskLogEntryType type = row.type();
    const bool isKept =
        rules.isNegative ? isMissedFullOrPartial(type) : isCompletedFullOrPartial(type);
    if (!date || !isKept) continue;
    const std::int64_t key = isPartial(type) ? slot : numPartial - 1;
    if (row.createdTimestamp && key >= 0 && key < numPartial) {
      lists[key].push_back(HHMMSS::fromDate(*row.createdTimestamp, row.timeZone(rules.timeZone)));
    }
    slot = date == previousDate ? slot + 1 : 0;
    previousDate = date;
  }
  return lists;
}

/// Of equal times, the one of the first step is kept.
Times timesOfHistory(TaskLogRows rows, const TaskLogRules& rules) {
  Times times;
  for (const auto& [key, list] : timesBySlot(rows, rules)) {
    const auto usual = median(list);
    const auto before = usual ? usual->add(-leadTime, /*canWrap=*/false) : std::nullopt;
    if (!before) continue;
    const HHMMSS time = before->roundToNearestInterval(rounding);
    times.try_emplace(
        time,
        AutomaticTime{
            .time = time, .source = Source::history, .median = usual, .samples = std::ssize(list)});
  }
  return times;
}

Times defaultTimes(const Facts& facts) {
  const std::int64_t minute = 10 * facts.displayOrder % 60;  // tasks spread over the hour
  const std::int64_t count = std::min(facts.rules.frequency.numPartialCompletions, mostTimes);
  Times times;
  for (std::int64_t i = 0; i < count; ++i) {
    const HHMMSS time = HHMMSS{.h = 18 - 2 * i, .m = minute}.roundToNearestInterval(rounding);
    times.try_emplace(time, AutomaticTime{.time = time, .source = Source::default_});
  }
  return times;
}

bool isNearOne(HHMMSS time, const Times& times) {
  return std::ranges::any_of(times, [&](const auto& each) {
    return time.isWithin(static_cast<double>(spacing.h), each.first, /*inclusive=*/false);
  });
}

/// Adds times in steps away from one of them, until there are so many.
void fillUp(Times& times, std::size_t wantedInAll, HHMMSS from, HHMMSS step) {
  const bool isBackwards = step < HHMMSS::midnight;
  for (auto time = from.add(step, /*canWrap=*/false); time && times.size() < wantedInAll;
       time = time->add(step, /*canWrap=*/false)) {
    if (isBackwards ? *time < lowerBound : *time > upperBound) return;
    if (isNearOne(*time, times)) continue;
    times.try_emplace(*time, AutomaticTime{.time = *time, .source = Source::filled});
  }
}

void fillUp(Times& times, std::int64_t numPartial) {
  const auto wantedInAll =
      static_cast<std::size_t>(std::clamp<std::int64_t>(numPartial, 0, mostTimes));
  const Times known = times;
  for (const auto& [time, of] : known) {
    fillUp(times, wantedInAll, time, {.h = -spacing.h});
    fillUp(times, wantedInAll, time, spacing);
  }
}

/// The reminders of the times, each once, without identifiers.
std::vector<TaskReminder> reminders(const std::vector<AutomaticTime>& times, bool isMuted) {
  using Trigger = TaskReminder::Trigger;
  std::vector<TaskReminder> all;
  for (const AutomaticTime& time : times) {
    TaskReminder reminder{.uniqueId = {},
                          .trigger = isMuted ? Trigger::fromMutedTimeOfDay(time.time)
                                             : Trigger::fromTimeOfDay(time.time),
                          .daysOfWeek = time.days,
                          .dayIndexesFromStart = time.dayIndexesFromStart,
                          .dayIndexesFromFinish = time.dayIndexesFromFinish};
    if (std::ranges::find(all, reminder) == all.end()) all.push_back(std::move(reminder));
  }
  return all;
}

/// Lets a reminder of the new list take the place of a former one.
void replace(TaskReminder& reminder, const TaskReminder& former) {
  reminder.uniqueId = former.uniqueId;
  if (!former.snoozeDate) return;
  reminder.timeZone = former.timeZone;  // set when it was put off
  reminder = reminder.withSnooze(former.snoozeDate, former.snoozeTime, former.snoozeTimeZone);
}

std::int64_t secondsBetween(const TaskReminder& one, const TaskReminder& other) {
  const auto seconds = [](const TaskReminder& reminder) {
    return reminder.trigger.timeOfDay.value_or(HHMMSS::midnight).intValue();
  };
  return std::abs(seconds(one) - seconds(other));
}

/// Gives the reminders the identifiers and snoozes of the former ones that they replace, and new
/// identifiers to the others.
void identify(std::vector<TaskReminder>& reminders, std::vector<TaskReminder> former) {
  std::vector<TaskReminder*> added;
  for (TaskReminder& reminder : reminders) {
    const auto same = std::ranges::find_if(
        former, [&](const TaskReminder& each) { return isSameTrigger(each, reminder); });
    if (same == former.end()) {
      added.push_back(&reminder);
    } else {
      replace(reminder, *same);
      former.erase(same);
    }
  }
  std::erase_if(former, [](const TaskReminder& each) { return !each.snoozeDate; });
  for (const TaskReminder& snoozed : former) {
    const auto nearest = std::ranges::min_element(
        added, std::less{},
        [&](const TaskReminder* each) { return secondsBetween(*each, snoozed); });
    if (nearest == added.end()) break;
    replace(**nearest, snoozed);
    added.erase(nearest);
  }
  for (TaskReminder* reminder : added) reminder->uniqueId = UniqueID::create();
}

}  // namespace

YYYYMMDD::Range windowOfHistory(const TaskLogRules& rules) {
  const YYYYMMDD today = rules.today();
  return {.minDate = today.add(-daysOfHistory, rules.timeZone), .maxDate = today};
}

std::vector<AutomaticTime> automaticTimes(const AutomaticTimesFacts& facts,
                                          FunctionRef<TaskLogRows(const YYYYMMDD::Range&)> log) {
  if (const auto time = fixedTime(facts)) return {{.time = *time, .source = Source::fixed}};
  if (const auto time = timeBeforeBed(facts)) return {{.time = *time, .source = Source::sleep}};
  Times times = timesOfHistory(log(windowOfHistory(facts.rules)), facts.rules);
  if (times.empty()) {
    times = defaultTimes(facts);
  } else {
    fillUp(times, facts.rules.frequency.numPartialCompletions);
  }
  std::vector<AutomaticTime> result;
  for (const auto& [time, each] : times) result.push_back(each);
  return result;
}

std::optional<TaskNotificationSettings> withAutomaticTimes(
    const TaskNotificationSettings& present, const std::vector<AutomaticTime>& times) {
  using enum TaskReminder::TriggerType;
  EnumSet<TaskReminder::TriggerType> kept{location, durationAfterStart, durationBeforeFinish};
  if (present.reminderType == ReminderType::custom) kept.insert(timeOfDay);
  const bool isMuted = present.reminderType != ReminderType::automatic;
  TaskNotificationSettings settings = present;
  settings.reminders = reminders(times, isMuted);
  identify(settings.reminders, present.remindersOf(isMuted ? timeOfDayMuted : timeOfDay));
  for (TaskReminder& reminder : present.remindersOf(kept)) {
    settings.reminders.push_back(std::move(reminder));
  }
  const bool isUnchanged = std::ranges::is_permutation(settings.reminders, present.reminders);
  return isUnchanged ? std::nullopt : std::optional(std::move(settings));
}

}  // namespace velloro
