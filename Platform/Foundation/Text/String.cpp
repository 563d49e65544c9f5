#include "Foundation/Text/String.h"

#include "Foundation/Text/IcuSupport.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <memory>

#include <simdjson.h>
#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>

namespace platform {
namespace {

/// Empty where there is none.
std::string unicodeName(UChar32 scalar, UCharNameChoice choice) {
  std::array<char, 128> name{};  // the longest has 88 letters
  UErrorCode status = U_ZERO_ERROR;
  u_charName(scalar, choice, name.data(), static_cast<std::int32_t>(name.size()), &status);
  return U_SUCCESS(status) != 0 ? name.data() : "";
}

}  // namespace

std::string stringWithFormat(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  std::array<char, 64> buffer{};  // nearly all texts fit in, and need no second pass
  const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  va_end(arguments);
  const std::size_t size = length > 0 ? static_cast<std::size_t>(length) : 0;
  std::string text(buffer.data(), std::min(size, buffer.size() - 1));
  if (text.size() < size) {
    text.resize(size);
    std::vsnprintf(text.data(), size + 1, format, again);
  }
  va_end(again);
  return text;
}

bool isUTF8(std::string_view bytes) {
  return simdjson::validate_utf8(bytes);
}

std::string excerpt(std::string_view input) {
  constexpr std::size_t longest = 4096;
  if (input.size() <= longest) return std::string(input);
  std::size_t end = longest;
  // A character takes four bytes at most; where none begins here, it is no UTF-8 at all.
  while (end > longest - 4 && (input[end] & 0xC0) == 0x80) --end;
  return std::string(input.substr(0, end)) + "… (" + std::to_string(end) + " of " +
         std::to_string(input.size()) + " bytes)";
}

std::string inQuotes(std::string_view input) {
  return '"' + excerpt(input) + '"';
}

std::string repairedUTF8(std::string_view text) {
  return isUTF8(text) ? std::string(text) : utf8(icuText(text));
}

std::string unicodeNames(std::string_view text) {
  std::string names;
  const icu::UnicodeString scalars = icuText(text);
  for (std::int32_t at = 0; at < scalars.length(); at = scalars.moveIndex32(at, 1)) {
    const UChar32 scalar = scalars.char32At(at);
    std::string name = unicodeName(scalar, U_CHAR_NAME_ALIAS);
    if (name.empty()) name = unicodeName(scalar, U_UNICODE_CHAR_NAME);
    if (!name.empty()) names += (names.empty() ? "" : ", ") + name;
  }
  return names;
}

std::vector<std::string_view> graphemes(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  UText source = UTEXT_INITIALIZER;
  utext_openUTF8(&source, text.data(), static_cast<std::int64_t>(text.size()), &status);
  const std::unique_ptr<icu::BreakIterator> breaks(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  std::vector<std::string_view> characters;
  if (U_SUCCESS(status) != 0) {
    breaks->setText(&source, status);
    auto from = static_cast<std::size_t>(breaks->first());
    for (std::int32_t to = breaks->next(); to != icu::BreakIterator::DONE; to = breaks->next()) {
      characters.push_back(text.substr(from, static_cast<std::size_t>(to) - from));
      from = static_cast<std::size_t>(to);
    }
  }
  utext_close(&source);
  return characters;
}

}  // namespace platform
