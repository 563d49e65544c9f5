#include "Foundation/Process/Terminal.h"

#include "Foundation/Process/Environment.h"
#include "Foundation/Text/String.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>

#include <sys/ioctl.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>
#include <unistd.h>

namespace platform {
namespace {

constexpr UChar32 firstStrongIsolate = 0x2068;
constexpr UChar32 popDirectionalIsolate = 0x2069;
constexpr std::string_view isolateEnd = "\u2069";

bool isControl(UChar32 scalar) {
  const auto isFrom = [&](UChar32 first, UChar32 last) {
    return scalar >= first && scalar <= last;
  };
  return scalar < 0x20 || isFrom(0x7F, 0x9F) || isFrom(0x2028, 0x202E) || isFrom(0x2066, 0x206F) ||
         isFrom(0xFFF9, 0xFFFB);
}

std::string escaped(UChar32 scalar) {
  if (scalar == '\n') return "\\n";
  if (scalar == '\r') return "\\r";
  if (scalar == '\t') return "\\t";
  return stringWithFormat("\\u%04x", static_cast<unsigned>(scalar));
}

/// The length of the sequence that sets a colour at the beginning of a text; 0 where there is none.
std::size_t colorLength(std::string_view text) {
  if (!text.starts_with("\x1b[")) return 0;
  const std::size_t end = text.find_first_not_of("0123456789;", 2);
  return end < text.size() && text[end] == 'm' ? end + 1 : 0;
}

/// Walks a text of UTF-8 and writes it down with escapes.
class Escaper {
 public:
  Escaper(std::string_view text, bool keepsLines) : text_(text), keepsLines_(keepsLines) {}

  std::string result() && {
    while (at_ < text_.size()) step();
    return std::move(result_);
  }

 private:
  void step() {
    const std::size_t start = at_;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text_.data());
    UChar32 scalar = 0;
    U8_NEXT(bytes, at_, text_.size(), scalar);
    if (scalar < 0) {
      for (std::size_t i = start; i < at_; ++i) result_ += stringWithFormat("\\x%02x", bytes[i]);
    } else if (!isControl(scalar) || isKept(scalar, start)) {
      result_ += text_.substr(start, at_ - start);
    } else {
      result_ += escaped(scalar);
    }
  }

  /// What a control character belongs to may go on behind it.
  bool isKept(UChar32 scalar, std::size_t start) {
    if (scalar == firstStrongIsolate && text_.find(isolateEnd, at_) != std::string_view::npos) {
      ++openIsolates_;
      return true;
    }
    if (scalar == popDirectionalIsolate && openIsolates_ > 0) {
      --openIsolates_;
      return true;
    }
    if (!keepsLines_) return false;
    const std::size_t color = standardOutputHasColors() ? colorLength(text_.substr(start)) : 0;
    at_ = std::max(at_, start + color);
    return scalar == '\n' || color > 0;
  }

  const std::string_view text_;
  const bool keepsLines_;
  std::size_t at_ = 0;
  std::size_t openIsolates_ = 0;
  std::string result_;
};

}  // namespace

bool standardOutputHasColors() {
  static const bool isTerminal = isatty(STDOUT_FILENO) != 0;
  if (!isTerminal) return false;
  const Environment& environment = Environment::current();
  return environment.variable("NO_COLOR").empty() && environment.variable("TERM") != "dumb";
}

std::size_t standardOutputColumns() {
  const std::string wanted = Environment::current().variable("COLUMNS");
  std::size_t columns = 0;
  std::from_chars(wanted.data(), wanted.data() + wanted.size(), columns);
  if (columns > 0) return columns;
  constexpr std::size_t usual = 80;
  winsize size = {};
  const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : usual;
}

std::string terminalText(std::string_view text) {
  return Escaper(text, /*keepsLines=*/false).result();
}

std::string terminalLines(std::string_view text) {
  return Escaper(text, /*keepsLines=*/true).result();
}

bool hasControlCharacters(std::string_view text) {
  return terminalText(text) != text;
}

bool isVisible(std::string_view text) {
  constexpr UChar32 brailleBlank = 0x2800;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  for (std::size_t at = 0; at < text.size();) {
    UChar32 scalar = 0;
    U8_NEXT(bytes, at, text.size(), scalar);
    const bool isIgnorable = u_hasBinaryProperty(scalar, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0;
    if (u_isgraph(scalar) != 0 && !isIgnorable && scalar != brailleBlank) return true;
  }
  return false;
}

}  // namespace platform
