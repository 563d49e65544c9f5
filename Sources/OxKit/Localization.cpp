#include "OxKit/Localization.h"

#include "Foundation/NSBundle.h"
#include "Foundation/NSDateFormatter.h"

namespace velloro {

std::string localized(std::string_view key, const std::vector<LocalizedArgument>& arguments) {
  return NSBundle::main().localizedString(key, arguments);
}

bool uses24HourTime(const NSDateFormatter& formatter) {
  return formatter.locale().uses24HourTime();
}

}  // namespace velloro
