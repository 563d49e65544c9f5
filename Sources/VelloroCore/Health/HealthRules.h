#pragma once

#include "OxDateTime/YYYYMMDD.h"
#include "VelloroCore/Health/HealthRanges.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <optional>
#include <set>
#include <vector>

namespace velloro {

/// An amount that misses its target by less than 0.00001 counts as the target: units are converted,
/// and shares of samples added up.
///
///     reachedAmount(7.999995, 8);    // 8
///     reachedAmount(7.99, 8);        // 7.99
[[nodiscard]] double reachedAmount(double amount, double target);

/// What log entries say where health data can't: their sum, or at least the target if one of them
/// is a whole completion.
struct InternalRecord {
  bool isFull = false;
  double quantity = 0;

  bool operator==(const InternalRecord&) const = default;
};
[[nodiscard]] double amountOfRecords(const std::vector<InternalRecord>& records, double target);

/// The part of a task's sleep that a day or another period takes: samples that begin six hours
/// before its first moment or later, and more than six hours before its end.
struct SleepWindow {
  Date start, end;

  [[nodiscard]] static SleepWindow of(Date startOfPeriod, Date endOfPeriod);
  [[nodiscard]] bool takes(Date startOfSample) const {
    return start <= startOfSample && startOfSample < end;
  }
};

/// A sample of sleep: when, and the number of its state.
struct SleepSample {
  DateRange range;
  std::int64_t state = 0;
};

/// The states that speeds stand for; none for speeds that stand for no state.
[[nodiscard]] std::set<std::int64_t> sleepStates(TypeSpeeds speeds);
/// Whether a state is one of being asleep.
[[nodiscard]] bool isAsleep(std::int64_t state);
/// Hours of sleep within a window, to four places. Without states those asleep count or, where
/// there are none, those in bed.
[[nodiscard]] double hoursOfSleep(const std::vector<SleepSample>& samples,
                                  const SleepWindow& window, const std::set<std::int64_t>& states);

/// What a bedtime task asks of a night.
struct BedTimeRule {
  bool isStart = true;   ///< Of the beginning of the night, or of its end.
  bool isAsleep = true;  ///< Asleep, or in bed.
  bool isBefore = true;  ///< The time, or after it.

  /// Absent for a speed that says nothing about bedtime.
  [[nodiscard]] static std::optional<BedTimeRule> of(TypeSpeed speed);
  /// The instant of the target: on the day itself, or for the end of a night on the next morning.
  [[nodiscard]] Date target(YYYYMMDD day, HHMMSS time, HHMMSS startOfDay, TimeZone timeZone) const;
  /// Whether the samples of the 12 hours around the target meet the rule. Who has just got up may
  /// go back to bed: the end of a night counts half an hour later.
  [[nodiscard]] bool qualifies(std::vector<DateRange> samples, Date target, Date now) const;

  static constexpr double halfWindow = 43200;  ///< Seconds to each side of the target.
};

/// Decides whether a person has burnt enough more than they have eaten, or not too much more.
struct AutomaticTaskTypeEnergyDeficitProcessor {
  enum class Direction { greaterThan, lessThan };

  [[nodiscard]] static Direction direction(TypeSpeeds speeds);
  /// \param zeroesAllowed Whether a day without food, or without anything burnt, can qualify.
  [[nodiscard]] static bool qualifies(Direction direction, double target,
                                      const AutomaticTaskType::EnergyDeficit& deficit,
                                      bool zeroesAllowed);
};

}  // namespace velloro
