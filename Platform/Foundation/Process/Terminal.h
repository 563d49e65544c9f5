#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Whether standard output is a terminal that shows colours and whose user has not asked for none
/// (`NO_COLOR`, https://no-color.org).
[[nodiscard]] bool standardOutputHasColors();

/// A text from outside in the form in which a terminal can be given it: it stays on its line, moves
/// no cursor, sets no colour and turns no other text around.
///
///     terminalText("a\nb\x1b[31m");    // "a\\nb\\u001b[31m"
///     terminalText("caf\xE9");         // "caf\\xe9"
///
/// Control characters (C0, DEL and C1), line and paragraph separators and the characters that force
/// a writing direction become escapes, and so does each byte that is not UTF-8. Everything else
/// stays, a backslash and the isolate around a name (U+2068 to U+2069) among it. A text that was
/// escaped does not change when it is escaped again.
[[nodiscard]] std::string terminalText(std::string_view text);

/// The same for a text of several lines, composed by the program: line breaks and its own colours
/// stay. What is JSON stays the same JSON.
[[nodiscard]] std::string terminalLines(std::string_view text);

/// Whether `terminalText` would change a text.
[[nodiscard]] bool hasControlCharacters(std::string_view text);

/// Whether anything of a text in UTF-8 can be seen: not where it has nothing but blanks, controls
/// and characters without a width of their own, such as joiners.
[[nodiscard]] bool isVisible(std::string_view text);

}  // namespace platform
