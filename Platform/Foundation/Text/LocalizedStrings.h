#pragma once

#include "Foundation/Text/Locale.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace platform {

/// A value for a placeholder of a localized text.
using LocalizedArgument = std::variant<std::string, std::int64_t, double>;

/// The texts of a resources folder: a table `<language>/Localizable.json` for each language, a JSON
/// object of key and text. A text is an ICU message with numbered placeholders; "#" is the number
/// of a plural, an apostrophe before a brace makes it a plain brace:
///
/// `{"distance.steps": "{0, plural, one {# step} other {# steps}}"}`
///
///     const LocalizedStrings texts(Environment::current().directories().resources);
///     texts.text("distance.steps", {1200}, Locale::fromIdentifier("en_US"));  // "1,200 steps"
///
/// Tables are read and messages parsed at first use, and kept: changed files show in the next
/// process. A key without a text in the language takes the English text, with English plurals and
/// numbers, and without that shows itself. That, and what is wrong with a file or a message, is
/// reported to the environment once. Safe from any thread.
class LocalizedStrings {
 public:
  /// Kept for the life of the process.
  [[nodiscard]] static const LocalizedStrings& inFolder(const std::filesystem::path& resources);

  explicit LocalizedStrings(std::filesystem::path resources);
  ~LocalizedStrings();
  LocalizedStrings(const LocalizedStrings&) = delete;
  LocalizedStrings& operator=(const LocalizedStrings&) = delete;

  /// The languages that have a table, as their folders are named, sorted.
  [[nodiscard]] const std::vector<std::string>& localizations() const;
  /// The one of them that serves a locale's reader best ("de" for "de_AT"), else "en".
  [[nodiscard]] std::string preferredLanguage(const Locale& locale) const;
  /// The keys of a language's table, sorted.
  [[nodiscard]] std::vector<std::string> keys(std::string_view language) const;

  /// The text for a key in the locale's language. A placeholder without an argument shows as "{0}";
  /// a text that is no message, or can't take the arguments, shows as it stands.
  [[nodiscard]] std::string text(std::string_view key,
                                 const std::vector<LocalizedArgument>& arguments,
                                 const Locale& locale) const;

 private:
  class Implementation;

  std::unique_ptr<const Implementation> implementation_;
};

}  // namespace platform
