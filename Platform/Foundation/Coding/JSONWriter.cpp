#include "Foundation/Coding/JSONWriter.h"

#include "Foundation/Coding/ExactInteger.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <vector>

#include <rapidjson/prettywriter.h>
#include <rapidjson/writer.h>
#include <simdjson.h>

namespace platform {
namespace {

/// The stream under the writer: one buffer that is handed on when it is full. Most texts fit the
/// first buffer, which costs no allocation.
class ChunkStream {
 public:
  using Ch = char;

  explicit ChunkStream(const JSONWriter::Sink& sink) : sink_(sink) {}
  ChunkStream(const ChunkStream&) = delete;
  ChunkStream& operator=(const ChunkStream&) = delete;

  void Put(char c) {
    if (at_ == end_) spill();
    *at_++ = c;
  }
  void Flush() {}

  void append(std::string_view text) {
    while (text.size() > room()) {
      const std::size_t count = room();
      copy(text.substr(0, count));
      text.remove_prefix(count);
      spill();
    }
    copy(text);
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

  const JSONWriter::Sink& sink_;
  std::array<char, 4096> small_;
  std::vector<char> large_;
  char* start_ = small_.data();
  char* at_ = start_;
  char* end_ = start_ + small_.size();
};

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

}  // namespace

struct JSONWriter::Engine {
  ChunkStream stream;
  rapidjson::Writer<ChunkStream> compact{stream};
  rapidjson::PrettyWriter<ChunkStream> pretty{stream};
  Layout layout;
  std::size_t depth = 0;

  Engine(const Sink& sink, Layout wanted) : stream(sink), layout(wanted) {
    pretty.SetIndent(' ', 2);
  }

  template <typename Write>
  void write(Write write) {
    layout == Layout::compact ? write(compact) : write(pretty);
  }

  /// A value or key that is ready as it stands: what the writer puts before it, then a plain copy.
  void writeReady(rapidjson::Type type, std::initializer_list<std::string_view> pieces) {
    write([&](auto& writer) { writer.RawValue("", 0, type); });
    for (const std::string_view piece : pieces) stream.append(piece);
  }
};

JSONWriter::JSONWriter(const Sink& sink, Layout layout)
    : engine_(std::make_unique<Engine>(sink, layout)) {}

JSONWriter::~JSONWriter() = default;

void JSONWriter::null() {
  engine_->write([](auto& writer) { writer.Null(); });
}

void JSONWriter::boolean(bool value) {
  engine_->write([&](auto& writer) { writer.Bool(value); });
}

void JSONWriter::integer(std::int64_t value) {
  engine_->write([&](auto& writer) { writer.Int64(value); });
}

void JSONWriter::unsignedInteger(std::uint64_t value) {
  engine_->write([&](auto& writer) { writer.Uint64(value); });
}

void JSONWriter::real(double value) {
  const bool isNegativeZero = value == 0 && std::signbit(value);
  if (isNegativeZero) return engine_->writeReady(rapidjson::kNumberType, {"-0.0"});
  if (const auto whole = exactInteger(value)) return integer(*whole);
  std::array<char, 32> digits;
  char* const last = digits.data() + digits.size();
  // Many digits without an exponent would be taken for an integer, one too large for a reader.
  const auto end =
      std::abs(value) < 0x1p63
          ? std::to_chars(digits.data(), last, value).ptr
          : std::to_chars(digits.data(), last, value, std::chars_format::scientific).ptr;
  engine_->writeReady(rapidjson::kNumberType, {std::string_view(digits.data(), end)});
}

bool JSONWriter::text(std::string_view value) {
  const Contents contents = contentsOf(value);
  if (!contents.isASCII && !simdjson::validate_utf8(value)) return false;
  if (contents.needsEscapes) {
    engine_->write([&](auto& writer) {
      writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
    });
  } else {
    engine_->writeReady(rapidjson::kStringType, {"\"", value, "\""});
  }
  return true;
}

bool JSONWriter::key(std::string_view name) {
  return text(name);
}

void JSONWriter::startObject() {
  ++engine_->depth;
  engine_->write([](auto& writer) { writer.StartObject(); });
}

void JSONWriter::endObject() {
  --engine_->depth;
  engine_->write([](auto& writer) { writer.EndObject(); });
}

void JSONWriter::startArray() {
  ++engine_->depth;
  engine_->write([](auto& writer) { writer.StartArray(); });
}

void JSONWriter::endArray() {
  --engine_->depth;
  engine_->write([](auto& writer) { writer.EndArray(); });
}

void JSONWriter::finish() {
  engine_->stream.finish();
}

std::size_t JSONWriter::depth() const {
  return engine_->depth;
}

}  // namespace platform
