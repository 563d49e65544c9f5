#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The writing conventions of a language in a place: case rules, signs, week and clock. A handle of
/// one pointer to data that lives for the process; two locales are equal when their identifiers
/// are. All texts are UTF-8.
///
///     const Locale german = Locale::fromIdentifier("de_DE");
///     german.uppercased("straße");  // "STRASSE"
///     german.decimalSeparator();    // ","
///     german.firstWeekday();        // 2, Monday
///
/// The calendar is the Gregorian one in every locale.
class Locale {
 public:
  /// "de", "de_DE", "zh_Hant_TW"; "-" may be used instead of "_". What is not specific to the place
  /// is taken from the language, and what is not known of the language, from English.
  [[nodiscard]] static Locale fromIdentifier(std::string_view identifier);
  /// The user's, as the installed `Environment` has it.
  [[nodiscard]] static Locale current();
  /// "en_US_POSIX", for texts that machines read: it stays as it is.
  [[nodiscard]] static Locale posix();

  /// In the canonical spelling: "de_DE" for "de-de".
  [[nodiscard]] const std::string& identifier() const;
  /// "de" of "de_DE"; "en" where the language is unknown.
  [[nodiscard]] std::string languageCode() const;

  /// The day a week starts on: 1 is Sunday, 7 is Saturday.
  [[nodiscard]] int firstWeekday() const;
  /// Whether hours are written 0 to 23, rather than 1 to 12 with a part of the day.
  [[nodiscard]] bool uses24HourTime() const;
  [[nodiscard]] bool isRightToLeft() const;

  /// These can hold an invisible mark beside the sign where the script runs from right to left.
  [[nodiscard]] const std::string& decimalSeparator() const;
  [[nodiscard]] const std::string& percentSign() const;
  [[nodiscard]] const std::string& plusSign() const;
  [[nodiscard]] const std::string& minusSign() const;

  [[nodiscard]] std::string uppercased(std::string_view text) const;
  [[nodiscard]] std::string lowercased(std::string_view text) const;
  /// Each word with its first letter in upper case and the rest in lower case: "IJsland" for Dutch
  /// "ijsland".
  [[nodiscard]] std::string capitalized(std::string_view text) const;

  bool operator==(const Locale&) const = default;
  [[nodiscard]] std::size_t hashValue() const { return std::hash<const void*>{}(data_); }

  struct Data;
  /// For the sources of this folder.
  [[nodiscard]] const Data& data() const { return *data_; }

 private:
  explicit Locale(const Data* data) : data_(data) {}

  const Data* data_;
};

/// The Unicode name of a character, in capitals: "GRINNING FACE" for U+1F600. Absent for a
/// character that has none, as control characters and unassigned ones.
[[nodiscard]] std::optional<std::string> unicodeName(char32_t character);

}  // namespace platform

template <>
struct std::hash<platform::Locale> {
  std::size_t operator()(const platform::Locale& locale) const noexcept {
    return locale.hashValue();
  }
};
