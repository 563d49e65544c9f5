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
  /// Sorts the keys of every object by their bytes, instead of keeping the order in which they are
  /// written. Costs a second pass.
  bool sortsKeys = false;

  /// \throws EncodingError
  template <typename T>
  [[nodiscard]] std::string encode(const T& value) const {
    std::string json;
    encode(value, [&](std::string_view piece) { json += piece; });
    return json;
  }

  /// Passes the text to a sink in pieces of at most 256 KiB. If this throws, the sink may have
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

/// Reads values from JSON. A value that can't be read is left out where that is possible
/// (Coding.h). A strict decoder fails instead: use it for documents that are imported as a whole or
/// not at all, and to look for damage.
///
///     JSONDecoder{}.decode<std::map<std::string, int>>(R"({"a":1})").at("a");    // 1
///     JSONDecoder{}.decode<std::optional<int>>("null");                          // absent
///     JSONDecoder{}.decode<Date>("731505600") == Date::now();                    // true
///     JSONDecoder{}.decode<std::vector<std::string>>(R"(["a","b",5])");
///         // throws DecodingError: "[2]: Expected a text, found the number 5."
struct JSONDecoder {
  DateForm dateForm = DateForm::secondsSinceReferenceDate;
  bool isStrict = false;
  /// Called for each value that was left out, for example to log it; may be null.
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

/// The property list that the JSON form of a value reads as: dates and binary data have their JSON
/// forms. It is made by way of a text.
/// \throws EncodingError
template <typename T>
[[nodiscard]] PropertyList toPropertyList(const T& value, const JSONEncoder& encoder = {}) {
  return PropertyList::fromJSON(encoder.encode(value));
}

/// The reverse. The decoder must have the date form of the encoder. It is made by way of a text.
/// \throws DecodingError
template <typename T>
[[nodiscard]] T fromPropertyList(const PropertyList& list, const JSONDecoder& decoder = {}) {
  return decoder.decode<T>(JSONEncoder{.dateForm = decoder.dateForm}.encode(list));
}

}  // namespace platform
