#pragma once

#include "Foundation/Formatting/NSDateFormatter.h"
#include "Foundation/Text/Locale.h"
#include "OxKit/Platform.h"

namespace velloro {

/// What is dear to make and the same for every caller: the formatters of calendar texts, made once
/// for each locale at first use and kept for the life of the process. Safe from any thread.
///
/// Days, months and instants are not kept here: counting them takes a few nanoseconds, and even by
/// way of the calendar's instants about as long as a look-up (benchmark `next_day_by_calendar`).
class OxDateTimeCache {
 public:
  struct Formatters {
    NSDateFormatter titleWithYear;       ///< "March 2024"
    NSDateFormatter shortTitleWithYear;  ///< "Mar 2024"
    NSDateFormatter localizedYear;       ///< "2024"
    NSDateFormatter symbols;             ///< Read for the names of months and weekdays.
  };

  /// Those of a locale, which write the instants of Greenwich mean time.
  [[nodiscard]] static const Formatters& formatters(const Locale& locale);
};

}  // namespace velloro
