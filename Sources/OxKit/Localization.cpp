#include "OxKit/Localization.h"

#include "Foundation/Formatting/NSDateFormatter.h"
#include "Foundation/Text/NSBundle.h"

#include <algorithm>
#include <cassert>

namespace velloro {
namespace {

[[maybe_unused]] bool fits(char kind, const LocalizedArgument& argument) {
  return kind == 't' || !std::holds_alternative<std::string>(argument);
}

}  // namespace

std::string localized(std::string_view key, const std::vector<LocalizedArgument>& arguments) {
  return NSBundle::main().localizedString(key, arguments);
}

std::string localized(const LocalizedKey& key, const std::vector<LocalizedArgument>& arguments) {
  assert(std::ranges::equal(key.arguments, arguments, fits) && "not what the key's text takes");
  return localized(key.key, arguments);
}

bool uses24HourTime(const NSDateFormatter& formatter) {
  return formatter.locale().uses24HourTime();
}

}  // namespace velloro
