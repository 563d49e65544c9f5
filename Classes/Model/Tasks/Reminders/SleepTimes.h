#pragma once

#include "OxDateTime/HHMMSS.h"

#include <array>
#include <mutex>
#include <optional>

namespace velloro {

/// When the user tends to sleep, as far as it was read from the health store. Whoever reads samples
/// sets the times; until then, none is known. May be used from any thread.
///
///     SleepTimes sleep;
///     sleep.set({std::nullopt, HHMMSS{.h = 23}});
///     sleep.timeOfGoingToBed();    // HHMMSS{.h = 23}
class SleepTimes {
 public:
  /// The first two are those of going to bed, the better one first.
  using Times = std::array<std::optional<HHMMSS>, 4>;

  /// The process's own.
  [[nodiscard]] static SleepTimes& shared();

  void set(const Times& times);
  /// Absent if neither of the first two times is known.
  [[nodiscard]] std::optional<HHMMSS> timeOfGoingToBed() const;

 private:
  mutable std::mutex mutex_;  // guards the times
  Times times_;
};

}  // namespace velloro
