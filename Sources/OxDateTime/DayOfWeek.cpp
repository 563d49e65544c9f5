#include "OxDateTime/DayOfWeek.h"

namespace velloro {

std::set<DayOfWeek> DaysOfWeek::daysOfWeek() const {
  std::set<DayOfWeek> days;
  for (const DayOfWeek day : velloro::everyDay(DayOfWeek::sunday)) {
    if (contains(DaysOfWeek(day))) days.insert(day);
  }
  return days;
}

DaysOfWeek daysOfWeek(const std::set<DayOfWeek>& days) {
  DaysOfWeek bits;
  for (const DayOfWeek day : days) bits.insert(DaysOfWeek(day));
  return bits;
}

const std::set<DayOfWeek>& everyDay() {
  static const std::set<DayOfWeek> days = DaysOfWeek::everyDay.daysOfWeek();
  return days;
}

}  // namespace velloro
