#pragma once

// What this folder's sources share of ICU. No header that others include may include this one.

#include "Foundation/Text/Locale.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/brkiter.h>
#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/stringpiece.h>
#include <unicode/unistr.h>

namespace platform {

/// A value made at first use, once, whichever thread comes first. A failure to make it is thrown,
/// and the next use tries again.
template <typename T>
class Lazy {
 public:
  template <typename Make>
  const T& get(Make make) const {
    std::call_once(once_, [&] { value_.emplace(make()); });
    return *value_;
  }

 private:
  mutable std::once_flag once_;
  mutable std::optional<T> value_;
};

/// Throws an `Error` of the domain "ICU" for a failure. `attempt` says what was tried: "cannot
/// format a date".
void checkIcu(UErrorCode status, std::string_view attempt);

inline icu::StringPiece icuPiece(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

inline icu::UnicodeString icuText(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icuPiece(text));
}

inline std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  return text.toUTF8String(result);
}

/// What a locale's handle points to. Each piece is loaded at first use and kept: loading one takes
/// ICU from a tenth of a millisecond to several.
struct Locale::Data {
  struct NumberSigns {
    std::string decimalSeparator, percentSign, plusSign, minusSign;
  };
  struct DateSymbols {
    std::vector<std::string> months, standaloneMonths, shortMonths;
    std::vector<std::string> weekdays, shortWeekdays, veryShortWeekdays;  ///< Sunday first
  };

  explicit Data(const icu::Locale& canonical);

  [[nodiscard]] const NumberSigns& numberSigns() const;
  [[nodiscard]] const DateSymbols& dateSymbols() const;
  [[nodiscard]] int firstWeekday() const;
  [[nodiscard]] bool uses24HourTime() const;
  /// The pattern in which the locale writes the fields of a template.
  [[nodiscard]] icu::UnicodeString bestPattern(const icu::UnicodeString& fields) const;
  [[nodiscard]] std::string capitalized(std::string_view text) const;

  std::string identifier;
  icu::Locale icu;  ///< bound to the Gregorian calendar

 private:
  [[nodiscard]] icu::DateTimePatternGenerator& patterns() const;
  [[nodiscard]] icu::BreakIterator& words() const;

  Lazy<NumberSigns> numberSigns_;
  Lazy<DateSymbols> dateSymbols_;
  Lazy<int> firstWeekday_;
  Lazy<bool> uses24HourTime_;
  mutable std::mutex patternsMutex_;  // a generator is changed by being asked
  Lazy<std::unique_ptr<icu::DateTimePatternGenerator>> patterns_;
  mutable std::mutex wordsMutex_;  // so is a word iterator
  Lazy<std::unique_ptr<icu::BreakIterator>> words_;
};

}  // namespace platform
