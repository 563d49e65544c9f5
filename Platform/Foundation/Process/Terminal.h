#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

/// Whether standard output is a terminal that shows colours and whose user has not asked for none
/// (`NO_COLOR`, https://no-color.org).
[[nodiscard]] bool standardOutputHasColors();
/// How many characters a line of standard output takes: `COLUMNS` where it is set, else the width
/// of the terminal, else 80. At least 1.
[[nodiscard]] std::size_t standardOutputColumns();

/// A text from outside in a form that is safe for a terminal: it stays on its line, moves no
/// cursor, sets no colour and does not reverse other text.
///
///     terminalText("a\nb\x1b[31m");    // "a\\nb\\u001b[31m"
///     terminalText("caf\xE9");         // "caf\\xe9"
///
/// Control characters (C0, DEL and C1), line and paragraph separators and the characters that force
/// a writing direction become escapes, and so does each byte that is not UTF-8. Everything else
/// stays, a backslash and the isolate around a name (U+2068 to U+2069) among it. A text that was
/// escaped does not change when it is escaped again.
[[nodiscard]] std::string terminalText(std::string_view text);

/// The same for a text of several lines that the program has composed: line breaks and its own
/// colours are kept. JSON remains the same JSON.
[[nodiscard]] std::string terminalLines(std::string_view text);

/// Whether `terminalText` would change a text.
[[nodiscard]] bool hasControlCharacters(std::string_view text);

/// Whether a text in UTF-8 has a visible character: not a blank, a control character, or one
/// without a width, such as a joiner.
[[nodiscard]] bool isVisible(std::string_view text);

}  // namespace platform
