// Day arithmetic and the logical day of an instant, beside ICU's calendar and cctz.

#include "Days.h"
#include "Foundation/Values/NSCache.h"
#include "OxDateTime/YYYYMMDD.h"

#include <memory>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>
#include <cctz/civil_time.h>
#include <cctz/time_zone.h>
#include <unicode/gregocal.h>

namespace velloro {
namespace {

constexpr const char* zoneName = "Europe/Berlin";
constexpr std::size_t count = 4096;
constexpr HHMMSS three{.h = 3};

/// Instants of 2024, in order or at random.
std::vector<Date> instants(bool inOrder) {
  std::mt19937 generator(7);
  std::uniform_real_distribution<double> anywhere(0, 1);
  const double start = 1704067200;
  const double year = 366.0 * 86400;
  std::vector<Date> list;
  for (std::size_t i = 0; i < count; ++i) {
    const double place = inOrder ? static_cast<double>(i) / count : anywhere(generator);
    list.push_back(Date::since1970(start + place * year));
  }
  return list;
}

std::unique_ptr<icu::GregorianCalendar> icuCalendar(const char* zone) {
  UErrorCode status = U_ZERO_ERROR;
  auto calendar = std::make_unique<icu::GregorianCalendar>(icu::TimeZone::createTimeZone(zone),
                                                           icu::Locale::getUS(), status);
  calendar->setGregorianChange(-1e18, status);
  return calendar;
}

void setNoon(icu::GregorianCalendar& calendar, const YYYYMMDD& day) {
  calendar.clear();
  calendar.set(static_cast<int>(day.y), static_cast<int>(day.m) - 1, static_cast<int>(day.d), 12, 0,
               0);
}

YYYYMMDD read(const icu::GregorianCalendar& calendar) {
  UErrorCode status = U_ZERO_ERROR;
  return {.y = calendar.get(UCAL_YEAR, status),
          .m = calendar.get(UCAL_MONTH, status) + 1,
          .d = calendar.get(UCAL_DATE, status)};
}

cctz::civil_day civil(const YYYYMMDD& day) {
  return cctz::civil_day(day.y, day.m, day.d);
}

YYYYMMDD fromCivil(const cctz::civil_day& day) {
  return {.y = day.year(), .m = day.month(), .d = day.day()};
}

void registerDayArithmetic() {
  using benchmark::RegisterBenchmark;
  using benchmark::State;
  RegisterBenchmark("next_day/velloro", [](State& state) {
    overAll(state, days(), [](const YYYYMMDD& day, const auto&) { return day.nextDay({}); });
  });
  RegisterBenchmark("next_day/cctz", [](State& state) {
    overAll(state, days(),
            [](const YYYYMMDD& day, const auto&) { return fromCivil(civil(day) + 1); });
  });
  RegisterBenchmark("next_day/icu", [](State& state) {
    const auto calendar = icuCalendar(zoneName);
    overAll(state, days(), [&](const YYYYMMDD& day, const auto&) {
      UErrorCode status = U_ZERO_ERROR;
      setNoon(*calendar, day);
      calendar->add(UCAL_DATE, 1, status);
      return read(*calendar);
    });
  });

  RegisterBenchmark("weekday/velloro", [](State& state) {
    overAll(state, days(), [](const YYYYMMDD& day, const auto&) { return day.dayOfWeek({}); });
  });
  RegisterBenchmark("weekday/cctz", [](State& state) {
    overAll(state, days(),
            [](const YYYYMMDD& day, const auto&) { return get_weekday(civil(day)); });
  });
  RegisterBenchmark("weekday/icu", [](State& state) {
    const auto calendar = icuCalendar(zoneName);
    overAll(state, days(), [&](const YYYYMMDD& day, const auto&) {
      UErrorCode status = U_ZERO_ERROR;
      setNoon(*calendar, day);
      return calendar->get(UCAL_DAY_OF_WEEK, status);
    });
  });

  RegisterBenchmark("distance/velloro", [](State& state) {
    overAll(state, days(), [](const YYYYMMDD& a, const YYYYMMDD& b) { return a.distance(b); });
  });
  RegisterBenchmark("distance/cctz", [](State& state) {
    overAll(state, days(),
            [](const YYYYMMDD& a, const YYYYMMDD& b) { return civil(b) - civil(a); });
  });
  RegisterBenchmark("distance/icu", [](State& state) {
    const auto calendar = icuCalendar(zoneName);
    overAll(state, days(), [&](const YYYYMMDD& a, const YYYYMMDD& b) {
      UErrorCode status = U_ZERO_ERROR;
      setNoon(*calendar, b);
      const UDate to = calendar->getTime(status);
      setNoon(*calendar, a);
      return calendar->fieldDifference(to, UCAL_DATE, status);
    });
  });
}

void registerLogicalDay(const char* order, bool inOrder) {
  using benchmark::RegisterBenchmark;
  using benchmark::State;
  const std::string group = std::string("logical_day_") + order + "/";
  RegisterBenchmark((group + "velloro").c_str(), [=](State& state) {
    const TimeZone zone = TimeZone::fromIdentifier(zoneName).value();
    overAll(state, instants(inOrder),
            [&](Date instant, Date) { return YYYYMMDD::fromDate(three, instant, zone); });
  });
  RegisterBenchmark((group + "cctz").c_str(), [=](State& state) {
    cctz::time_zone zone;
    cctz::load_time_zone(zoneName, &zone);
    overAll(state, instants(inOrder), [&](Date instant, Date) {
      const auto point = cctz::time_point<cctz::seconds>(cctz::seconds(instant.secondsSince1970()));
      const cctz::civil_second clock = cctz::convert(point, zone);
      const auto second = clock.hour() * 3600 + clock.minute() * 60 + clock.second();
      return fromCivil(cctz::civil_day(clock) - (second < three.intValue() ? 1 : 0));
    });
  });
  RegisterBenchmark((group + "icu").c_str(), [=](State& state) {
    const auto calendar = icuCalendar(zoneName);
    overAll(state, instants(inOrder), [&](Date instant, Date) {
      UErrorCode status = U_ZERO_ERROR;
      calendar->setTime(instant.timeIntervalSince1970() * 1000, status);
      if (calendar->get(UCAL_MILLISECONDS_IN_DAY, status) / 1000 < three.intValue()) {
        calendar->add(UCAL_DATE, -1, status);
      }
      return read(*calendar);
    });
  });
}

/// The reverse way: the instant of a time within a logical day.
void registerDateAt() {
  using benchmark::RegisterBenchmark;
  using benchmark::State;
  RegisterBenchmark("date_at/velloro", [](State& state) {
    const TimeZone zone = TimeZone::fromIdentifier(zoneName).value();
    overAll(state, days(), [&](const YYYYMMDD& day, const auto&) {
      return day.dateAt(three, HHMMSS{.h = 2}, zone);
    });
  });
  RegisterBenchmark("date_at/cctz", [](State& state) {
    cctz::time_zone zone;
    cctz::load_time_zone(zoneName, &zone);
    overAll(state, days(), [&](const YYYYMMDD& day, const auto&) {
      return cctz::convert(cctz::civil_second(day.y, day.m, day.d + 1, 2, 0, 0), zone);
    });
  });
}

/// Why no day is memoised: on the calendar's road, the slow one, counting takes less than looking
/// up.
void registerCalendarRoad() {
  using benchmark::RegisterBenchmark;
  using benchmark::State;
  RegisterBenchmark("next_day_by_calendar/velloro", [](State& state) {
    overAll(state, days(),
            [calendar = Calendar(TimeZone::current())](const YYYYMMDD& day, const auto&) {
              return day.nextDayUsingCalendar(calendar);
            });
  });
  RegisterBenchmark("next_day_by_calendar/memo", [](State& state) {
    NSCache<std::int64_t, YYYYMMDD> memo;
    for (const YYYYMMDD& day : days()) memo.setObject(day.intValue(), day.nextDay({}));
    overAll(state, days(),
            [&](const YYYYMMDD& day, const auto&) { return *memo.object(day.intValue()); });
  });
}

[[maybe_unused]] const bool registered = [] {
  registerDayArithmetic();
  registerLogicalDay("in_order", true);
  registerLogicalDay("at_random", false);
  registerDateAt();
  registerCalendarRoad();
  return true;
}();

}  // namespace
}  // namespace velloro
