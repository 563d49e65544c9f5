#pragma once

#include "VelloroCore/Frequency/DatedPeriod.h"
#include "VelloroCore/Progress/TaskProgressType.h"

#include <algorithm>

namespace velloro {

/// The progress of the three activity rings, each as a fraction of its goal: 1 is a closed ring,
/// and more counts as one; see `TaskProgress`.
///
///     const TaskProgressActivityRings rings{
///         .period = today, .energy = 0.29, .exercise = 1, .stand = 1.5};
///     rings.progressPct();    // 0.7633…
///     rings.encoded();        // 150100029
struct TaskProgressActivityRings {
  static constexpr TaskProgressType type = TaskProgressType::activity;

  DatedPeriod period;
  double energy = 0;
  double exercise = 0;
  double stand = 0;

  bool operator==(const TaskProgressActivityRings&) const = default;
  static constexpr auto codingKeys =
      keys(key("period", &TaskProgressActivityRings::period),
           key("energy", &TaskProgressActivityRings::energy, initialWhenUnknown),
           key("exercise", &TaskProgressActivityRings::exercise, initialWhenUnknown),
           key("stand", &TaskProgressActivityRings::stand, initialWhenUnknown));

  /// The rings of `encoded`; none is begun in what that never gives, as a negative number.
  [[nodiscard]] static TaskProgressActivityRings fromEncoded(const DatedPeriod& period,
                                                             double encoded);
  /// The three rings as the one whole number that a log entry can hold: in three decimal digits
  /// each the hundredths of energy, exercise and stand, from the last digit on. So a ring is held
  /// in 0..9.99, and to two places (`normalizeForEncoding`).
  [[nodiscard]] double encoded() const;

  /// Of all three rings, 0 to 1, to four places.
  [[nodiscard]] double progressPct() const;
  [[nodiscard]] double currentValue() const { return encoded(); }
  [[nodiscard]] double remainingValue() const { return std::max(1 - encoded(), 0.0); }

  [[nodiscard]] TaskProgressActivityRings zeroProgress() const { return with(0, 0, 0); }
  [[nodiscard]] TaskProgressActivityRings nextProgress() const {
    return with(std::max(energy, 1.0), std::max(exercise, 1.0), std::max(stand, 1.0));
  }
  [[nodiscard]] TaskProgressActivityRings completeProgress() const { return with(1, 1, 1); }

 private:
  [[nodiscard]] TaskProgressActivityRings with(double newEnergy, double newExercise,
                                               double newStand) const {
    return {.period = period, .energy = newEnergy, .exercise = newExercise, .stand = newStand};
  }
};

/// A ring to two places, halves away from zero; but what is begun does not round to 0, nor what is
/// open to 1:
///
///     normalizeForEncoding(0.004);    // 0.01
///     normalizeForEncoding(0.999);    // 0.99
///     normalizeForEncoding(1.005);    // 1.01
[[nodiscard]] double normalizeForEncoding(double ring);

}  // namespace velloro
