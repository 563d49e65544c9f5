#pragma once

#include "Foundation/Text/Locale.h"
#include "Foundation/Text/LocalizedStrings.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The program with its resources, as the installed `Environment` names them: a change of its
/// identity, resources folder or locale shows at the next call.
///
///     NSBundle::main().localizedString("distance.steps", {1200});  // "1,200 steps"
///     NSBundle::main().infoDictionary().at("CFBundleVersion");     // "1"
class NSBundle {
 public:
  [[nodiscard]] static NSBundle main() { return {}; }

  [[nodiscard]] std::string identifier() const;
  /// "CFBundleIdentifier", "CFBundleShortVersionString", "CFBundleVersion".
  [[nodiscard]] std::map<std::string, std::string> infoDictionary() const;

  /// The languages that have a string table.
  [[nodiscard]] std::vector<std::string> localizations() const;
  /// The one of them that serves the locale's reader best, else "en".
  [[nodiscard]] std::string preferredLanguage(const Locale& locale = Locale::current()) const;

  /// The text for a key, as `LocalizedStrings` has it.
  [[nodiscard]] std::string localizedString(std::string_view key,
                                            const std::vector<LocalizedArgument>& arguments = {},
                                            const Locale& locale = Locale::current()) const;

 private:
  NSBundle() = default;
};

}  // namespace platform
