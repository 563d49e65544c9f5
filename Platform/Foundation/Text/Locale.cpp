#include "Foundation/Text/Locale.h"

#include "Foundation/Process/Environment.h"
#include "Foundation/Text/IcuSupport.h"
#include "Foundation/Text/String.h"
#include "Foundation/Values/Error.h"

#include <array>
#include <cctype>
#include <map>

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/dcfmtsym.h>
#include <unicode/dtfmtsym.h>
#include <unicode/gregocal.h>
#include <unicode/resbund.h>
#include <unicode/uchar.h>

namespace platform {
namespace {

struct Registry {
  std::mutex mutex;
  std::map<std::string, const Locale::Data*, std::less<>> data;  ///< by every spelling met so far

  // Where it has no data for a language, ICU takes those of the one that the process was started
  // in. What comes from outside is the environment's to say: the same locale always writes the
  // same.
  Registry() {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale::getEnglish(), status);
    checkIcu(status, "cannot choose a fallback language");
  }
};

/// Locales are never unloaded: a handle must stay good for the life of the process.
Registry& registry() {
  static auto* instance = new Registry;
  return *instance;
}

/// English with the locale's place, where ICU doesn't know the language: it would take English
/// texts all the same, but not the plural rules that go with them.
icu::Locale knownLocale(const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::ResourceBundle bundle(nullptr, locale, status);
  const bool isKnown = *locale.getLanguage() != '\0' && status != U_USING_DEFAULT_WARNING;
  return isKnown ? locale : icu::Locale("en", locale.getCountry());
}

std::vector<std::string> texts(const icu::UnicodeString* symbols, std::int32_t from,
                               std::int32_t count) {
  std::vector<std::string> result;
  for (std::int32_t i = from; i < count; ++i) result.push_back(utf8(symbols[i]));
  return result;
}

template <typename Map>
std::string mapped(std::string_view text, Map map) {
  std::string result;
  icu::StringByteSink<std::string> sink(&result, static_cast<std::int32_t>(text.size()));
  UErrorCode status = U_ZERO_ERROR;
  map(icuPiece(text), sink, status);
  checkIcu(status, "cannot change the case of a text");
  return result;
}

}  // namespace

void checkIcu(UErrorCode status, std::string_view attempt) {
  if (U_SUCCESS(status)) return;
  throw Error("ICU", status, std::string(attempt) + ": " + u_errorName(status));
}

Locale::Data::Data(const icu::Locale& canonical)
    : identifier(canonical.getName()), icu(knownLocale(canonical)) {
  UErrorCode status = U_ZERO_ERROR;
  icu.setKeywordValue("calendar", "gregorian", status);
  checkIcu(status, "cannot use the locale " + inQuotes(identifier));
}

const Locale::Data::NumberSigns& Locale::Data::numberSigns() const {
  return numberSigns_.get([this] {
    using Symbols = icu::DecimalFormatSymbols;
    UErrorCode status = U_ZERO_ERROR;
    const Symbols symbols(icu, status);
    checkIcu(status, "cannot load the number signs of " + inQuotes(identifier));
    const auto sign = [&](auto which) { return utf8(symbols.getConstSymbol(which)); };
    return NumberSigns{.decimalSeparator = sign(Symbols::kDecimalSeparatorSymbol),
                       .percentSign = sign(Symbols::kPercentSymbol),
                       .plusSign = sign(Symbols::kPlusSignSymbol),
                       .minusSign = sign(Symbols::kMinusSignSymbol)};
  });
}

const Locale::Data::DateSymbols& Locale::Data::dateSymbols() const {
  return dateSymbols_.get([this] {
    using Symbols = icu::DateFormatSymbols;
    UErrorCode status = U_ZERO_ERROR;
    const Symbols symbols(icu, status);
    checkIcu(status, "cannot load the calendar names of " + inQuotes(identifier));
    const auto months = [&](auto context, auto width) {
      std::int32_t count = 0;
      const auto* names = symbols.getMonths(count, context, width);
      return texts(names, 0, count);
    };
    const auto weekdays = [&](auto width) {
      std::int32_t count = 0;
      const auto* names = symbols.getWeekdays(count, Symbols::FORMAT, width);
      return texts(names, UCAL_SUNDAY, count);
    };
    return DateSymbols{.months = months(Symbols::FORMAT, Symbols::WIDE),
                       .standaloneMonths = months(Symbols::STANDALONE, Symbols::WIDE),
                       .shortMonths = months(Symbols::FORMAT, Symbols::ABBREVIATED),
                       .weekdays = weekdays(Symbols::WIDE),
                       .shortWeekdays = weekdays(Symbols::ABBREVIATED),
                       .veryShortWeekdays = weekdays(Symbols::NARROW)};
  });
}

int Locale::Data::firstWeekday() const {
  return firstWeekday_.get([this] {
    UErrorCode status = U_ZERO_ERROR;
    const icu::GregorianCalendar calendar(icu, status);
    checkIcu(status, "cannot load the calendar of " + inQuotes(identifier));
    return static_cast<int>(calendar.getFirstDayOfWeek(status));
  });
}

