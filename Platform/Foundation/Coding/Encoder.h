#pragma once

#include "Foundation/Coding/CodingError.h"
#include "Foundation/Coding/JSONWriter.h"
#include "Foundation/Time/Date.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// How values of one type are written and read (Coding.h).
template <typename T>
struct Coding;

class ObjectEncoder;
class ArrayEncoder;

/// The place in a document where one value is to be written. A type with a form of its own has a
/// member `void encode(Encoder&) const`, which writes exactly one value:
///
///     struct Span {
///       std::optional<int> days;
///       void encode(Encoder& to) const { to.object([&](auto& o) { o.encode("days", days); }); }
///     };
///
///     JSONEncoder{}.encode(Span{7});    // {"days":7}
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

}  // namespace platform
