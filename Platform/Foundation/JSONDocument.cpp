#include "Foundation/JSONDocument.h"

#include "Foundation/CodingError.h"
#include "Foundation/String.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <new>
#include <utility>

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <simdjson.h>

namespace platform {
namespace {

namespace dom = simdjson::dom;

// A node is the parser's own handle; so is a position in an array or an object.
dom::element elementOf(JSONNode node) {
  return std::bit_cast<dom::element>(node);
}

template <typename Handle>
JSONNode nodeOf(Handle handle) {
  return std::bit_cast<JSONNode>(handle);
}

template <typename Value>
Value valueOf(JSONNode node) {
  return elementOf(node).get<Value>().value_unsafe();
}

std::string shortened(std::string_view text) {
  constexpr std::size_t longest = 60;
  if (text.size() <= longest) return std::string(text);
  std::size_t end = longest;
  while ((text[end] & 0xC0) == 0x80) --end;  // not inside a character
  return std::string(text.substr(0, end)) + "…";
}

/// Stops at a number that can't be read.
struct NumberCheck : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, NumberCheck> {
  static bool RawNumber(const char* start, rapidjson::SizeType size, bool /*copy*/) {
    const std::string_view digits(start, size);
    if (digits.find_first_of(".eE") != digits.npos) return fits<double>(digits);
    return fits<std::int64_t>(digits) || fits<std::uint64_t>(digits);
  }
  template <typename Number>
  static bool fits(std::string_view digits) {
    Number number{};
    return std::from_chars(digits.begin(), digits.end(), number).ec == std::errc();
  }
};

/// The parser doesn't tell where it stopped, so another one looks.
std::size_t placeOfFailure(std::string_view text) {
  rapidjson::MemoryStream stream(text.data(), text.size());
  rapidjson::Reader reader;
  NumberCheck check;
  using namespace rapidjson;
  reader.Parse<kParseIterativeFlag | kParseNumbersAsStringsFlag>(stream, check);
  return std::min(reader.GetErrorOffset(), text.size());
}

std::string reasonText(simdjson::error_code failure, std::string_view text) {
  switch (failure) {
    case simdjson::EMPTY:
      return "The text is empty.";
    case simdjson::UTF8_ERROR:
      return "The text is not UTF-8.";
    case simdjson::DEPTH_ERROR:
      return "The text nests deeper than " + std::to_string(maximumJSONDepth) + " levels.";
    default:
      break;
  }
  const std::size_t place = placeOfFailure(text);
  const std::string there = shortened(text.substr(place));
  const bool readable = !there.empty() && simdjson::validate_utf8(there);
  return "The text is not valid JSON at byte " + std::to_string(place) +
         (readable ? ", \"" + there + "\"" : "") + ": " + simdjson::error_message(failure);
}

}  // namespace

JSONNode::Kind JSONNode::kind() const {
  switch (elementOf(*this).type()) {
    case dom::element_type::ARRAY:
      return Kind::array;
    case dom::element_type::OBJECT:
      return Kind::object;
    case dom::element_type::INT64:
      return Kind::integer;
    case dom::element_type::UINT64:
      return Kind::unsignedInteger;
    case dom::element_type::DOUBLE:
      return Kind::real;
    case dom::element_type::STRING:
      return Kind::text;
    case dom::element_type::BOOL:
      return Kind::boolean;
    case dom::element_type::NULL_VALUE:
      return Kind::null;
  }
  std::unreachable();
}

bool JSONNode::boolean() const {
  return valueOf<bool>(*this);
}

std::int64_t JSONNode::integer() const {
  return valueOf<std::int64_t>(*this);
}

std::uint64_t JSONNode::unsignedInteger() const {
  return valueOf<std::uint64_t>(*this);
}

double JSONNode::real() const {
  return valueOf<double>(*this);
}

std::string_view JSONNode::text() const {
  return valueOf<std::string_view>(*this);
}

std::size_t JSONNode::count() const {
  return kind() == Kind::array ? valueOf<dom::array>(*this).size()
                               : valueOf<dom::object>(*this).size();
}

std::string JSONNode::description() const {
  switch (kind()) {
    case Kind::null:
      return "null";
    case Kind::boolean:
      return boolean() ? "true" : "false";
    case Kind::integer:
      return "the number " + std::to_string(integer());
    case Kind::unsignedInteger:
      return "the number " + std::to_string(unsignedInteger());
    case Kind::real: {
      char digits[32];
      const auto end = std::to_chars(digits, std::end(digits), real()).ptr;
      return "the number " + std::string(digits, end);
    }
    case Kind::text:
      return "the text " + inQuotes(text());
    case Kind::array:
      return "an array";
    case Kind::object:
      return "an object";
  }
  std::unreachable();
}

JSONElements::JSONElements(JSONNode array)
    : position_(nodeOf(valueOf<dom::array>(array).begin())),
      end_(nodeOf(valueOf<dom::array>(array).end())) {}

bool JSONElements::next(JSONNode& element) {
  auto position = std::bit_cast<dom::array::iterator>(position_);
  if (position == std::bit_cast<dom::array::iterator>(end_)) return false;
  element = nodeOf(*position);
  position_ = nodeOf(++position);
  return true;
}

JSONFields::JSONFields(JSONNode object)
    : position_(nodeOf(valueOf<dom::object>(object).begin())),
      end_(nodeOf(valueOf<dom::object>(object).end())) {}

bool JSONFields::next(std::string_view& key, JSONNode& value) {
  auto position = std::bit_cast<dom::object::iterator>(position_);
  if (position == std::bit_cast<dom::object::iterator>(end_)) return false;
  key = position.key();
  value = nodeOf(position.value());
  position_ = nodeOf(++position);
  return true;
}

/// A parser's buffers cost more than reading a short text, so each thread keeps one, up to a size.
struct JSONDocument::Parser {
  static constexpr std::size_t largestKeptCapacity = 256 * 1024;
  static thread_local std::unique_ptr<Parser> kept;

  dom::parser parser;

  static Parser* take() {
    if (kept != nullptr) return kept.release();
    auto fresh = std::make_unique<Parser>();
    constexpr std::size_t parserDepth = maximumJSONDepth + 1;  // it counts the values inside, too
    if (fresh->parser.allocate(4096, parserDepth) != simdjson::SUCCESS) throw std::bad_alloc();
    return fresh.release();
  }
};

thread_local std::unique_ptr<JSONDocument::Parser> JSONDocument::Parser::kept;

void JSONDocument::GiveBack::operator()(Parser* parser) const {
  std::unique_ptr<Parser> owned(parser);
  if (owned->parser.capacity() <= Parser::largestKeptCapacity) Parser::kept = std::move(owned);
}

JSONDocument::JSONDocument(std::string_view text, std::size_t readableBehind)
    : parser_(Parser::take()), root_() {
  static_assert(readAhead >= simdjson::SIMDJSON_PADDING);
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  dom::element root;
  const auto failure =
      parser_->parser.parse(text.data(), text.size(), readableBehind < readAhead).get(root);
  if (failure != simdjson::SUCCESS) {
    throw DecodingError(DecodingError::Kind::dataCorrupted, "", reasonText(failure, text));
  }
  root_ = nodeOf(root);
}

JSONDocument::~JSONDocument() = default;

}  // namespace platform
