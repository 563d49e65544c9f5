#include "OxDateTime/DayOfWeek.h"

#include "Foundation/Text/Locale.h"
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

DayOfWeek localesFirstDayOfWeek() {
  return defaultFirstDayOfWeek().value_or(DayOfWeek::sunday);
}

}  // namespace velloro
