#pragma once

#include "Foundation/CodingError.h"
#include "Foundation/JSONDocument.h"
#include "Foundation/JSONWriter.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace platform {

class Date;

/// How an instant stands in a text.
enum class DateForm {
  secondsSinceReferenceDate,  ///< A number: seconds since 2001-01-01T00:00:00Z.
  iso8601,                    ///< "2024-03-07T01:59:59Z"; a fraction of a second is cut off.
};

/// How values of one type are written and read: `encode(value, encoder)` and `decode(decoder)`.
/// Coding.h has it for every type that can be coded.
template <typename T>
struct Coding;

class ObjectEncoder;
class ArrayEncoder;

/// The place in a document where one value is to be written. A type with a form of its own has a
/// member `void encode(Encoder&) const`, which writes exactly one value:
///
///     void Range::encode(Encoder& to) const { to.encode(number); }      // a single value, or
///     to.object([&](ObjectEncoder& object) {                            // an object, or
///       object.encode("type", type);
///       object.encode("limit", limit);                                  // an absent one is left
///       out
///     });
///     to.array([&](ArrayEncoder& array) { array.encode(first); });      // an array
class Encoder {
 public:
  template <typename T>
  void encode(const T& value) {
    Coding<T>::encode(value, *this);
  }
  template <typename Write>
  void object(Write&& write);
  template <typename Write>
  void array(Write&& write);

  void null();
  void boolean(bool value);
  void integer(std::int64_t value);
  void unsignedInteger(std::uint64_t value);
  /// \throws EncodingError for a number that is not finite.
  void real(double value);
  /// \throws EncodingError for a text that is not UTF-8.
  void text(std::string_view value);
  /// In the coder's date form. \throws EncodingError for one beyond it.
  void date(Date value);

  /// To be thrown when this place's value cannot be written.
  [[nodiscard]] EncodingError invalidValue(std::string debugDescription) const;

  Encoder(JSONWriter& writer, DateForm dateForm) : writer_(writer), dateForm_(dateForm) {}
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;

 private:
  friend class ObjectEncoder;
  friend class ArrayEncoder;

  template <typename Step>
  Encoder(const Encoder& parent, Step step)
      : writer_(parent.writer_), dateForm_(parent.dateForm_), path_(parent.path_, step) {}

  void startObject();
  void startArray();
  void checkDepth() const;

  JSONWriter& writer_;
  DateForm dateForm_;
  CodingPath path_;
};

/// Writes the fields of one object.
class ObjectEncoder {
 public:
  explicit ObjectEncoder(Encoder& encoder) : encoder_(encoder) {}

  template <typename T>
  void encode(std::string_view key, const T& value) {
    writeKey(key);
    Encoder place(encoder_, key);
    place.encode(value);
  }
  template <typename T>
  void encode(std::string_view key, const std::optional<T>& value) {
    if (value) encode(key, *value);
  }
  /// An object under a key; `write` as for `Encoder::object`.
  template <typename Write>
  void object(std::string_view key, Write&& write) {
    writeKey(key);
    Encoder place(encoder_, key);
    place.object(write);
  }

 private:
  void writeKey(std::string_view key);

  Encoder& encoder_;
};

/// Writes the elements of one array.
class ArrayEncoder {
 public:
  explicit ArrayEncoder(Encoder& encoder) : encoder_(encoder) {}

  template <typename T>
  void encode(const T& element) {
    Encoder place(encoder_, count_++);
    place.encode(element);
  }

 private:
  Encoder& encoder_;
  std::size_t count_ = 0;
};

/// A value of a document that is being read, and the way to it. A type with a form of its own has a
/// static member `T decode(const Decoder&)`:
///
///     Day Day::decode(const Decoder& from) {
///       const auto number = from.decode<std::int64_t>();
///       if (number < 1) {
///         throw from.dataCorrupted("Unable to create Day from " + std::to_string(number));
///       }
///       return Day(number);
///     }
///
/// A decoder, and a text that it gives, are good as long as the call that received it.
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
  /// The first of several readings that succeeds; where none does, the failure of the first.
  ///
  ///     return from.firstOf([&] { return fromNumber(from); }, [&] { return fromFields(from); });
  template <typename First, typename... Rest>
  [[nodiscard]] std::invoke_result_t<First> firstOf(const First& first, const Rest&... rest) const;

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

  /// To be thrown when this value has the right type, but says nothing that can be.
  [[nodiscard]] DecodingError dataCorrupted(std::string debugDescription) const;
  /// The same, with a text: "Expected a weekday, found the number 8." for `wanted` "a weekday".
  [[nodiscard]] DecodingError invalidValue(std::string_view wanted) const;
  /// To be thrown when another type is needed here, or null stands here; the text as before.
  [[nodiscard]] DecodingError mismatch(std::string_view wanted) const;
  [[nodiscard]] DecodingError keyNotFound(std::string_view key) const;
  /// To be thrown when this value names no case of an enumeration or a variant.
  [[nodiscard]] DecodingError unknownCase(std::string_view typeName) const;
  [[nodiscard]] DecodingError unknownCase(std::string_view name, std::string_view typeName) const;

  Decoder(JSONNode node, DateForm dateForm) : node_(node), dateForm_(dateForm) {}

 private:
  template <typename Step>
  Decoder(const Decoder& parent, Step step, JSONNode node)
      : node_(node), dateForm_(parent.dateForm_), path_(parent.path_, step) {}

  void expect(Kind kind, std::string_view wanted) const {
    if (node_.kind() != kind) throw mismatch(wanted);
  }
  [[nodiscard]] std::string expectation(std::string_view wanted) const;

  JSONNode node_;
  DateForm dateForm_;
  CodingPath path_;
};

template <typename Write>
void Encoder::object(Write&& write) {
  startObject();
  ObjectEncoder fields(*this);
  write(fields);
  writer_.endObject();
}

template <typename Write>
void Encoder::array(Write&& write) {
  startArray();
  ArrayEncoder elements(*this);
  write(elements);
  writer_.endArray();
}

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
