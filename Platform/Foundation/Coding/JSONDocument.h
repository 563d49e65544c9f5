#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

/// The greatest depth of nested objects and arrays, for reading and writing. When reading, an empty
/// one may lie one level deeper.
inline constexpr std::size_t maximumJSONDepth = 512;

/// A text of more bytes is not read.
inline constexpr std::size_t maximumJSONSize = std::size_t{256} << 20;

/// A value in a parsed JSON text: two words, valid as long as its `JSONDocument` exists. Check its
/// kind before its value.
class JSONNode {
 public:
  enum class Kind : std::uint8_t {
    null,
    boolean,
    integer,
    unsignedInteger,  ///< An integer beyond 2^63 - 1.
    real,
    text,
    array,
    object,
  };

  [[nodiscard]] Kind kind() const;
  [[nodiscard]] bool boolean() const;
  [[nodiscard]] std::int64_t integer() const;
  [[nodiscard]] std::uint64_t unsignedInteger() const;
  /// Of a number of any kind. The largest double, and what lies beyond it, is infinite.
  [[nodiscard]] double real() const;
  [[nodiscard]] std::string_view text() const;
  /// The elements of an array or the fields of an object; counts beyond 2^24 - 1 stay at that.
  [[nodiscard]] std::size_t count() const;
  /// For a message: "null", "the number 3.5", "the text \"abc\"" (cut where it is long).
  [[nodiscard]] std::string description() const;

 private:
  friend struct JSONHandle;
  /// A handle of the parser, whose type stays in one source.
  alignas(void*) std::array<std::byte, 2 * sizeof(void*)> handle_;
};

/// Walks the elements of an array.
class JSONElements {
 public:
  explicit JSONElements(JSONNode array);
  /// False behind the last one.
  bool next(JSONNode& element);

 private:
  JSONNode position_;
  JSONNode end_;
};

/// Walks the fields of an object, in the order of the text.
class JSONFields {
 public:
  explicit JSONFields(JSONNode object);
  /// False behind the last one.
  bool next(std::string_view& key, JSONNode& value);

 private:
  JSONNode position_;
  JSONNode end_;
};

/// A parsed JSON text. The text itself is no longer needed.
class JSONDocument {
 public:
  static constexpr std::size_t readAhead = 64;

  /// An integer beyond 64 bits is kept as a real, and a number beyond the range of a double as an
  /// infinite one: it is for the reader of that value to refuse it.
  /// \throws DecodingError for a text that is no JSON, that is not UTF-8, that is longer than
  ///     `maximumJSONSize` or lies deeper than `maximumJSONDepth`, or that holds half of a
  ///     surrogate pair ("\ud800"). Its description names the place.
  /// \param readableBehind How many bytes behind the text belong to its memory. From
  ///     `readAhead` on, the text needs no copy.
  explicit JSONDocument(std::string_view text, std::size_t readableBehind = 0);
  ~JSONDocument();

  [[nodiscard]] JSONNode root() const { return root_; }

 private:
  struct Parser;
  struct GiveBack {
    void operator()(Parser* parser) const;
  };

  std::unique_ptr<Parser, GiveBack> parser_;
  JSONNode root_;
};

}  // namespace platform
