#include "Health/AutomaticTaskTypeQualifierOperation.h"

#include "Foundation/Files/NSUserDefaults.h"
#include "Health/HealthManager.h"
#include "Health/WorkoutChoice.h"
#include "OxHealthKit/HKObjects.h"
#include "OxHealthKit/OxHKCategoryValueSleepAnalysis.h"
#include "OxKit/Numbers.h"
#include "OxLog/Log.h"

#include <algorithm>
#include <set>

namespace velloro {

using Operation = AutomaticTaskTypeQualifierOperation;
using Kind = QualifyError::Kind;
using Record = QualifyInfo::HealthRecord;
using QuantityType = OxHKSampleType::QuantityType;

namespace {

constexpr int places = 4;

/// Those whose single samples are wanted: a person logs them one by one.
bool isLoggedByHand(HealthType type) {
  return (HealthType::dietaryDrinkWater <= type && type <= HealthType::dietaryMolybdenum) ||
         type == HealthType::alcoholConsumption;
}

bool isCounted(HealthType type) {
  return (HealthType::recordWeight <= type && type <= HealthType::recordOxygenSaturation) ||
         (HealthType::toothbrushingEventFloss <= type && type <= HealthType::handwashingEvent);
}

const OxHKSampleType* sampleType(const OxHKObjectType& type) {
  return std::get_if<OxHKSampleType>(&type.value);
}

const QuantityType* quantityType(const std::vector<OxHKObjectType>& types) {
  const auto* sample = types.empty() ? nullptr : sampleType(types.front());
  return sample != nullptr ? std::get_if<QuantityType>(&sample->value) : nullptr;
}

std::vector<SleepSample> sleepSamples(const std::vector<HKSample>& samples) {
  std::vector<SleepSample> sleep;
  for (const HKSample& sample : samples) {
    const auto range = DateRange::from(sample.start, sample.end);
    if (range && sample.category()) sleep.push_back({*range, *sample.category()});
  }
  return sleep;
}

constexpr auto sleepAnalysis = OxHKSampleType::CategoryType::sleepAnalysis;

}  // namespace

std::shared_ptr<Operation> Operation::self() {
  return std::static_pointer_cast<Operation>(shared_from_this());
}

void Operation::main() {
  if (isCancelled()) return complete();
  if (store == nullptr) store = HealthManager::shared().store();
  now_ = currentDate.value_or(Date::now());
  dated_ = period.latestPossibleDatedPeriod(startOfDay, timeZone, now_);
  start_ = period.startDate.startOfDay(startOfDay, timeZone);
  end_ = period.finishDate.nextDay(timeZone).startOfDay(startOfDay, timeZone);
  dispatch();
}

void Operation::dispatch() {
  const auto of = type.type.healthType();
  if (!of) return fail(Kind::noQualifyAlgorithm);
  if (!store->isHealthDataAvailable()) {
    if (!sortedInternalRecords) return fail(Kind::healthKitNotAvailable);
    const double amount = amountOfRecords(*sortedInternalRecords, type.quantity);
    return finish(QualifyInfo{
        .readingType = QualifyInfo::ReadingType::fromLogEntries,
        .progress = {TaskProgressContinuous{.period = dated_,
                                            .expectedCompletions = numPartialCompletions,
                                            .targetValue = type.quantity,
                                            .currentValue = amount}}});
  }
  readHealthType(*of);
}

void Operation::readHealthType(HealthType of) {
  const auto types = type.type.healthKitReadTypes(type.unit, type.speeds);
  if (types.empty()) return fail(Kind::noHealthKitReadTypes);
  switch (of) {
    case HealthType::activity:
      return readActivity();
    case HealthType::energyDeficit:
      return readEnergy();
    case HealthType::sleep:
    case HealthType::inBed:
      return readSleep();
    case HealthType::bedtime:
      return readBedtime();
    case HealthType::mindfulMinutes:
    case HealthType::toothbrushingEventBrush:
      return readDurations();
    case HealthType::standHours:
    case HealthType::rollHours:
      return readStandHours();
    case HealthType::workout:
    case HealthType::cycle:
    case HealthType::swimDistance:
      return readWorkouts();
    case HealthType::velloroWorkout:
      return readCompanionWorkouts();
    default:
      break;
  }
  if (of == HealthType::runOrWalk && type.speeds.contains(TypeSpeed::run)) return readWorkouts();
  if (isCounted(of)) return readCount(types, 0, {});
  const QuantityType* quantity = quantityType(types);
  if (quantity == nullptr) return fail(Kind::unknownError);
  return isLoggedByHand(of) ? readSum(*quantity) : readTotal(*quantity);
}

// Asking the store

HKPredicate Operation::within(Date from, Date to) const {
  std::vector<HKPredicate> parts = {HKPredicate::samples(from, to)};
  if (type.dataSource == AutomaticTaskType::DataSource::currentTask) {
    parts.push_back(HKPredicate::ownSource(ownBundleIdentifier));
    if (taskID) {
      parts.push_back(HKPredicate::metadata(std::string(OxHKSampleMetadata::taskIDKey),
                                            HKPredicate::Comparison::equal, taskID->stringValue()));
    }
  }
  return parts.size() == 1 ? parts.front() : HKPredicate::all(std::move(parts));
}

HKPredicate Operation::floss(HKPredicate::Comparison comparison) const {
  return HKPredicate::metadata("velloro_toothbrushing_type", comparison, "floss");
}

/// The handler runs on the queue of the store, and not at all once the operation is cancelled.
void Operation::readSamples(const OxHKSampleType& of, HKPredicate predicate,
                            SampleHandler handler) {
  auto query = std::make_shared<HKSampleQuery>();
  query->sampleType = hkObjectType(of);
  query->predicate = std::move(predicate);
  query->sortDescriptors = {{HKSampleSortIdentifier::startDate}, {HKSampleSortIdentifier::endDate}};
  query->resultsHandler = [operation = self(),
                           handler = std::move(handler)](Result<Samples> found) {
    if (operation->isCancelled()) return operation->complete();
    if (!found) return operation->fail(found.error());
    handler(*found);
  };
  store->execute(query);
}

HKStatisticsInterval Operation::interval() const {
  using Unit = HKStatisticsInterval::Unit;
  const auto unit = period.periodType == TaskFrequencyPeriodType::month  ? Unit::month
                    : period.periodType == TaskFrequencyPeriodType::year ? Unit::year
                                                                         : Unit::day;
  return {unit, timeZone};
}

std::optional<HKUnit> Operation::wantedUnit() {
  const auto text = type.unit ? healthKitUnit(*type.unit) : std::nullopt;
  auto unit = text ? hkUnit(*text) : std::nullopt;
  if (!unit) {
    Log::healthKit.error([] { return "No HealthKit unit"; });
    fail(Kind::noUnit);
  }
  return unit;
}

// Amounts

void Operation::readSum(QuantityType of) {
  const auto unit = wantedUnit();
  if (!unit) return;
  readSamples(OxHKSampleType::quantity(of), inPeriod(), [this, unit](const Samples& samples) {
    double sum = 0;
    std::vector<Record> records;
    for (const HKSample& sample : samples) {
      const auto amount = sample.quantity() != nullptr
                              ? sample.quantity()->doubleValueForUnit(*unit)
                              : std::nullopt;
      if (!amount) continue;
      sum += *amount;
      records.push_back(record(sample, *amount, *type.unit));
    }
    answerAmount(sum, std::move(records));
  });
}

void Operation::readTotal(QuantityType of) {
  const auto unit = wantedUnit();
  if (!unit) return;
  const bool isSum = type.healthKitStatisticsOptions() == HealthKitStatisticsOptions::cumulativeSum;
  auto query = std::make_shared<HKStatisticsCollectionQuery>();
  query->quantityType = hkObjectType(OxHKSampleType::quantity(of));
  query->quantitySamplePredicate = inPeriod();
  query->options =
      isSum ? HKStatisticsOptions::cumulativeSum : HKStatisticsOptions::discreteAverage;
  query->anchorDate = start_;
  query->intervalComponents = interval();
  query->initialResultsHandler = [operation = self(), unit,
                                  isSum](Result<HKStatisticsCollection> found) {
    if (operation->isCancelled()) return operation->complete();
    if (!found) return operation->fail(found.error());
    const double amount =
        isSum ? found->sumQuantity(operation->start_, operation->end_, *unit).value
              : found->averageQuantity(operation->start_, operation->end_, *unit).value_or(0);
    operation->answerAmount(roundToPlaces(amount, places));
  };
  store->execute(query);
}

// Durations

DatedPeriod Operation::periodOf(Date date) const {
  const YYYYMMDD day = YYYYMMDD::fromDate(startOfDay, date, timeZone);
  if (period.contains(day)) return {.date = day, .period = period};
  return DatedPeriod::fromDate(day, period.periodType, period.firstDayOfWeek, timeZone);
}

Record Operation::record(const HKSample& sample, double quantity, TypeUnit unit) const {
  return {.period = periodOf(sample.start),
          .id = sample.uuid,
          .isExternal =
              sample.source.isImported || sample.source.bundleIdentifier != ownBundleIdentifier,
          .quantity = quantity,
          .unit = unit,
          .start = sample.start,
          .end = sample.end};
}

void Operation::readDurations() {
  const bool isBrushing = type.type == HealthType::toothbrushingEventBrush;
  const auto of = isBrushing ? OxHKSampleType::CategoryType::toothbrushingEvent
                             : OxHKSampleType::CategoryType::mindfulSession;
  HKPredicate predicate = inPeriod();
  if (isBrushing) {
    predicate = HKPredicate::all({predicate, floss(HKPredicate::Comparison::notEqual)});
  }
  readSamples(OxHKSampleType::category(of), predicate, [this](const Samples& samples) {
    const TypeUnit unit = type.unit.value_or(TypeUnit::durationSeconds);
    std::vector<DateRange> ranges;
    std::vector<Record> records;
    for (const HKSample& sample : samples) {
      const auto range = DateRange::from(sample.start, sample.end);
      if (!range) continue;
      ranges.push_back(*range);
      records.push_back(record(sample, convertFromTimeInterval(range->duration(), unit), unit));
    }
    const double seconds = totalDuration(std::move(ranges));
    answerAmount(roundToPlaces(convertFromTimeInterval(seconds, unit), places), std::move(records));
  });
}

// Nights

void Operation::readSleep() {
  if (period.finishDate < period.startDate) {
    return finish(failure<SleepError>(SleepError::Kind::invalidPeriodType));
  }
  const Date from = period.startDate.previousDay(timeZone).startOfDay(startOfDay, timeZone);
  readSamples(OxHKSampleType::category(sleepAnalysis), within(from, end_),
              [this](const Samples& samples) {
                const TypeSpeeds speeds =
                    type.type == HealthType::inBed ? TypeSpeeds{TypeSpeed::inBed} : type.speeds;
                answerAmount(hoursOfSleep(sleepSamples(samples), SleepWindow::of(start_, end_),
                                          sleepStates(speeds)));
              });
}

void Operation::readBedtime() {
  const auto time = HHMMSS::fromIntValue(static_cast<std::int64_t>(type.quantity));
  const auto speed = std::ranges::find_if(
      type.speeds, [](TypeSpeed one) { return BedTimeRule::of(one).has_value(); });
  if (!time || speed == type.speeds.end()) return fail(Kind::unknownError);
  const BedTimeRule rule = *BedTimeRule::of(*speed);
  const Date target = rule.target(dated_.date, *time, startOfDay, timeZone);
  const auto around = within(target - BedTimeRule::halfWindow, target + BedTimeRule::halfWindow);
  readSamples(OxHKSampleType::category(sleepAnalysis), around,
              [this, rule, target](const Samples& samples) {
                std::vector<DateRange> ranges;
                for (const auto& [range, state] : sleepSamples(samples)) {
                  const bool isInBed = state == rawValue(OxHKCategoryValueSleepAnalysis::inBed);
                  if (rule.isAsleep ? isAsleep(state) : isInBed) ranges.push_back(range);
                }
                const bool qualifies = rule.qualifies(std::move(ranges), target, now_);
                answer(TaskProgressDiscrete{.period = dated_,
                                            .expectedCompletions = numPartialCompletions,
                                            .numCompletions = qualifies ? 1 : 0});
              });
}

// Rings and energy

namespace {

TaskProgressActivityRings rings(const DatedPeriod& period, const HKActivitySummary& summary) {
  const auto share = [](double value, double goal) { return goal > 0 ? value / goal : 0; };
  return {.period = period,
          .energy = share(summary.activeEnergyBurned, summary.activeEnergyBurnedGoal),
          .exercise = share(summary.appleExerciseTime, summary.appleExerciseTimeGoal),
          .stand = share(summary.appleStandHours, summary.appleStandHoursGoal)};
}

std::optional<HKActivitySummary> fakeSummary() {
  const PropertyList kept = NSUserDefaults::standardUserDefaults()
                                .objectForKey(fakeActivityRingsStorageKey)
                                .value_or(PropertyList());
  if (kept.dictionary() == nullptr) return std::nullopt;
  const auto value = [&](const char* key) { return kept[key].real().value_or(0); };
  return HKActivitySummary{.activeEnergyBurned = value("activeEnergyBurned"),
                           .activeEnergyBurnedGoal = value("activeEnergyBurnedGoal"),
                           .appleExerciseTime = value("appleExerciseTime"),
                           .appleExerciseTimeGoal = value("appleExerciseTimeGoal"),
                           .appleStandHours = value("appleStandHours"),
                           .appleStandHoursGoal = value("appleStandHoursGoal")};
}

}  // namespace

void Operation::readActivity() {
  if (const auto fake = fakeSummary()) return answer(rings(dated_, *fake));
  auto query = std::make_shared<HKActivitySummaryQuery>();
  query->day = dated_.date.intValue();
  query->resultsHandler = [operation = self()](Result<std::vector<HKActivitySummary>> found) {
    if (operation->isCancelled()) return operation->complete();
    if (!found) return operation->fail(found.error());
    if (found->empty()) Log::healthKit.info([] { return "No summary, returning zero progress"; });
    const auto summary = found->empty() ? HKActivitySummary() : found->front();
    operation->answer(rings(operation->dated_, summary));
  };
  store->execute(query);
}

void Operation::readEnergy() {
  if (!type.unit || !isEnergy(*type.unit)) {
    Log::healthKit.error([] { return "No HealthKit unit"; });
    return fail(Kind::noUnit);
  }
  const auto unit = wantedUnit();
  using enum QuantityType;
  auto query = std::make_shared<HKMultiStatisticsCollectionQuery>();
  query->quantityTypes = {activeEnergyBurned, basalEnergyBurned, dietaryEnergyConsumed};
  query->quantitySamplePredicate = inPeriod();
  query->anchorDate = start_;
  query->intervalComponents = interval();
  using Collections = HKMultiStatisticsCollectionQuery::Collections;
  execute(*store, query, [operation = self(), unit](Result<Collections> found) {
    if (operation->isCancelled()) return operation->complete();
    if (!found) return operation->fail(found.error());
    const auto sum = [&](QuantityType of) {
      return found->at(of).sumQuantity(operation->start_, operation->end_, *unit).value;
    };
    using Processor = AutomaticTaskTypeEnergyDeficitProcessor;
    const AutomaticTaskType& own = operation->type;
    const bool isEnabled = Processor::qualifies(Processor::direction(own.speeds), own.quantity,
                                                {.unit = *own.unit,
                                                 .activeEnergy = sum(activeEnergyBurned),
                                                 .restingEnergy = sum(basalEnergyBurned),
                                                 .dietaryEnergy = sum(dietaryEnergyConsumed)},
                                                /*zeroesAllowed=*/false);
    operation->answer(TaskProgressDateRange::from({.period = operation->dated_,
                                                   .startOfDay = operation->startOfDay,
                                                   .timeZone = operation->timeZone,
                                                   .currentDate = operation->now_,
                                                   .enabled = isEnabled}));
  });
}

// Workouts

void Operation::readWorkouts() {
  const bool isAny = type.type == HealthType::workout;
  if (!isAny && !type.unit) {
    Log::healthKit.error([] { return "No HealthKit unit"; });
    return fail(Kind::noUnit);
  }
  const auto choice = WorkoutChoice::of(type);
  HKPredicate predicate = inPeriod();
  if (!choice.activities.empty() || !choice.takesAll) {
    predicate = HKPredicate::all({predicate, choice.predicate()});
  }
  readSamples(OxHKSampleType::workout(), predicate, [this, choice](const Samples& samples) {
    Samples matching;
    std::ranges::copy_if(samples, std::back_inserter(matching),
                         [&](const HKSample& one) { return choice.takes(one); });
    if (!type.unit) return answerCount(matching.size());
    answerAmount(roundToPlaces(amountOfWorkouts(matching, *type.unit), places));
  });
}

void Operation::readCompanionWorkouts() {
  const auto predicate =
      HKPredicate::all({inPeriod(), HKPredicate::source(workoutBundleIdentifier)});
  readSamples(OxHKSampleType::workout(), predicate, [this](const Samples& samples) {
    const auto count = std::ranges::count_if(
        samples, [&](const HKSample& one) { return isChosenCompanionWorkout(one, type); });
    answerCount(static_cast<std::size_t>(count));
  });
}

// Counts

void Operation::readStandHours() {
  const auto of = OxHKSampleType::category(OxHKSampleType::CategoryType::appleStandHour);
  readSamples(of, inPeriod(), [this](const Samples& samples) {
    static constexpr HKSample::Category stood = 0;
    answerAmount(static_cast<double>(std::ranges::count_if(
        samples, [](const HKSample& one) { return one.category() == stood; })));
  });
}

void Operation::readCount(const std::vector<OxHKObjectType>& types, std::size_t next,
                          Samples found) {
  if (next < types.size()) {
    const auto* of = sampleType(types[next]);
    if (of == nullptr) return fail(Kind::unknownError);
    HKPredicate predicate = inPeriod();
    if (type.type == HealthType::toothbrushingEventFloss) {
      predicate = HKPredicate::all({predicate, floss(HKPredicate::Comparison::equal)});
    }
    return readSamples(*of, predicate,
                       [this, types, next, found = std::move(found)](const Samples& more) {
                         Samples all = found;
                         all.insert(all.end(), more.begin(), more.end());
                         readCount(types, next + 1, std::move(all));
                       });
  }
  if (type.type != HealthType::recordBloodPressure) return answerCount(found.size());
  // The two values of one measurement count once.
  std::set<std::tuple<Date, Date, std::string>> measurements;
  for (const HKSample& sample : found) {
    measurements.emplace(sample.start, sample.end, sample.source.bundleIdentifier);
  }
  answerCount(measurements.size());
}

// Answering

void Operation::answerAmount(double amount, std::vector<Record> records) {
  answer(TaskProgressContinuous{.period = dated_,
                                .expectedCompletions = numPartialCompletions,
                                .targetValue = type.quantity,
                                .currentValue = reachedAmount(amount, type.quantity)},
         std::move(records));
}

void Operation::answerCount(std::size_t count) {
  answer(TaskProgressDiscrete{.period = dated_,
                              .expectedCompletions = numPartialCompletions,
                              .numCompletions = static_cast<std::int64_t>(count)});
}

void Operation::answer(TaskProgress progress, std::vector<Record> records) {
  finish(QualifyInfo{.progress = {std::move(progress)}, .healthRecords = std::move(records)});
}

void Operation::fail(Kind kind) {
  finish(failure<QualifyError>(kind));
}

void Operation::fail(const ErrorPtr& error) {
  Log::healthKit.error(error);
  finish(std::unexpected(error));
}

void Operation::finish(Answer answer) {
  if (!isCancelled()) result = std::move(answer);
  complete();
}

}  // namespace velloro
