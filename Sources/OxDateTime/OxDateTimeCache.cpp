#include "OxDateTime/OxDateTimeCache.h"

#include "OxKit/KeptForLocale.h"

namespace velloro {
namespace {

OxDateTimeCache::Formatters made(const Locale& locale) {
  const auto fromTemplate = [&](const char* fields) {
    return NSDateFormatter::withTemplate(fields, {.locale = locale});
  };
  return {.titleWithYear = fromTemplate("MMMM yyyy"),
          .shortTitleWithYear = fromTemplate("MMM yyyy"),
          .localizedYear = fromTemplate("yyyy"),
          .symbols = NSDateFormatter::withStyles({}, {.locale = locale})};
}

}  // namespace

const OxDateTimeCache::Formatters& OxDateTimeCache::formatters() {
  return keptForLocale<made>();
}

}  // namespace velloro
