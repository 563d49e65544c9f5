#include "Agent/QuietTime.h"

#include "Foundation/Files/NSUserDefaults.h"
#include "OxDateTime/YYYYMMDD.h"

#include <algorithm>

namespace velloro {

Date QuietHours::end(Date now, TimeZone zone) const {
  const YYYYMMDD today = YYYYMMDD::today(HHMMSS::midnight, zone, now);
  const Date end = today.dateAt(HHMMSS::midnight, to, zone);
  return end > now ? end : today.nextDay(zone).dateAt(HHMMSS::midnight, to, zone);
}

std::optional<Date> AgentPause::end(Date now) {
  const auto text = NSUserDefaults::standardUserDefaults().stringForKey(key);
  const auto end = text ? Date::fromISO8601(*text) : std::nullopt;
  return end && *end > now ? end : std::nullopt;
}

void AgentPause::begin(Date end) {
  NSUserDefaults::standardUserDefaults().setObject(end.iso8601(), key);
}

bool AgentPause::remove(Date now) {
  const bool wasThere = end(now).has_value();
  NSUserDefaults::standardUserDefaults().removeObjectForKey(key);
  return wasThere;
}

std::optional<Date> quietUntil(const std::optional<QuietHours>& hours, Date now, TimeZone zone) {
  std::optional<Date> until = AgentPause::end(now);
  if (hours && hours->contains(HHMMSS::fromDate(now, zone))) {
    until = std::max(until.value_or(now), hours->end(now, zone));
  }
  return until;
}

}  // namespace velloro
