#include "OxDateTime/YYYYMM.h"

#include "Foundation/Coding/Coding.h"
#include "Foundation/Text/String.h"
#include "Foundation/Time/CivilDay.h"
#include "OxDateTime/Digits.h"
#include "OxDateTime/OxDateTimeCache.h"
#include "OxDateTime/YYYYMMDD.h"

namespace velloro {
namespace {

/// The days from one weekday on to the next of another, 0 to 6.
std::int64_t daysUpTo(DayOfWeek to, DayOfWeek from) {
  const int difference = static_cast<int>(to) - static_cast<int>(from);
  return difference < 0 ? difference + 7 : difference;
}

/// In the zone of the formatters.
Date noonOfFirst(YYYYMM month) {
  return month.firstDay().dateAt(HHMMSS::midnight, HHMMSS::midday, TimeZone::gmt());
}

}  // namespace

std::optional<YYYYMM> YYYYMM::fromRawValue(std::int64_t value) {
  if (value < 1) return std::nullopt;
  return YYYYMM{.y = value / 100, .m = value % 100};
}

std::optional<YYYYMM> YYYYMM::fromString(std::string_view text) {
  if (text.size() != 6) return std::nullopt;
  const auto year = wholeNumber(text.substr(0, 4));
  const auto month = wholeNumber(text.substr(4, 2));
  if (!year || !month) return std::nullopt;
  return YYYYMM{.y = *year, .m = *month};
}

YYYYMM YYYYMM::thisMonth(HHMMSS startOfDay, TimeZone timeZone, Date now) {
  return YYYYMMDD::today(startOfDay, timeZone, now).yyyymm();
}

std::string YYYYMM::debugDescription() const {
  return stringWithFormat("%04lld-%02lld", static_cast<long long>(y), static_cast<long long>(m));
}

DateComponents YYYYMM::dateComponents() const {
  return {.year = y, .month = m};
}

YYYYMMDD YYYYMM::date(std::int64_t day) const {
  return {.y = y, .m = m, .d = day};
}

YYYYMMDD YYYYMM::firstDay() const {
  return date(1);
}

YYYYMMDD YYYYMM::lastDay() const {
  return date(numberOfDays());
}

std::int64_t YYYYMM::numberOfDays() const {
  // A month beyond 1..12 is one of another year.
  return daysInMonth(y + floorDivide(m - 1, 12), floorModulo(m - 1, 12) + 1);
}

YYYYMM YYYYMM::add(std::int64_t numMonths) const {
  YYYYMM result{.y = y + numMonths / 12, .m = m + numMonths % 12};
  if (numMonths > 0 && result.m > 12) {
    result.m -= 12;
    ++result.y;
  } else if (numMonths < 0 && result.m < 1) {
    result.m += 12;
    --result.y;
  }
  return result;
}

std::int64_t YYYYMM::distance(YYYYMM to, bool includeThisMonth) const {
  return (to.y * 12 + to.m) - (y * 12 + m) + (includeThisMonth ? 1 : 0);
}

std::int64_t YYYYMM::numberOfDaysInWeekBeforeMonthStarts(DayOfWeek firstDayOfWeek) const {
  return daysUpTo(firstDay().dayOfWeek({}), firstDayOfWeek);
}

std::int64_t YYYYMM::numberOfDaysInWeekAfterMonthEnds(DayOfWeek firstDayOfWeek) const {
  return daysUpTo(previousDay(firstDayOfWeek), lastDay().dayOfWeek({}));
}

std::string YYYYMM::localizedTitle(const Locale& locale) const {
  const auto& names = OxDateTimeCache::formatters(locale).symbols.monthSymbols();
  return m >= 1 && m <= 12 ? names[static_cast<std::size_t>(m - 1)] : debugDescription();
}

std::string YYYYMM::localizedTitleWithYear(const Locale& locale) const {
  return OxDateTimeCache::formatters(locale).titleWithYear.string(noonOfFirst(*this));
}

std::string YYYYMM::localizedShortTitleWithYear(const Locale& locale) const {
  return OxDateTimeCache::formatters(locale).shortTitleWithYear.string(noonOfFirst(*this));
}

std::string YYYYMM::localizedYear(const Locale& locale) const {
  return OxDateTimeCache::formatters(locale).localizedYear.string(noonOfFirst(*this));
}

void YYYYMM::encode(Encoder& to) const {
  to.integer(intValue());
}

YYYYMM YYYYMM::decode(const Decoder& from) {
  if (const auto month = fromRawValue(from.integer())) return *month;
  throw from.dataCorrupted("Unable to create YYYYMM");
}

}  // namespace velloro
