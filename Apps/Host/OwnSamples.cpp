#include "Host/OwnSamples.h"

#include "Foundation/Values/Try.h"
#include "OxHealthKit/HKObjects.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "VelloroCore/Health/HealthRanges.h"
#include "VelloroCore/Log/LogEntryRules.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace velloro {
namespace {

using Category = OxHKSampleType::CategoryType;
using Entry = TaskLogEntryEntity;

/// The type of the samples; absent where there are none.
std::optional<OxHKSampleType> sampleTypeOf(const AutomaticTaskType& type) {
  switch (type.type.healthType().value_or(HealthType::activity)) {
    case HealthType::mindfulMinutes:
      return OxHKSampleType::category(Category::mindfulSession);
    case HealthType::toothbrushingEventBrush:
    case HealthType::toothbrushingEventFloss:
      return OxHKSampleType::category(Category::toothbrushingEvent);
    case HealthType::handwashingEvent:
      return OxHKSampleType::category(Category::handwashingEvent);
    case HealthType::recordSexualActivity:
      return OxHKSampleType::category(Category::sexualActivity);
    case HealthType::activity:
    case HealthType::energyDeficit:
      return std::nullopt;
    default:
      break;
  }
  const auto types = type.type.healthKitReadTypes(type.unit, type.speeds);
  const auto* sample = types.empty() ? nullptr : std::get_if<OxHKSampleType>(&types.front().value);
  const bool isAmount = type.unit && sample != nullptr &&
                        std::holds_alternative<OxHKSampleType::QuantityType>(sample->value);
  return isAmount ? std::optional(*sample) : std::nullopt;
}

std::optional<UniqueID> entryOf(const HKSample& sample) {
  const auto found = sample.metadata.find(OxHKSampleMetadata::entryIDKey);
  const auto* text = found != sample.metadata.end() ? found->second.text() : nullptr;
  return text != nullptr ? UniqueID::fromString(*text) : std::nullopt;
}

/// The latest time up to an instant of its day in which nothing else of the type was done.
DateRange freeTime(const std::vector<HKSample>& others, Date until, double duration,
                   Date startOfDay) {
  DateRange range{until - duration, until};
  for (bool isMoved = true; isMoved;) {
    isMoved = false;
    for (const HKSample& other : others) {
      if (other.start < range.end && range.start < other.end) {
        range = {other.start - duration, other.start};
        isMoved = true;
      }
    }
  }
  return range.start >= startOfDay ? range : DateRange{startOfDay, startOfDay + duration};
}

}  // namespace

double amountByHand(const Entry& entry, bool isNegative) {
  const auto type = entry.value(Entry::entryType).value_or(TaskLogEntryType::unknown);
  if (!TaskLogEntryTypes::allManualTypes.contains(type)) return 0;
  return LogStep{type, entry.value(Entry::progress)}.counted(isNegative);
}

std::optional<OwnSamples> OwnSamples::of(const TaskEntity& task, const HKHealthStore& store) {
  const auto type = task.automaticTaskType();
  const auto id = task.taskUniqueId();
  if (!type || !id || !sampleTypeOf(*type)) return std::nullopt;
  return OwnSamples(task, store, *type, *id);
}

Result<OwnSamples::KeptByEntry> OwnSamples::kept(const YYYYMMDD::Range& days) const {
  const auto of = sampleTypeOf(type_);
  const HHMMSS startOfDay = task_.startOfDay();
  const TimeZone zone = task_.taskCurrentTimeZone();
  constexpr double day = 86400;
  const auto window =
      HKPredicate::samples(days.minDate->startOfDay(startOfDay, zone) - day,
                           days.maxDate->nextDay(zone).startOfDay(startOfDay, zone) + day);
  const auto ofTask = HKPredicate::metadata(std::string(OxHKSampleMetadata::taskIDKey),
                                            HKPredicate::Comparison::equal, id_.stringValue());
  const auto samples = TRY(samplesOf(
      store_, *of, HKPredicate::all({window, HKPredicate::ownSource("velloro.app"), ofTask})));
  KeptByEntry byEntry;
  for (const HKSample& sample : samples) {
    const auto entry = entryOf(sample);
    const auto date = sample.metadata.find(OxHKSampleMetadata::dateKey);
    const auto number = date != sample.metadata.end() ? date->second.integer() : std::nullopt;
    if (!entry || !number || *number < days.minDate->intValue() ||
        *number > days.maxDate->intValue()) {
      continue;
    }
    const auto version = sample.metadata.find(syncVersionKey);
    const double seconds = sample.end.timeIntervalSince(sample.start);
    const double timed =
        seconds > 0 && type_.unit ? convertFromTimeInterval(seconds, *type_.unit) : 1;
    byEntry[*entry] = {
        .amount = sample.quantity() != nullptr ? sample.quantity()->value : timed,
        .version = version != sample.metadata.end() ? version->second.integer().value_or(0) : 0};
  }
  return byEntry;
}

