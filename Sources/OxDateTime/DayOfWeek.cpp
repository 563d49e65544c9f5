#include "OxDateTime/DayOfWeek.h"

#include "Foundation/Text/Locale.h"
#include "OxDateTime/OxDateTimeCache.h"

namespace velloro {
namespace {

std::size_t index(DayOfWeek day) {
  return static_cast<std::size_t>(rawValue(day));
}

}  // namespace

std::string localizedTitle(DayOfWeek day, const Locale& locale) {
  return OxDateTimeCache::formatters(locale).symbols.weekdaySymbols().at(index(day));
}

std::string localizedShortTitle(DayOfWeek day, const Locale& locale) {
  return OxDateTimeCache::formatters(locale).symbols.shortWeekdaySymbols().at(index(day));
}

std::string localizedVeryShortTitle(DayOfWeek day, const Locale& locale) {
  return OxDateTimeCache::formatters(locale).symbols.veryShortWeekdaySymbols().at(index(day));
}

std::optional<DayOfWeek> defaultFirstDayOfWeek(const Locale& locale) {
  return fromRawValue<DayOfWeek>(locale.firstWeekday() - 1);
}

DayOfWeek localesFirstDayOfWeek(const Locale& locale) {
  return defaultFirstDayOfWeek(locale).value_or(DayOfWeek::sunday);
}

}  // namespace velloro
