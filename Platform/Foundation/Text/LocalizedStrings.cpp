#include "Foundation/Text/LocalizedStrings.h"

#include "Foundation/Coding/CodingError.h"
#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Text/IcuSupport.h"
#include "Foundation/Text/String.h"

#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include <unicode/localematcher.h>
#include <unicode/msgfmt.h>

namespace platform {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<LocalizedArgument>;
using Table = std::map<std::string, std::string, std::less<>>;

constexpr std::string_view english = "en";

std::vector<std::string> languagesIn(const fs::path& resources) {
  auto names = NSFileManager::contentsOfDirectory(resources).value_or(std::vector<std::string>{});
  std::erase_if(names, [&](const std::string& name) {
    return !NSFileManager::exists(resources / name / "Localizable.json");
  });
  return names;
}

/// A text without placeholders and quoting, which needs no parsing.
bool isPlain(std::string_view text) {
  return text.find_first_of("{}'") == std::string_view::npos;
}

icu::Formattable formattable(const LocalizedArgument& argument) {
  if (const auto* text = std::get_if<std::string>(&argument)) return {icuText(*text)};
  if (const auto* integer = std::get_if<std::int64_t>(&argument)) return {*integer};
  return {std::get<double>(argument)};
}

/// A parsed text. ICU loads number formats and plural rules into it while it formats, so it serves
/// one thread at a time.
class Message {
 public:
  Message(const std::string& text, const Locale& locale)
      : format_(icuText(text), locale.data().icu, parseError_, status_) {}

  /// Absent where the text is no message, or can't take the arguments.
  std::optional<std::string> string(const Arguments& arguments) {
    std::vector<icu::Formattable> values;
    for (const LocalizedArgument& argument : arguments) values.push_back(formattable(argument));
    const std::scoped_lock lock(mutex_);
    UErrorCode status = status_;
    icu::UnicodeString text;
    icu::FieldPosition ignored;
    format_.format(values.data(), static_cast<std::int32_t>(values.size()), text, ignored, status);
    return U_SUCCESS(status) ? std::optional(utf8(text)) : std::nullopt;
  }

 private:
  std::mutex mutex_;
  UParseError parseError_{};
  UErrorCode status_ = U_ZERO_ERROR;
  icu::MessageFormat format_;
};

}  // namespace

class LocalizedStrings::Implementation {
 public:
  explicit Implementation(fs::path resources)
      : localizations(languagesIn(resources)), resources_(std::move(resources)) {}

  const std::vector<std::string> localizations;

  [[nodiscard]] const std::string& preferredLanguage(const Locale& locale) const {
    return kept(languages_, locale, [&] { return bestMatch(locale); });
  }

  [[nodiscard]] const Table& table(const std::string& language) const {
    return kept(tables_, language, [&] { return loadTable(file(language)); });
  }

  [[nodiscard]] std::string text(std::string_view key, const Arguments& arguments,
                                 const Locale& locale) const;

 private:
  /// The value kept for a key, else one made now. It is made outside the lock, since making reads
  /// files and reports; of two threads that make it, the first one's stays.
  template <typename Map, typename Make>
  const typename Map::mapped_type& kept(Map& map, const typename Map::key_type& key,
                                        Make make) const {
    {
      const std::scoped_lock lock(mutex_);
      if (const auto found = map.find(key); found != map.end()) return found->second;
    }
    auto made = make();
    const std::scoped_lock lock(mutex_);
    return map.try_emplace(key, std::move(made)).first->second;
  }

  [[nodiscard]] fs::path file(const std::string& language) const {
    return resources_ / language / "Localizable.json";
  }
  [[nodiscard]] std::string bestMatch(const Locale& locale) const;
  [[nodiscard]] Table loadTable(const fs::path& path) const;
  [[nodiscard]] Table textsOf(const PropertyList& list, const fs::path& path) const;
  [[nodiscard]] std::string formatted(const std::string& text, const Arguments& arguments,
                                      const Locale& locale) const;
  void reportOnce(const std::string& line) const;

  const fs::path resources_;
  mutable std::mutex mutex_;  // guards what follows; an entry stays where it is
  mutable std::unordered_map<Locale, std::string> languages_;
  mutable std::map<std::string, Table> tables_;
  mutable std::map<std::pair<const std::string*, const Locale::Data*>, std::unique_ptr<Message>>
      messages_;
  mutable std::set<std::string> reported_;
};

