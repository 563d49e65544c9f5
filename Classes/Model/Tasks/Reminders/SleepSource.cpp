#include "Tasks/Reminders/SleepSource.h"

#include "Foundation/Process/Environment.h"
#include "Health/HealthManager.h"
#include "OxHealthKit/HKObjects.h"
#include "OxHealthKit/OxHKCategoryValueSleepAnalysis.h"
#include "OxLog/Log.h"
#include "VelloroCore/Health/HealthRules.h"

#include <algorithm>
#include <map>

namespace velloro {
namespace {

constexpr std::int64_t noon = 43200;
constexpr std::int64_t day = 86400;

std::int64_t sinceNoon(Date date, TimeZone timeZone) {
  return (HHMMSS::fromDate(date, timeZone).intValue() + noon) % day;
}

std::optional<HHMMSS> medianSinceNoon(const std::vector<HHMMSS>& times) {
  const auto middle = median(times);
  return middle ? middle->add({.h = 12}, /*canWrap=*/true) : std::nullopt;
}

/// The typical beginning and end of the nights.
std::array<std::optional<HHMMSS>, 2> ends(std::vector<DateRange> ranges, TimeZone timeZone) {
  constexpr double tolerance = 7200;
  constexpr double shortestNight = 10800;  // less is a nap
  std::map<YYYYMMDD, DateRange> nights;
  for (const DateRange& segment : normalizedSegments(std::move(ranges), tolerance)) {
    if (segment.duration() < shortestNight) continue;
    const auto night = YYYYMMDD::fromDate(HHMMSS::midday, segment.start, timeZone);
    const auto [found, isNew] = nights.emplace(night, segment);
    if (found->second.duration() < segment.duration()) found->second = segment;
  }
  std::vector<HHMMSS> starts, finishes;
  for (const auto& [night, segment] : nights) {
    starts.push_back(*HHMMSS::fromIntValue(sinceNoon(segment.start, timeZone)));
    finishes.push_back(*HHMMSS::fromIntValue(sinceNoon(segment.end, timeZone)));
  }
  return {medianSinceNoon(starts), medianSinceNoon(finishes)};
}

}  // namespace

SleepTimes::Times typicalSleepTimes(const std::vector<HKSample>& samples, TimeZone timeZone) {
  std::vector<DateRange> asleep, inBed;
  for (const HKSample& sample : samples) {
    const auto range = DateRange::from(sample.start, sample.end);
    const auto state = sample.category();
    if (!range || !state) continue;
    if (isAsleep(*state)) asleep.push_back(*range);
    if (*state == rawValue(OxHKCategoryValueSleepAnalysis::inBed)) inBed.push_back(*range);
  }
  const auto [toBed, outOfBed] = ends(std::move(inBed), timeZone);
  const auto [toSleep, awake] = ends(std::move(asleep), timeZone);
  return {toBed, toSleep, awake, outOfBed};
}

std::optional<HHMMSS> readTimeOfGoingToBed(YYYYMMDD today, HHMMSS startOfDay) {
  const auto store = HealthManager::shared().store();
  if (!store->isHealthDataAvailable()) return SleepTimes::shared().timeOfGoingToBed();
  constexpr std::int64_t window = 14;
  const TimeZone zone = TimeZone::current();
  const Date from = today.add(-window, zone).startOfDay(startOfDay, zone);
  const auto found =
      samplesOf(*store, OxHKSampleType::category(OxHKSampleType::CategoryType::sleepAnalysis),
                HKPredicate::samples(from, Date::distantFuture()));
  if (!found) Log::healthKit.error(found.error());
  if (found) SleepTimes::shared().set(typicalSleepTimes(*found, zone));
  return SleepTimes::shared().timeOfGoingToBed();
}

}  // namespace velloro
