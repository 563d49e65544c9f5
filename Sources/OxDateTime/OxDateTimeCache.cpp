#include "OxDateTime/OxDateTimeCache.h"

#include "OxKit/KeptForLocale.h"

namespace velloro {
namespace {

OxDateTimeCache::Formatters made(const Locale& locale) {
  const auto fromTemplate = [&](const char* fields) {
    return NSDateFormatter::withTemplate(fields, {.locale = locale, .timeZone = TimeZone::gmt()});
  };
  return {.titleWithYear = fromTemplate("MMMM yyyy"),
          .shortTitleWithYear = fromTemplate("MMM yyyy"),
          .localizedYear = fromTemplate("yyyy"),
          .symbols = NSDateFormatter::withStyles({}, {.locale = locale})};
}

}  // namespace

const OxDateTimeCache::Formatters& OxDateTimeCache::formatters(const Locale& locale) {
  return keptForLocale<made>(locale);
}

}  // namespace velloro
