#include "Tasks/Reminders/SleepTimes.h"

namespace velloro {

SleepTimes& SleepTimes::shared() {
  static auto* instance = new SleepTimes;
  return *instance;
}

void SleepTimes::set(const Times& times) {
  const std::scoped_lock lock(mutex_);
  times_ = times;
}

std::optional<HHMMSS> SleepTimes::timeOfGoingToBed() const {
  const std::scoped_lock lock(mutex_);
  return times_[0] ? times_[0] : times_[1];
}

}  // namespace velloro
