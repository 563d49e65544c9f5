#pragma once

#include "HealthKit/HKHealthStore.h"
#include "OxKit/AsyncOperation.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Health/HealthRules.h"
#include "VelloroCore/Health/QualifyInfo.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace velloro {

/// Where an `HKActivitySummary` stands in the standard defaults on a machine without one of its
/// own: as a dictionary of its members.
inline constexpr std::string_view fakeActivityRingsStorageKey = "_fake_activity_rings";

/// How far an automatic task has come in a period, read from health data. It reads and writes
/// nothing.
///
/// ```
/// auto operation = std::make_shared<AutomaticTaskTypeQualifierOperation>();
/// operation->type = AutomaticTaskType(HealthType::dietaryDrinkWater, target);
/// operation->period = period;
/// NSOperationQueue queue;
/// queue.addOperation(operation);
/// operation->waitUntilFinished();
/// operation->result->value().progress.base.progressPct(now);
/// ```
///
/// | types | what is read |
/// | --- | --- |
/// | what is logged by hand: food, drinks | the sum of the samples, each a `HealthRecord` |
/// | other amounts: steps, energy, distances | the total, each moment once |
/// | mindful minutes, brushing | the time that samples cover |
/// | sleep, time in bed | the same, of one night |
/// | bedtime | whether the night began or ended on the right side of a time |
/// | workouts | their distances, energy, durations or number |
/// | stand and roll hours | the hours in which the person stood |
/// | the rings | the day's activity summary |
/// | the energy deficit | three totals |
/// | records and events | how many samples there are; a blood pressure is one, not two |
///
/// An error is a `QualifyError`, a `SleepError` or one of the store. A cancelled operation has no
/// result.
class AutomaticTaskTypeQualifierOperation : public AsyncOperation {
 public:
  using Answer = Result<QualifyInfo>;

  /// \name Set before the start.
  /// @{
  AutomaticTaskType type;
  TaskFrequencyPeriod period = {};
  HHMMSS startOfDay = HHMMSS::midnight;
  TimeZone timeZone = TimeZone::gmt();
  std::int64_t numPartialCompletions = 1;
  /// The task's own entries, from the oldest; they answer where there are no health data.
  std::optional<std::vector<InternalRecord>> sortedInternalRecords = {};
  bool isPopulatingInitialStreak = false;
  std::optional<UniqueID> taskID = {};
  std::shared_ptr<const HKHealthStore> store = {};  ///< Absent for that of `HealthManager`.
  std::optional<Date> currentDate = {};             ///< Absent for the clock.
  /// @}

  std::optional<Answer> result = {};

  void main() override;

 private:
  using Samples = std::vector<HKSample>;
  using SampleHandler = std::function<void(const Samples&)>;
  using QuantityType = OxHKSampleType::QuantityType;

  void dispatch();
  void readHealthType(HealthType of);
  void readActivity();
  void readEnergy();
  void readSleep();
  void readBedtime();
  void readWorkouts();
  void readCompanionWorkouts();
  void readDurations();
  void readStandHours();
  void readCount(const std::vector<OxHKObjectType>& types, std::size_t next, Samples found);
  void readSum(QuantityType of);
  void readTotal(QuantityType of);

  void readSamples(const OxHKSampleType& of, HKPredicate predicate, SampleHandler handler);
  [[nodiscard]] HKPredicate within(Date from, Date to) const;
  [[nodiscard]] HKPredicate inPeriod() const { return within(start_, end_); }
  [[nodiscard]] HKPredicate floss(HKPredicate::Comparison comparison) const;
  [[nodiscard]] HKStatisticsInterval interval() const;
  [[nodiscard]] DatedPeriod periodOf(Date date) const;
  [[nodiscard]] QualifyInfo::HealthRecord record(const HKSample& sample, double quantity,
                                                 TypeUnit unit) const;
  [[nodiscard]] std::optional<HKUnit> wantedUnit();

  void answerAmount(double amount, std::vector<QualifyInfo::HealthRecord> records = {});
  void answerCount(std::size_t count);
  void answer(TaskProgress progress, std::vector<QualifyInfo::HealthRecord> records = {});
  void fail(QualifyError::Kind kind);
  void fail(const ErrorPtr& error);
  void finish(Answer answer);
  [[nodiscard]] std::shared_ptr<AutomaticTaskTypeQualifierOperation> self();

  Date now_, start_, end_;
  DatedPeriod dated_;
};

}  // namespace velloro
