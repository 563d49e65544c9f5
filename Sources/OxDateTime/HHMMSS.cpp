#include "OxDateTime/HHMMSS.h"

#include "Foundation/Coding/Coding.h"
#include "Foundation/Text/String.h"
#include "OxDateTime/ThreadCalendar.h"
#include "OxDateTime/YYYYMMDD.h"

#include <algorithm>
#include <cmath>
#include <numeric>

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

/// A time's instant on each calendar day. It is made anew for each, since stepping the instant
/// would carry a time that one day's clock change moved into all the days behind it. A time that no
/// dial shows counts as the one to which it wraps.
class DailyInstants {
 public:
  DailyInstants(const HHMMSS& time, TimeZone zone)
      : time_(fromSeconds(floorModulo(time.intValue(), secondsPerDay))), calendar_(zone) {}

  [[nodiscard]] Date on(YYYYMMDD day) const {
    return day.dateAt(HHMMSS::midnight, time_, calendar_.timeZone());
  }
  [[nodiscard]] YYYYMMDD next(YYYYMMDD day) const { return day.addUsingCalendar(calendar_, 1); }

 private:
  HHMMSS time_;
  Calendar calendar_;
};

}  // namespace

std::optional<HHMMSS> HHMMSS::fromRawValue(std::int64_t secondsSinceMidnight) {
  if (secondsSinceMidnight < 0 || secondsSinceMidnight >= secondsPerDay) return std::nullopt;
  return fromSeconds(secondsSinceMidnight);
}

HHMMSS HHMMSS::fromDate(Date date, TimeZone timeZone) {
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
  // A time that was read from its fields, or a span, can be any number.
  if (canWrap) {
    return fromRawValue(
        (floorModulo(intValue(), secondsPerDay) + floorModulo(span.intValue(), secondsPerDay)) %
        secondsPerDay);
  }
  std::int64_t sum = 0;
  if (__builtin_add_overflow(intValue(), span.intValue(), &sum)) return std::nullopt;
  return fromRawValue(sum);
}

std::optional<HHMMSS> HHMMSS::add(TimeInterval seconds, bool canWrap) const {
  return add(HHMMSS{.s = wholeSeconds(seconds)}, canWrap);
}

bool HHMMSS::isWithin(double hours, const HHMMSS& of, bool inclusive) const {
  const double difference =
      std::abs(static_cast<double>(intValue()) - static_cast<double>(of.intValue()));
  return inclusive ? difference <= hours * 3600 : difference < hours * 3600;
}

HHMMSS HHMMSS::roundToNearestInterval(TimeInterval duration) const {
  const std::int64_t interval = wholeSeconds(duration);
  if (interval < 1) return *this;
  const std::int64_t remainder = intValue() % interval;
  const std::int64_t lower = intValue() - remainder;
  const bool isDown =
      remainder == 0 || remainder < interval / 2 || lower >= secondsPerDay - interval;
  return fromSeconds(isDown ? lower : lower + interval);
}

Date HHMMSS::nextOccurrence(Date from, TimeZone timeZone) const {
  const DailyInstants instants(*this, timeZone);
  const YYYYMMDD day = YYYYMMDD::fromDate(midnight, from, timeZone);
  const Date today = instants.on(day);
  return today < from ? instants.on(instants.next(day)) : today;
}

std::vector<Date> HHMMSS::occurrences(Date from, Date to, TimeZone timeZone) const {
  const DailyInstants instants(*this, timeZone);
  const Date end = std::min(to, Date::distantFuture());
  std::vector<Date> all;
  YYYYMMDD day = YYYYMMDD::fromDate(midnight, from, timeZone);
  for (Date date = instants.on(day); date < end; date = instants.on(day)) {
    if (date >= from) all.push_back(date);
    day = instants.next(day);
  }
  return all;
}

std::vector<HHMMSS> sortedAscending(std::vector<HHMMSS> times) {
  std::ranges::sort(times);
  return times;
}

std::optional<HHMMSS> median(std::span<const HHMMSS> times) {
  if (times.empty()) return std::nullopt;
  const std::vector<HHMMSS> sorted = sortedAscending({times.begin(), times.end()});
  const std::size_t middle = sorted.size() / 2;
  if (sorted.size() % 2 == 1) return sorted[middle];
  return fromSeconds(std::midpoint(sorted[middle - 1].intValue(), sorted[middle].intValue()));
}

}  // namespace velloro
