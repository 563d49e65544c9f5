#include "Foundation/Text/NSBundle.h"

#include "Foundation/Process/Environment.h"

namespace platform {
namespace {

const LocalizedStrings& strings() {
  return LocalizedStrings::inFolder(Environment::current().directories().resources);
}

}  // namespace

std::string NSBundle::identifier() const {
  return Environment::current().bundle().identifier;
}

std::map<std::string, std::string> NSBundle::infoDictionary() const {
  const BundleInfo& bundle = Environment::current().bundle();
  return {{"CFBundleIdentifier", bundle.identifier},
          {"CFBundleShortVersionString", bundle.shortVersion},
          {"CFBundleVersion", bundle.version}};
}

std::vector<std::string> NSBundle::localizations() const {
  return strings().localizations();
}

std::string NSBundle::preferredLanguage(const Locale& locale) const {
  return strings().preferredLanguage(locale);
}

std::string NSBundle::localizedString(std::string_view key,
                                      const std::vector<LocalizedArgument>& arguments,
                                      const Locale& locale) const {
  return strings().text(key, arguments, locale);
}

}  // namespace platform