HKSample OwnSamples::sample(const Entry& entry, YYYYMMDD day, double amount,
                            std::vector<HKSample>& others, std::int64_t version) const {
  const auto of = *sampleTypeOf(type_);
  const HHMMSS startOfDay = task_.startOfDay();
  const TimeZone zone = task_.taskCurrentTimeZone();
  const auto id = entry.value(Entry::uniqueId).value_or(UniqueID{});
  Date at = entry.value(Entry::createdTimestamp).value_or(day.startOfDay(startOfDay, zone));
  if (YYYYMMDD::fromDate(startOfDay, at, zone) != day) {
    at = day.dateAt(startOfDay, HHMMSS::fromDate(at, zone), zone);
  }
  auto metadata = OxHKSampleMetadata::from(
      {.date = day, .taskID = id_, .entryID = id, .syncVersion = version, .wasUserEntered = true});
  OxHKSample made{.start = at, .end = at};
  if (std::holds_alternative<OxHKSampleType::QuantityType>(of.value)) {
    made.value = OxHKSample::SampleValue::quantity({*healthKitUnit(*type_.unit), amount});
  } else {
    made.value = OxHKSample::SampleValue::category(0);
    if (type_.type.canBeTimed()) {
      const double seconds =
          convertToTimeInterval(amount, type_.unit.value_or(TypeUnit::durationSeconds));
      const DateRange time = freeTime(others, at, seconds, day.startOfDay(startOfDay, zone));
      made.start = time.start;
      made.end = time.end;
    }
    if (type_.type == HealthType::toothbrushingEventFloss) {
      metadata.entries.push_back(
          {"velloro_toothbrushing_type", OxHKSampleMetadata::MetadataValue::string("floss")});
    }
  }
  made.metadata = std::move(metadata);
  HKSample sample = hkSample(made, of);
  sample.uuid = id.uuid;
  others.push_back(sample);
  return sample;
}

Result<void> OwnSamples::bringUpToDate(const TaskEntity::Entries& entries,
                                       const YYYYMMDD::Range& days) const {
  KeptByEntry byEntry = TRY(kept(days));
  std::vector<HKSample> changed;
  std::optional<std::vector<HKSample>> others;
  for (const auto& entry : entries) {
    const double amount = amountByHand(*entry, task_.isNegative());
    const auto id = entry->value(Entry::uniqueId);
    const auto day = entry->value(Entry::entryDate);
    if (amount <= 0 || !id || !day || *day < *days.minDate || *day > *days.maxDate) continue;
    const auto found = byEntry.extract(*id);
    constexpr double closeness = 0.00001;
    const bool isThere = !found.empty() && std::abs(found.mapped().amount - amount) < closeness;
    if (isThere) continue;
    if (!others) {
      const Date start = day->startOfDay(task_.startOfDay(), task_.taskCurrentTimeZone());
      constexpr double aroundDay = 2 * 86400;
      others = TRY(
          samplesOf(store_, *sampleTypeOf(type_), HKPredicate::samples(start, start + aroundDay)));
    }
    changed.push_back(
        sample(*entry, *day, amount, *others, found.empty() ? 1 : found.mapped().version + 1));
  }
  for (const auto& [entry, gone] : byEntry) {
    const auto removed = store_.deleteSamples(entry.stringValue());
    if (!removed) return std::unexpected(removed.error());
  }
  if (changed.empty()) return {};
  const auto saved = store_.save(changed);
  return saved ? Result<void>() : std::unexpected(saved.error());
}

}  // namespace velloro
