#pragma once

#include "Foundation/Coding/Coding.h"
#include "Foundation/Coding/PropertyList.h"

#include <concepts>
#include <functional>
#include <string>
#include <string_view>

namespace platform {

/// Writes values (Coding.h) as JSON.
///
///     JSONEncoder{}.encode(std::vector{Date::now()});    // [731505600]
///     JSONEncoder{.dateForm = DateForm::iso8601}.encode(std::vector{Date::now()});
///         // ["2024-03-07T12:00:00Z"]
struct JSONEncoder {
  DateForm dateForm = DateForm::secondsSinceReferenceDate;
  JSONWriter::Layout layout = JSONWriter::Layout::compact;
  /// Puts the keys of every object in the order of their bytes, instead of the order in which they
  /// are written. Costs a second pass.
  bool sortsKeys = false;

  /// \throws EncodingError
  template <typename T>
  [[nodiscard]] std::string encode(const T& value) const {
    std::string json;
    encode(value, [&](std::string_view piece) { json += piece; });
    return json;
  }

  /// Hands the text to a sink in pieces of at most 256 KiB. When this throws, the sink may have
  /// received a part.
  /// \throws EncodingError, and what the sink throws.
  template <typename T>
  void encode(const T& value, const JSONWriter::Sink& sink) const {
    run([&](Encoder& encoder) { encoder.encode(value); }, sink);
  }

 private:
  using Write = std::function<void(Encoder&)>;

  void run(const Write& write, const JSONWriter::Sink& sink) const;
  void runSorted(const Write& write, const JSONWriter::Sink& sink) const;
};

/// Reads values from JSON. What can't be made out is left out where that is possible (Coding.h). A
/// strict decoder fails on it: for a document that is taken over whole or not at all, and for who
/// looks for damage.
///
///     JSONDecoder{}.decode<std::map<std::string, int>>(R"({"a":1})").at("a");    // 1
///     JSONDecoder{}.decode<std::optional<int>>("null");                          // absent
///     JSONDecoder{}.decode<Date>("731505600") == Date::now();                    // true
///     JSONDecoder{}.decode<std::vector<std::string>>(R"(["a","b",5])");
///         // throws DecodingError: "[2]: Expected a text, found the number 5."
struct JSONDecoder {
  DateForm dateForm = DateForm::secondsSinceReferenceDate;
  bool isStrict = false;
  /// Hears of each value that was left out, such as to log it; may be null.
  const std::function<void(const DecodingError&)>* didLeaveOut = nullptr;

  /// \throws DecodingError
  template <typename T>
  [[nodiscard]] T decode(std::string_view json) const {
    return read<T>(JSONDocument(json));
  }
  /// The same without a copy of the text, where a string has room for `JSONDocument::readAhead`
  /// more bytes.
  template <typename T, std::same_as<std::string> Text>
  [[nodiscard]] T decode(const Text& json) const {
    return read<T>(JSONDocument(json, json.capacity() - json.size()));
  }

 private:
  template <typename T>
  [[nodiscard]] T read(const JSONDocument& document) const {
    const DecodingRules rules{dateForm, isStrict, didLeaveOut};
    return Decoder(document.root(), rules).decode<T>();
  }
};

/// A value as a property list, as its JSON says it: dates and binary data come out in their JSON
/// forms. It goes through a text.
/// \throws EncodingError
template <typename T>
[[nodiscard]] PropertyList toPropertyList(const T& value, const JSONEncoder& encoder = {}) {
  return PropertyList::fromJSON(encoder.encode(value));
}

/// The reverse. The decoder must have the date form of the encoder. It goes through a text.
/// \throws DecodingError
template <typename T>
[[nodiscard]] T fromPropertyList(const PropertyList& list, const JSONDecoder& decoder = {}) {
  return decoder.decode<T>(JSONEncoder{.dateForm = decoder.dateForm}.encode(list));
}

}  // namespace platform
