#pragma once

#include "Foundation/Coding/CodingError.h"
#include "Foundation/Coding/JSONDocument.h"
#include "Foundation/Time/Date.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace platform {

class Locale;
class TimeZone;

/// How values of one type are written and read (Coding.h).
template <typename T>
struct Coding;

/// How a document is read.
struct DecodingRules {
  DateForm dateForm = DateForm::secondsSinceReferenceDate;
  /// Whether a value that can't be read makes the whole document fail.
  bool isStrict = false;
  /// Called for each value that is left out or replaced; may be null.
  const std::function<void(const DecodingError&)>* didLeaveOut = nullptr;
};
inline constexpr DecodingRules plainDecodingRules;

/// A value of a document that is being read, and the way to it. A type with a form of its own has a
/// static member `T decode(const Decoder&)`:
///
///     struct Month {
///       std::int64_t number;
///       static Month decode(const Decoder& from) { return {from.integer(1, 12)}; }
///     };
///
///     JSONDecoder{}.decode<Month>("3").number;    // 3
///     JSONDecoder{}.decode<Month>("13");          // throws DecodingError
///
/// A decoder, and a text that it returns, are valid during the call that received it.
class Decoder {
 public:
  using Kind = JSONNode::Kind;

  /// This value as a `T`. \throws DecodingError
  template <typename T>
  [[nodiscard]] T decode() const {
    return Coding<T>::decode(*this);
  }
  /// The value under a key of this object, which must be there. Of keys that stand twice, the last
  /// counts. \throws DecodingError
  template <typename T>
  [[nodiscard]] T decode(std::string_view key) const {
    const std::optional<Decoder> value = find(key);
    if (!value) throw keyNotFound(key);
    return value->decode<T>();
  }
  /// The same for a key that may be missing or null. \throws DecodingError
  template <typename T>
  [[nodiscard]] std::optional<T> decodeIfPresent(std::string_view key) const {
    const std::optional<Decoder> value = find(key);
    return value && !value->isNull() ? std::optional<T>(value->decode<T>()) : std::nullopt;
  }
  /// The result of the first of several readings that succeeds; if none does, the failure of the
  /// first. For example `from.firstOf([&] { return fromNumber(from); }, [&] { return
  /// fromFields(from); })` reads a number or an object.
  template <typename First, typename... Rest>
  [[nodiscard]] std::invoke_result_t<First> firstOf(const First& first, const Rest&... rest) const;
  /// Whether a reading succeeds. False for a failure of one value (`DecodingError`), without which
  /// the reader then continues; any other failure is thrown, and so is every failure of a strict
  /// reader.
  template <typename F>
  [[nodiscard]] bool succeeds(F&& reading) const;

  [[nodiscard]] Kind kind() const { return node_.kind(); }
  [[nodiscard]] bool isNull() const { return kind() == Kind::null; }
  /// The value under a key of this object, absent when there is none.
  [[nodiscard]] std::optional<Decoder> find(std::string_view key) const;
  /// The key and the value of an object that must have exactly one.
  [[nodiscard]] std::pair<std::string_view, Decoder> onlyField() const;
  /// Calls `f(std::string_view key, const Decoder& value)` for each field of this object.
  template <typename F>
  void forEachField(F&& f) const;
  /// Calls `f(const Decoder& element)` for each element of this array.
  template <typename F>
  void forEachElement(F&& f) const;
  /// Calls `f(const Decoder& key, const Decoder& value)` for each two elements of this array.
  template <typename F>
  void forEachPair(F&& f) const;
  /// The elements of this array or the fields of this object, for reserving room.
  [[nodiscard]] std::size_t count() const { return node_.count(); }

  [[nodiscard]] bool boolean() const;
  /// A number without a fraction (3 and 3.0) in a range.
  [[nodiscard]] std::int64_t integer(
      std::int64_t lowest = std::numeric_limits<std::int64_t>::min(),
      std::int64_t highest = std::numeric_limits<std::int64_t>::max()) const;
  [[nodiscard]] std::uint64_t unsignedInteger() const;
  [[nodiscard]] double real() const;
  [[nodiscard]] std::string_view text() const;
  /// In the coder's date form.
  [[nodiscard]] Date date() const;

  // What stands in for a zone or a locale of which nothing is known: those of the device that
  // reads.
  [[nodiscard]] TimeZone timeZone() const;
  [[nodiscard]] Locale locale() const;

  /// To be thrown if this value has the right type, but no valid meaning.
  [[nodiscard]] DecodingError dataCorrupted(std::string debugDescription) const;
  /// The same, with a text: "Expected a weekday, found the number 8." for `wanted` "a weekday".
  [[nodiscard]] DecodingError invalidValue(std::string_view wanted) const;
  /// To be thrown when another type is needed here, or null stands here; the text as before.
  [[nodiscard]] DecodingError mismatch(std::string_view wanted) const;
  [[nodiscard]] DecodingError keyNotFound(std::string_view key) const;
  /// To be thrown when this value names no case of an enumeration.
  [[nodiscard]] DecodingError unknownCase(std::string_view typeName) const;
  /// To be thrown if no case of a variant has the name. A variant's tag is indispensable.
  [[nodiscard]] DecodingError unknownCase(std::string_view name, std::string_view typeName) const;

  /// The rules must outlive the decoder.
  Decoder(JSONNode node, const DecodingRules& rules) : node_(node), rules_(&rules) {}

 private:
  template <typename Step>
  Decoder(const Decoder& parent, Step step, JSONNode node)
      : node_(node), rules_(parent.rules_), path_(parent.path_, step) {}

  void expect(Kind kind, std::string_view wanted) const {
    if (node_.kind() != kind) throw mismatch(wanted);
  }
  [[nodiscard]] std::string expectation(std::string_view wanted) const;

  JSONNode node_;
  const DecodingRules* rules_;
  CodingPath path_;
};

template <typename First, typename... Rest>
std::invoke_result_t<First> Decoder::firstOf(const First& first, const Rest&... rest) const {
  try {
    return first();
  } catch (const DecodingError&) {
    std::optional<std::invoke_result_t<First>> result;
    const auto succeeds = [&](const auto& reading) {
      try {
        result.emplace(reading());
      } catch (const DecodingError&) {
      }
      return result.has_value();
    };
    if ((succeeds(rest) || ...)) return std::move(*result);
    throw;
  }
}

template <typename F>
bool Decoder::succeeds(F&& reading) const {
  try {
    reading();
    return true;
  } catch (const DecodingError& error) {
    if (rules_->isStrict || !error.isOfOneValue()) throw;
    if (rules_->didLeaveOut != nullptr) (*rules_->didLeaveOut)(error);
    return false;
  }
}

template <typename F>
void Decoder::forEachField(F&& f) const {
  expect(Kind::object, "an object");
  JSONFields fields(node_);
  std::string_view key;
  for (JSONNode value = node_; fields.next(key, value);) f(key, Decoder(*this, key, value));
}

template <typename F>
void Decoder::forEachElement(F&& f) const {
  expect(Kind::array, "an array");
  JSONElements elements(node_);
  std::size_t index = 0;
  for (JSONNode element = node_; elements.next(element);) f(Decoder(*this, index++, element));
}

template <typename F>
void Decoder::forEachPair(F&& f) const {
  expect(Kind::array, "an array");
  JSONElements elements(node_);
  std::size_t index = 0;
  JSONNode value = node_;
  for (JSONNode key = node_; elements.next(key); index += 2) {
    if (!elements.next(value)) throw dataCorrupted("The last key has no value.");
    f(Decoder(*this, index, key), Decoder(*this, index + 1, value));
  }
}

}  // namespace platform
