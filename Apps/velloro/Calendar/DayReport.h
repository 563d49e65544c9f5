#pragma once

#include "Foundation/Coding/Coding.h"
#include "OxDateTime/YYYYMMDD.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velloro {

/// Everything about one logical day, as `velloro day` prints it.
struct DayReport {
  struct Remaining {
    std::int64_t week = 0;
    std::int64_t fortnight = 0;
    std::int64_t month = 0;
    std::int64_t year = 0;

    static constexpr auto codingKeys =
        keys(key("week", &Remaining::week), key("fortnight", &Remaining::fortnight),
             key("month", &Remaining::month), key("year", &Remaining::year));
  };

  /// Written in ISO 8601 whatever the year; a date's own form ends with the year 9999.
  struct Instant {
    Date date;
    void encode(Encoder& to) const { to.text(date.iso8601()); }
  };

  YYYYMMDD day;
  DayOfWeek dayOfWeek = DayOfWeek::sunday;
  std::string weekday;         ///< The same in words: "sunday".
  Instant start;               ///< At which the day begins …
  Instant end;                 ///< … and the next one does.
  std::vector<YYYYMMDD> week;  ///< First and last day, as in the three that follow.
  std::vector<YYYYMMDD> fortnight;
  std::vector<YYYYMMDD> month;
  std::vector<YYYYMMDD> year;
  Remaining daysRemaining;  ///< The day itself not counted.

  static constexpr auto codingKeys =
      keys(key("day", &DayReport::day), key("dayOfWeek", &DayReport::dayOfWeek),
           key("weekday", &DayReport::weekday), key("start", &DayReport::start),
           key("end", &DayReport::end), key("week", &DayReport::week),
           key("fortnight", &DayReport::fortnight), key("month", &DayReport::month),
           key("year", &DayReport::year), key("daysRemaining", &DayReport::daysRemaining));

  [[nodiscard]] static DayReport of(YYYYMMDD day, HHMMSS startOfDay, DayOfWeek firstDayOfWeek,
                                    TimeZone timeZone);

  [[nodiscard]] std::string json() const;
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
