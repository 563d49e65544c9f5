#include "OxDateTime/HHMMSS.h"

#include "Foundation/Coding.h"
#include "Foundation/String.h"
#include "OxDateTime/ThreadCalendar.h"
#include "OxDateTime/YYYYMMDD.h"

#include <algorithm>
#include <cmath>

namespace velloro {
namespace {

constexpr std::int64_t secondsPerDay = 86400;

HHMMSS fromSeconds(std::int64_t seconds) {
  return {.h = seconds / 3600, .m = seconds / 60 % 60, .s = seconds % 60};
}

/// The seconds without their fraction; more than a few centuries counts as just that.
std::int64_t wholeSeconds(TimeInterval seconds) {
  if (std::isnan(seconds)) return 0;
  return static_cast<std::int64_t>(std::clamp(seconds, -1e10, 1e10));
}

}  // namespace

std::optional<HHMMSS> HHMMSS::fromRawValue(std::int64_t secondsSinceMidnight) {
  if (secondsSinceMidnight < 0 || secondsSinceMidnight >= secondsPerDay) return std::nullopt;
  return fromSeconds(secondsSinceMidnight);
}

HHMMSS HHMMSS::fromDate(Date date, std::optional<TimeZone> timeZone) {
  return fromSeconds(currentThreadCalendar(timeZone).clockTime(date).secondOfDay);
}

std::string HHMMSS::debugDescription() const {
  return stringWithFormat("%02lld:%02lld:%02lld", static_cast<long long>(h),
                          static_cast<long long>(m), static_cast<long long>(s));
}

void HHMMSS::encode(Encoder& to) const {
  to.integer(intValue());
}

HHMMSS HHMMSS::decode(const Decoder& from) {
  const auto fromInteger = [&] {
    if (const auto time = fromRawValue(from.integer())) return *time;
    throw from.dataCorrupted("Unable to create HHMMSS");
  };
  const auto fromFields = [&] {
    return HHMMSS{.h = from.decode<std::int64_t>("h"),
                  .m = from.decode<std::int64_t>("m"),
                  .s = from.decode<std::int64_t>("s")};
  };
  return from.firstOf(fromInteger, fromFields);
}

DateComponents HHMMSS::dateComponents() const {
  return {.hour = h, .minute = m, .second = s};
}

std::optional<HHMMSS> HHMMSS::add(const HHMMSS& span, bool canWrap) const {
  const std::int64_t sum = intValue() + span.intValue();
  return fromRawValue(canWrap ? floorModulo(sum, secondsPerDay) : sum);
}

std::optional<HHMMSS> HHMMSS::add(TimeInterval seconds, bool canWrap) const {
  return add(HHMMSS{.s = wholeSeconds(seconds)}, canWrap);
}

bool HHMMSS::isWithin(double hours, const HHMMSS& of, bool inclusive) const {
  const auto difference = static_cast<double>(std::abs(intValue() - of.intValue()));
  return inclusive ? difference <= hours * 3600 : difference < hours * 3600;
}

HHMMSS HHMMSS::roundToNearestInterval(TimeInterval duration) const {
  const std::int64_t interval = wholeSeconds(duration);
  if (interval < 1) return *this;
  const std::int64_t remainder = intValue() % interval;
  const std::int64_t lower = intValue() - remainder;
  const std::int64_t upper = lower + interval;
  const bool isDown = remainder == 0 || remainder < interval / 2 || upper >= secondsPerDay;
  return fromSeconds(isDown ? lower : upper);
}

Date HHMMSS::nextOccurrence(Date from, std::optional<TimeZone> timeZone) const {
  const Calendar& calendar = currentThreadCalendar(timeZone);
  const YYYYMMDD day = YYYYMMDD::fromDate(midnight, from, timeZone);
  std::optional<Date> occurrence = day.dateAt(midnight, *this, timeZone);
  while (*occurrence < from) {
    const auto next = calendar.dateByAddingDays(1, *occurrence);
    if (!next) break;
    occurrence = next;
  }
  return *occurrence;
}

std::vector<Date> HHMMSS::occurrences(Date from, Date to, std::optional<TimeZone> timeZone) const {
  std::vector<Date> all;
  Date occurrence = nextOccurrence(from, timeZone);
  YYYYMMDD day = YYYYMMDD::fromDate(midnight, occurrence, timeZone);
  // Each day's instant is made anew from the day: stepping the instant itself would carry a time
  // that one day's clock change moved into all the days behind it.
  while (occurrence < to) {
    all.push_back(occurrence);
    day = day.addUsingCalendar(currentThreadCalendar(timeZone), 1);
    occurrence = day.dateAt(midnight, *this, timeZone);
  }
  return all;
}

std::optional<HHMMSS> median(std::span<const HHMMSS> times) {
  if (times.empty()) return std::nullopt;
  std::vector<HHMMSS> sorted(times.begin(), times.end());
  std::ranges::sort(sorted);
  const std::size_t middle = sorted.size() / 2;
  if (sorted.size() % 2 == 1) return sorted[middle];
  return fromSeconds((sorted[middle - 1].intValue() + sorted[middle].intValue()) / 2);
}

}  // namespace velloro
