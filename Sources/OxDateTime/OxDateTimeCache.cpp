#include "OxDateTime/OxDateTimeCache.h"

#include <mutex>
#include <unordered_map>

namespace velloro {
namespace {

OxDateTimeCache::Formatters made(Locale locale) {
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
  static std::mutex mutex;
  static auto& byLocale = *new std::unordered_map<Locale, Formatters>;
  const Locale locale = Locale::current();
  const std::scoped_lock lock(mutex);
  if (const auto found = byLocale.find(locale); found != byLocale.end()) return found->second;
  return byLocale.emplace(locale, made(locale)).first->second;
}

}  // namespace velloro
