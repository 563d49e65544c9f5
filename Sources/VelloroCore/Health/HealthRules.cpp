#include "VelloroCore/Health/HealthRules.h"

#include "OxHealthKit/OxHKCategoryValueSleepAnalysis.h"
#include "OxKit/Numbers.h"

#include <algorithm>

namespace velloro {

using Sleep = OxHKCategoryValueSleepAnalysis;

double reachedAmount(double amount, double target) {
  constexpr double closeness = 0.00001;
  return amount < target && target - amount < closeness ? target : amount;
}

double amountOfRecords(const std::vector<InternalRecord>& records, double target) {
  double sum = 0;
  for (const InternalRecord& record : records) sum += record.quantity;
  const bool isAnyFull = std::ranges::any_of(records, &InternalRecord::isFull);
  return isAnyFull ? std::max(sum, target) : sum;
}

SleepWindow SleepWindow::of(Date startOfPeriod, Date endOfPeriod) {
  constexpr double evening = 21600;
  return {startOfPeriod - evening, endOfPeriod - evening};
}

std::set<std::int64_t> sleepStates(TypeSpeeds speeds) {
  constexpr std::pair<TypeSpeed, Sleep> states[] = {
      {TypeSpeed::sleepAsleep, Sleep::asleepUnspecified},
      {TypeSpeed::sleepCore, Sleep::asleepCore},
      {TypeSpeed::sleepDeep, Sleep::asleepDeep},
      {TypeSpeed::sleepREM, Sleep::asleepREM},
      {TypeSpeed::inBed, Sleep::inBed}};
  std::set<std::int64_t> chosen;
  for (const auto& [speed, state] : states) {
    if (speeds.contains(speed)) chosen.insert(rawValue(state));
  }
  return chosen;
}

bool isAsleep(std::int64_t state) {
  const auto known = fromRawValue<Sleep>(state);
  return known && *known != Sleep::inBed && *known != Sleep::awake;
}

double hoursOfSleep(const std::vector<SleepSample>& samples, const SleepWindow& window,
                    const std::set<std::int64_t>& states) {
  const auto rangesOf = [&](auto counts) {
    std::vector<DateRange> ranges;
    for (const SleepSample& sample : samples) {
      if (window.takes(sample.range.start) && counts(sample.state)) ranges.push_back(sample.range);
    }
    return ranges;
  };
  std::vector<DateRange> ranges =
      states.empty() ? rangesOf(isAsleep)
                     : rangesOf([&](std::int64_t state) { return states.contains(state); });
  if (states.empty() && ranges.empty()) {
    ranges = rangesOf([](std::int64_t state) { return state == rawValue(Sleep::inBed); });
  }
  constexpr double hour = 3600;
  return roundToPlaces(totalDuration(std::move(ranges)) / hour, 4);
}

std::optional<BedTimeRule> BedTimeRule::of(TypeSpeed speed) {
  switch (speed) {
    case TypeSpeed::asleepBefore:
      return BedTimeRule{true, true, true};
    case TypeSpeed::inBedBefore:
      return BedTimeRule{true, false, true};
    case TypeSpeed::asleepAfter:
      return BedTimeRule{true, true, false};
    case TypeSpeed::inBedAfter:
      return BedTimeRule{true, false, false};
    case TypeSpeed::awakeBefore:
      return BedTimeRule{false, true, true};
    case TypeSpeed::outOfBedBefore:
      return BedTimeRule{false, false, true};
    case TypeSpeed::awakeAfter:
      return BedTimeRule{false, true, false};
    case TypeSpeed::outOfBedAfter:
      return BedTimeRule{false, false, false};
    default:
      return std::nullopt;
  }
}

Date BedTimeRule::target(YYYYMMDD day, HHMMSS time, HHMMSS startOfDay, TimeZone timeZone) const {
  return isStart ? day.dateAt(startOfDay, time, timeZone)
                 : day.nextDay(timeZone).dateAt(HHMMSS::midnight, time, timeZone);
}

bool BedTimeRule::qualifies(std::vector<DateRange> samples, Date target, Date now) const {
  constexpr double tolerance = 7200;
  constexpr double untilAwake = 1800;
  const auto segments = normalizedSegments(std::move(samples), tolerance);
  if (segments.empty()) return false;
  if (!isStart && now.timeIntervalSince(segments.back().end) <= untilAwake) return false;
  const Date from = isBefore ? target - halfWindow : target;
  const Date to = isBefore ? target : target + halfWindow;
  return std::ranges::any_of(segments, [&](const DateRange& segment) {
    const Date moment = isStart ? segment.start : segment.end;
    return from < moment && moment < to;
  });
}

using EnergyProcessor = AutomaticTaskTypeEnergyDeficitProcessor;

EnergyProcessor::Direction EnergyProcessor::direction(TypeSpeeds speeds) {
  return speeds.contains(TypeSpeed::lessThan) ? Direction::lessThan : Direction::greaterThan;
}

bool EnergyProcessor::qualifies(Direction direction, double target,
                                const AutomaticTaskType::EnergyDeficit& deficit,
                                bool zeroesAllowed) {
  const double burnt = deficit.activeEnergy + deficit.restingEnergy;
  if (!zeroesAllowed && !(deficit.dietaryEnergy > 0 && burnt > 0)) return false;
  // Sums of many samples: what differs by their rounding alone is equal.
  const double beyond = difference(burnt - deficit.dietaryEnergy, target);
  return direction == Direction::lessThan ? beyond <= 0 : beyond >= 0;
}

}  // namespace velloro