bool Locale::Data::uses24HourTime() const {
  return uses24HourTime_.get([this] {
    const std::scoped_lock lock(patternsMutex_);
    UErrorCode status = U_ZERO_ERROR;
    const UDateFormatHourCycle cycle = patterns().getDefaultHourCycle(status);
    checkIcu(status, "cannot find the hour cycle of " + inQuotes(identifier));
    return cycle == UDAT_HOUR_CYCLE_23 || cycle == UDAT_HOUR_CYCLE_24;
  });
}

icu::UnicodeString Locale::Data::bestPattern(const icu::UnicodeString& fields) const {
  const std::scoped_lock lock(patternsMutex_);
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString pattern = patterns().getBestPattern(fields, status);
  checkIcu(status, "cannot use the date template " + inQuotes(utf8(fields)));
  return pattern;
}

std::string Locale::Data::capitalized(std::string_view text) const {
  const std::scoped_lock lock(wordsMutex_);
  return mapped(text, [this](icu::StringPiece source, icu::ByteSink& sink, UErrorCode& status) {
    icu::CaseMap::utf8ToTitle(icu.getName(), 0, &words(), source, sink, nullptr, status);
  });
}

icu::BreakIterator& Locale::Data::words() const {
  return *words_.get([this] {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> words(icu::BreakIterator::createWordInstance(icu, status));
    checkIcu(status, "cannot load the word limits of " + inQuotes(identifier));
    return words;
  });
}

icu::DateTimePatternGenerator& Locale::Data::patterns() const {
  return *patterns_.get([this] {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(icu, status));
    checkIcu(status, "cannot load the date patterns of " + inQuotes(identifier));
    return generator;
  });
}

namespace {

/// Language, script and place. What the C library's names add to them, and what no identifier can
/// hold, is left out.
std::string plainSpelling(std::string_view identifier) {
  std::string spelling(identifier.substr(0, identifier.find_first_of(".@")));
  std::erase_if(spelling, [](unsigned char c) {
    return c > 0x7F || (!std::isalnum(c) && c != '_' && c != '-');
  });
  return spelling;
}

}  // namespace

Locale Locale::fromIdentifier(std::string_view identifier) {
  Registry& known = registry();
  const std::scoped_lock lock(known.mutex);
  if (const auto found = known.data.find(identifier); found != known.data.end()) {
    return Locale(found->second);
  }
  const icu::Locale canonical = icu::Locale::createCanonical(plainSpelling(identifier).c_str());
  auto same = known.data.find(std::string_view(canonical.getName()));
  const Data* data = same != known.data.end() ? same->second : new Data(canonical);
  known.data.emplace(canonical.getName(), data);
  return Locale(known.data.emplace(identifier, data).first->second);
}

Locale Locale::current() {
  return fromIdentifier(Environment::current().localeIdentifier());
}

Locale Locale::posix() {
  static const Locale locale = fromIdentifier("en_US_POSIX");
  return locale;
}

const std::string& Locale::identifier() const {
  return data_->identifier;
}

std::string Locale::languageCode() const {
  return data_->icu.getLanguage();
}

int Locale::firstWeekday() const {
  return data_->firstWeekday();
}

bool Locale::uses24HourTime() const {
  return data_->uses24HourTime();
}

bool Locale::isRightToLeft() const {
  return data_->icu.isRightToLeft() != 0;
}

const std::string& Locale::decimalSeparator() const {
  return data_->numberSigns().decimalSeparator;
}

const std::string& Locale::percentSign() const {
  return data_->numberSigns().percentSign;
}

const std::string& Locale::plusSign() const {
  return data_->numberSigns().plusSign;
}

const std::string& Locale::minusSign() const {
  return data_->numberSigns().minusSign;
}

std::string Locale::uppercased(std::string_view text) const {
  return mapped(text, [this](icu::StringPiece source, icu::ByteSink& sink, UErrorCode& status) {
    icu::CaseMap::utf8ToUpper(data_->icu.getName(), 0, source, sink, nullptr, status);
  });
}

std::string Locale::lowercased(std::string_view text) const {
  return mapped(text, [this](icu::StringPiece source, icu::ByteSink& sink, UErrorCode& status) {
    icu::CaseMap::utf8ToLower(data_->icu.getName(), 0, source, sink, nullptr, status);
  });
}

std::string Locale::capitalized(std::string_view text) const {
  return data_->capitalized(text);
}

std::optional<std::string> unicodeName(char32_t character) {
  std::array<char, 128> name{};
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length =
      u_charName(static_cast<UChar32>(character), U_UNICODE_CHAR_NAME, name.data(),
                 static_cast<std::int32_t>(name.size()), &status);
  checkIcu(status, "cannot name a character");
  if (length == 0) return std::nullopt;
  return std::string(name.data(), static_cast<std::size_t>(length));
}

}  // namespace platform
