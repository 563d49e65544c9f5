#include "OxDateTime/StandIns.h"

#include "Foundation/Coding/Decoder.h"
#include "Foundation/Text/Locale.h"

namespace velloro {

DayOfWeek firstDayOfWeekStandIn(const Decoder& from) {
  return localesFirstDayOfWeek(from.locale());
}

TimeZone timeZoneStandIn(const Decoder& from) {
  return from.timeZone();
}

}  // namespace velloro
