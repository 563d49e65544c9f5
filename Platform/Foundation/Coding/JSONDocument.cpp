#include "Foundation/Coding/JSONDocument.h"

#include "Foundation/Coding/CodingError.h"
#include "Foundation/Text/String.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <new>
#include <optional>
#include <sstream>
#include <type_traits>
#include <utility>

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <simdjson.h>

namespace platform {

namespace dom = simdjson::dom;

/// Keeps a handle of the parser, an element or a position, in a node: the parser documents them as
/// small values that may be copied while it lives.
struct JSONHandle {
  template <typename Handle>
  static JSONNode keep(const Handle& handle) {
    static_assert(std::is_trivially_copyable_v<Handle>);
    static_assert(sizeof(Handle) <= sizeof(JSONNode) && alignof(Handle) <= alignof(JSONNode));
    JSONNode node;
    ::new (node.handle_.data()) Handle(handle);
    return node;
  }

  template <typename Handle>
  static Handle kept(const JSONNode& node) {
    return *std::launder(reinterpret_cast<const Handle*>(node.handle_.data()));
  }
};

namespace {

dom::element elementOf(const JSONNode& node) {
  return JSONHandle::kept<dom::element>(node);
}

template <typename Value>
Value valueOf(const JSONNode& node) {
  return elementOf(node).get<Value>().value_unsafe();
}

std::string shortened(std::string_view text) {
  constexpr std::size_t longest = 60;
  if (text.size() <= longest) return std::string(text);
  std::size_t end = longest;
  while ((text[end] & 0xC0) == 0x80) --end;  // not inside a character
  return std::string(text.substr(0, end)) + "…";
}

/// What stands in for a number beyond the range of a double: a number that nobody writes, unlike
/// the largest one.
constexpr std::string_view infiniteNumber = "1.6180339887498949e308";
constexpr double infiniteMark = 1.6180339887498949e308;
template <typename Integer>
bool fits(std::string_view digits) {
  Integer number{};
  return std::from_chars(digits.begin(), digits.end(), number).ec == std::errc();
}

bool isInfinite(std::string_view number) {
  std::istringstream stream{std::string(number)};
  stream.imbue(std::locale::classic());
  double value = 0;
  return !(stream >> value);
}

/// Takes digits from the front of a text; whether there were any.
bool takeDigits(std::string_view& text) {
  const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
  text.remove_prefix(count);
  return count > 0;
}

bool takeOneOf(std::string_view& text, std::string_view characters) {
  const bool isThere = !text.empty() && characters.contains(text.front());
  if (isThere) text.remove_prefix(1);
  return isThere;
}

/// Whether it is a number by the grammar of JSON.
bool isNumber(std::string_view text) {
  (void)takeOneOf(text, "-");
  if (!takeOneOf(text, "0") && !takeDigits(text)) return false;
  if (takeOneOf(text, ".") && !takeDigits(text)) return false;
  if (takeOneOf(text, "eE")) {
    (void)takeOneOf(text, "+-");
    if (!takeDigits(text)) return false;
  }
  return text.empty();
}

/// A number in a form that the parser can read; absent where it has that already, and for what is
/// no number.
std::optional<std::string> mendedNumber(std::string_view number) {
  const bool isInteger = number.find_first_of(".eE") == number.npos;
  if (isInteger && (fits<std::int64_t>(number) || fits<std::uint64_t>(number))) return std::nullopt;
  if (!isNumber(number)) return std::nullopt;
  if (isInfinite(number)) {
    return std::string(number.starts_with('-') ? "-" : "").append(infiniteNumber);
  }
  return isInteger ? std::optional(std::string(number) + "e0") : std::nullopt;
}

/// Behind the text that begins with the quotation mark at `start`.
std::size_t endOfText(std::string_view json, std::size_t start) {
  for (std::size_t i = start + 1; i < json.size(); ++i) {
    if (json[i] == '"') return i + 1;
    if (json[i] == '\\') ++i;
  }
  return json.size();
}

/// The text with each number that the parser can't hold replaced: the parser gives up a whole text
/// for one of them. Absent where there are none.
/// \param replace From a number's original and its mended form to what takes its place.
template <typename Replace>
std::optional<std::string> withNumbers(std::string_view json, Replace replace) {
  std::string mended;
  std::size_t copied = 0;
  for (std::size_t i = json.find_first_of("\"-0123456789"); i < json.size();
       i = json.find_first_of("\"-0123456789", i)) {
    const std::size_t start = i;
    if (json[start] == '"') {
      i = endOfText(json, start);
      continue;
    }
    i = std::min(json.find_first_not_of("+-.eE0123456789", start), json.size());
    const std::string_view number = json.substr(start, i - start);
    if (auto form = mendedNumber(number)) {
      mended.append(json.substr(copied, start - copied)).append(replace(number, *std::move(form)));
      copied = i;
    }
  }
  if (copied == 0) return std::nullopt;
  return mended.append(json.substr(copied));
}

/// The parser doesn't tell where it stopped, so another one looks; it stops at large numbers, too.
std::size_t placeOfFailure(std::string_view text) {
  const auto sameLength = [](std::string_view number, const std::string&) {
    return std::string(number.size(), '1');
  };
  const std::string readable = withNumbers(text, sameLength).value_or(std::string(text));
  rapidjson::MemoryStream stream(readable.data(), readable.size());
  rapidjson::BaseReaderHandler<> nobody;
  using namespace rapidjson;
  const ParseResult result =
      Reader().Parse<kParseIterativeFlag | kParseNumbersAsStringsFlag>(stream, nobody);
  return std::min(result.Offset(), text.size());
}

std::string reasonText(simdjson::error_code failure, std::string_view text) {
  switch (failure) {
    case simdjson::EMPTY:
      return "The text is empty.";
    case simdjson::UTF8_ERROR:
      return "The text is not UTF-8.";
    case simdjson::CAPACITY:
      return "The text is longer than " + std::to_string(maximumJSONSize >> 20) + " MiB.";
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
  const double value = valueOf<double>(*this);
  return std::abs(value) == infiniteMark
             ? std::copysign(std::numeric_limits<double>::infinity(), value)
             : value;
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
      if (!std::isfinite(real())) return "a number beyond the range of a double";
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
    : position_(JSONHandle::keep(valueOf<dom::array>(array).begin())),
      end_(JSONHandle::keep(valueOf<dom::array>(array).end())) {}

bool JSONElements::next(JSONNode& element) {
  auto position = JSONHandle::kept<dom::array::iterator>(position_);
  if (position == JSONHandle::kept<dom::array::iterator>(end_)) return false;
  element = JSONHandle::keep(*position);
  position_ = JSONHandle::keep(++position);
  return true;
}

JSONFields::JSONFields(JSONNode object)
    : position_(JSONHandle::keep(valueOf<dom::object>(object).begin())),
      end_(JSONHandle::keep(valueOf<dom::object>(object).end())) {}

bool JSONFields::next(std::string_view& key, JSONNode& value) {
  auto position = JSONHandle::kept<dom::object::iterator>(position_);
  if (position == JSONHandle::kept<dom::object::iterator>(end_)) return false;
  key = position.key();
  value = JSONHandle::keep(position.value());
  position_ = JSONHandle::keep(++position);
  return true;
}

/// A parser's buffers cost more than reading a short text, so each thread keeps one, up to a size.
struct JSONDocument::Parser {
  static constexpr std::size_t largestKeptCapacity = 256 * 1024;
  static thread_local std::unique_ptr<Parser> kept;

  dom::parser parser{maximumJSONSize};

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
  const auto parse = [&](std::string_view json, bool needsCopy) {
    return parser_->parser.parse(json.data(), json.size(), needsCopy).get(root);
  };
  auto failure = parse(text, readableBehind < readAhead);
  if (failure != simdjson::SUCCESS && failure != simdjson::CAPACITY) {
    const auto mended = withNumbers(text, [](auto, std::string form) { return form; });
    if (mended) failure = parse(*mended, /*needsCopy=*/true);
  }
  if (failure != simdjson::SUCCESS) {
    throw DecodingError(DecodingError::Kind::dataCorrupted, "", reasonText(failure, text))
        .ofMoreThanOneValue();
  }
  root_ = JSONHandle::keep(root);
}

JSONDocument::~JSONDocument() = default;

}  // namespace platform