std::string LocalizedStrings::Implementation::text(std::string_view key, const Arguments& arguments,
                                                   const Locale& locale) const {
  const std::string& preferred = preferredLanguage(locale);
  for (const std::string& language : {preferred, std::string(english)}) {
    const Table& texts = table(language);
    const auto found = texts.find(key);
    if (found == texts.end()) continue;
    if (isPlain(found->second)) return found->second;
    const Locale ofText = Locale::fromIdentifier(language);
    const bool isReaders = ofText.languageCode() == locale.languageCode();
    return formatted(found->second, arguments, isReaders ? locale : ofText);
  }
  reportOnce("no text for the key " + inQuotes(key) + " in " + inQuotes(file(preferred).string()));
  return std::string(key);
}

std::string LocalizedStrings::Implementation::bestMatch(const Locale& locale) const {
  UErrorCode status = U_ZERO_ERROR;
  std::vector<icu::Locale> supported;
  for (const std::string& language : localizations) supported.emplace_back(language.c_str());
  const icu::LocaleMatcher matcher = icu::LocaleMatcher::Builder()
                                         .setSupportedLocales(supported.begin(), supported.end())
                                         .build(status);
  const auto result = matcher.getBestMatchResult(locale.data().icu, status);
  checkIcu(status, "cannot match the languages of " + inQuotes(resources_.string()));
  const std::int32_t index = result.getSupportedIndex();
  return index < 0 ? std::string(english) : localizations[static_cast<std::size_t>(index)];
}

Table LocalizedStrings::Implementation::loadTable(const fs::path& path) const {
  const auto json = NSFileManager::contents(path);
  if (!json) {
    reportOnce(json.error()->localizedDescription());
    return {};
  }
  try {
    return textsOf(PropertyList::fromJSON(*json), path);
  } catch (const DecodingError& error) {
    reportOnce("cannot read " + inQuotes(path.string()) + ": " + error.localizedDescription());
    return {};
  }
}

Table LocalizedStrings::Implementation::textsOf(const PropertyList& list,
                                                const fs::path& path) const {
  const std::string inFile = " in " + inQuotes(path.string());
  if (list.dictionary() == nullptr) {
    reportOnce("no object of keys and texts" + inFile);
    return {};
  }
  Table texts;
  for (const auto& [key, value] : *list.dictionary()) {
    if (value.text() != nullptr) {
      texts.emplace(key, *value.text());
    } else {
      reportOnce("the value of " + inQuotes(key) + inFile + " is no text: " + value.json());
    }
  }
  return texts;
}

std::string LocalizedStrings::Implementation::formatted(const std::string& text,
                                                        const Arguments& arguments,
                                                        const Locale& locale) const {
  const auto& message = kept(messages_, {&text, &locale.data()},
                             [&] { return std::make_unique<Message>(text, locale); });
  if (auto result = message->string(arguments)) return *std::move(result);
  reportOnce("not a message, or not for its arguments: " + inQuotes(text));
  return text;
}

void LocalizedStrings::Implementation::reportOnce(const std::string& line) const {
  {
    const std::scoped_lock lock(mutex_);
    if (!reported_.insert(line).second) return;
  }
  Environment::current().report(line);
}

const LocalizedStrings& LocalizedStrings::inFolder(const fs::path& resources) {
  struct Registry {
    std::mutex mutex;
    std::unordered_map<std::string, LocalizedStrings> folders;
  };
  static auto* registry = new Registry;
  const std::scoped_lock lock(registry->mutex);
  return registry->folders.try_emplace(resources.native(), resources).first->second;
}

LocalizedStrings::LocalizedStrings(fs::path resources)
    : implementation_(std::make_unique<const Implementation>(std::move(resources))) {}

LocalizedStrings::~LocalizedStrings() = default;

const std::vector<std::string>& LocalizedStrings::localizations() const {
  return implementation_->localizations;
}

std::string LocalizedStrings::preferredLanguage(const Locale& locale) const {
  return implementation_->preferredLanguage(locale);
}

std::vector<std::string> LocalizedStrings::keys(std::string_view language) const {
  std::vector<std::string> keys;
  for (const auto& [key, text] : implementation_->table(std::string(language))) keys.push_back(key);
  return keys;
}

std::string LocalizedStrings::text(std::string_view key, const Arguments& arguments,
                                   const Locale& locale) const {
  return implementation_->text(key, arguments, locale);
}

}  // namespace platform
