#include "OxDateTime/DayOfWeek.h"

#include "Foundation/Locale.h"
#include "OxDateTime/OxDateTimeCache.h"

namespace velloro {
namespace {

std::size_t index(DayOfWeek day) {
  return static_cast<std::size_t>(rawValue(day));
}

}  // namespace

std::string localizedTitle(DayOfWeek day) {
  return OxDateTimeCache::formatters().symbols.weekdaySymbols().at(index(day));
}

std::string localizedShortTitle(DayOfWeek day) {
  return OxDateTimeCache::formatters().symbols.shortWeekdaySymbols().at(index(day));
}

std::string localizedVeryShortTitle(DayOfWeek day) {
  return OxDateTimeCache::formatters().symbols.veryShortWeekdaySymbols().at(index(day));
}

std::optional<DayOfWeek> defaultFirstDayOfWeek() {
  return fromRawValue<DayOfWeek>(Locale::current().firstWeekday() - 1);
}

std::set<DayOfWeek> DaysOfWeek::daysOfWeek() const {
  std::set<DayOfWeek> days;
  for (const DayOfWeek day : allCases<DayOfWeek>()) {
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
