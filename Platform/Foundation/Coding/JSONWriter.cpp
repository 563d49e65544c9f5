#include "Foundation/Coding/JSONWriter.h"

#include "Foundation/Coding/ExactInteger.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include <simdjson.h>

namespace platform {
namespace {

constexpr std::uint64_t everyByte(std::uint8_t byte) {
  return 0x0101010101010101U * byte;
}

/// The high bit of each byte that is less than `limit` (at most 0x80), and perhaps of some behind
/// one, which does no harm here.
constexpr std::uint64_t bytesBelow(std::uint64_t word, std::uint8_t limit) {
  return (word - everyByte(limit)) & ~word & everyByte(0x80);
}

struct Contents {
  bool needsEscapes = false;
  bool isASCII = true;
};

std::uint64_t wordAt(const char* at) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  return word;
}

/// The last 1 to 8 bytes of a text, among bytes that need no escape or that are seen twice.
std::uint64_t lastWord(std::string_view text) {
  if (text.size() >= sizeof(std::uint64_t)) return wordAt(text.data() + text.size() - 8);
  std::uint64_t word = everyByte(' ');
  for (const char c : text) word = word << 8 | static_cast<std::uint8_t>(c);
  return word;
}

Contents contentsOf(std::string_view text) {
  std::uint64_t escapes = 0;
  std::uint64_t bytes = 0;
  const auto look = [&](std::uint64_t word) {
    bytes |= word;
    escapes |= bytesBelow(word, 0x20) | bytesBelow(word ^ everyByte('"'), 1) |
               bytesBelow(word ^ everyByte('\\'), 1);
  };
  for (std::size_t at = 0; at + 8 < text.size(); at += 8) look(wordAt(text.data() + at));
  look(lastWord(text));
  return {.needsEscapes = escapes != 0, .isASCII = (bytes & everyByte(0x80)) == 0};
}

/// The letter behind the backslash of a short escape; 0 where there is none.
char shortEscape(char c) {
  switch (c) {
    case '"':
    case '\\':
      return c;
    case '\b':
      return 'b';
    case '\f':
      return 'f';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    default:
      return 0;
  }
}

}  // namespace

/// One buffer that is handed to the sink when it is full. Most texts fit the first one, which costs
/// no allocation.
class JSONWriter::Buffer {
 public:
  explicit Buffer(const Sink& sink) : sink_(sink) {}
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  void append(char c) {
    if (at_ == end_) spill();
    *at_++ = c;
  }

  void append(std::size_t count, char c) {
    for (; count > 0; --count) append(c);
  }

  void append(std::string_view text) {
    while (text.size() > room()) {
      const std::size_t count = room();
      copy(text.substr(0, count));
      text.remove_prefix(count);
      spill();
    }
    copy(text);
  }

  void appendEscaped(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (const char c : text) {
      if (const char letter = shortEscape(c)) {
        append('\\');
        append(letter);
      } else if (static_cast<unsigned char>(c) < 0x20) {
        append("\\u00");
        append(digits[static_cast<std::size_t>(c) / 16]);
        append(digits[static_cast<std::size_t>(c) % 16]);
      } else {
        append(c);
      }
    }
  }

  void finish() {
    if (at_ != start_) sink_(std::string_view(start_, static_cast<std::size_t>(at_ - start_)));
    at_ = start_;
  }

 private:
  [[nodiscard]] std::size_t room() const { return static_cast<std::size_t>(end_ - at_); }

  void copy(std::string_view text) { at_ = std::copy(text.begin(), text.end(), at_); }

  void spill() {
    finish();
    if (!large_.empty()) return;
    large_.resize(256 * 1024);
    at_ = start_ = large_.data();
    end_ = start_ + large_.size();
  }

  const Sink& sink_;
  std::array<char, 4096> small_;
  std::vector<char> large_;
  char* start_ = small_.data();
  char* at_ = start_;
  char* end_ = start_ + small_.size();
};

JSONWriter::JSONWriter(const Sink& sink, Layout layout)
    : buffer_(std::make_unique<Buffer>(sink)), layout_(layout) {}

JSONWriter::~JSONWriter() = default;

void JSONWriter::null() {
  write("null");
}

void JSONWriter::boolean(bool value) {
  write(value ? "true" : "false");
}

void JSONWriter::integer(std::int64_t value) {
  std::array<char, 24> digits;
  write({digits.data(), std::to_chars(digits.begin(), digits.end(), value).ptr});
}

void JSONWriter::unsignedInteger(std::uint64_t value) {
  std::array<char, 24> digits;
  write({digits.data(), std::to_chars(digits.begin(), digits.end(), value).ptr});
}

void JSONWriter::real(double value) {
  const bool isNegativeZero = value == 0 && std::signbit(value);
  if (isNegativeZero) return write("-0.0");
  if (const auto whole = exactInteger(value)) return integer(*whole);
  std::array<char, 32> digits;
  // Many digits without an exponent would be taken for an integer, one too large for a reader.
  const auto end =
      std::abs(value) < 0x1p63
          ? std::to_chars(digits.begin(), digits.end(), value).ptr
          : std::to_chars(digits.begin(), digits.end(), value, std::chars_format::scientific).ptr;
  write({digits.data(), end});
}

bool JSONWriter::text(std::string_view value) {
  const Contents contents = contentsOf(value);
  if (!contents.isASCII && !simdjson::validate_utf8(value)) return false;
  startValue();
  buffer_->append('"');
  contents.needsEscapes ? buffer_->appendEscaped(value) : buffer_->append(value);
  buffer_->append('"');
  return true;
}

bool JSONWriter::key(std::string_view name) {
  if (!text(name)) return false;
  buffer_->append(layout_ == Layout::pretty ? ": " : ":");
  isBehindKey_ = true;
  return true;
}

void JSONWriter::startObject() {
  start('{');
}

void JSONWriter::endObject() {
  end('}');
}

void JSONWriter::startArray() {
  start('[');
}

void JSONWriter::endArray() {
  end(']');
}

void JSONWriter::start(char bracket) {
  startValue();
  buffer_->append(bracket);
  ++depth_;
  isFirst_ = true;
}

void JSONWriter::end(char bracket) {
  --depth_;
  if (!isFirst_) startLine();
  buffer_->append(bracket);
  isFirst_ = false;
}

void JSONWriter::write(std::string_view ready) {
  startValue();
  buffer_->append(ready);
}

/// What stands between the value before, if there is one, and the next.
void JSONWriter::startValue() {
  if (std::exchange(isBehindKey_, false)) return;
  if (!std::exchange(isFirst_, false)) buffer_->append(',');
  if (depth_ > 0) startLine();
}

void JSONWriter::startLine() {
  if (layout_ == Layout::compact) return;
  buffer_->append('\n');
  buffer_->append(2 * depth_, ' ');
}

void JSONWriter::finish() {
  buffer_->finish();
}

}  // namespace platform
