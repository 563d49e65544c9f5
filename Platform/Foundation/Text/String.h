#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// A text by a printf format, independent of the locale: "." is the decimal mark.
///
///     stringWithFormat("%04d-%02d", 2024, 3);  // "2024-03"
[[nodiscard]] [[gnu::format(printf, 1, 2)]] std::string stringWithFormat(const char* format, ...);

/// Whether the bytes are a text in UTF-8.
[[nodiscard]] bool isUTF8(std::string_view bytes);

/// An input as a message shows it: unchanged up to 4 KiB. A longer one is cut there, at the end of
/// a character, and its length is added, so that a message can always be stored and printed.
///
///     excerpt("Mars/Base");                              // "Mars/Base"
///     excerpt(std::string(5000, 'a')).substr(4094);      // "aa… (4096 of 5000 bytes)"
[[nodiscard]] std::string excerpt(std::string_view input);
/// The same in quotes: "\"Mars/Base\"".
[[nodiscard]] std::string inQuotes(std::string_view input);

/// The text with U+FFFD instead of what is not UTF-8.
[[nodiscard]] std::string repairedUTF8(std::string_view text);

/// The names that Unicode gives a text's scalars, the corrected ones where a name was at fault,
/// with ", " between them. A scalar without a name, such as a line break, is left out.
///
///     unicodeNames("🚲");    // "BICYCLE"
[[nodiscard]] std::string unicodeNames(std::string_view text);

/// The characters as a person counts them: letters with their accents, emoji with all that belongs
/// to them. Pieces of `text`, which must outlive them.
///
///     graphemes("n\u0303🇳🇵").size();    // 2: "ñ" (of two scalars) and the flag
[[nodiscard]] std::vector<std::string_view> graphemes(std::string_view text);

}  // namespace platform
