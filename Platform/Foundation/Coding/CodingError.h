#pragma once

#include "Foundation/Values/Error.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

/// The position of a coder in a document, as a list of steps on the stack. A step costs a few
/// stores; the text of the path is made only if something fails.
///
///     const CodingPath root, tasks(root, "tasks"), third(tasks, 3), days(third, "days");
///     days.text();  // "tasks[3].days"
class CodingPath {
 public:
  CodingPath() = default;
  /// A step to a key or an index. The parent and the key must outlive it.
  CodingPath(const CodingPath& parent, std::string_view key)
      : parent_(&parent), key_(key.data()), sizeOrIndex_(key.size()) {}
  CodingPath(const CodingPath& parent, std::size_t index) : parent_(&parent), sizeOrIndex_(index) {}

  /// Empty for the root.
  [[nodiscard]] std::string text() const;

 private:
  const CodingPath* parent_ = nullptr;
  const char* key_ = nullptr;  ///< Null for an index.
  std::size_t sizeOrIndex_ = 0;
};

/// Why a text could not be read as a value of a type. Its description is the path followed by the
/// debug description: "tasks[3].frequency.days: Unable to create YYYYMMDD from -5".
class DecodingError : public Error {
 public:
  enum class Kind {
    typeMismatch,   ///< The value has another type.
    valueNotFound,  ///< The value is null, but is needed.
    keyNotFound,    ///< A needed key is missing; the path is that of its object.
    dataCorrupted,  ///< The type is right, but not the value; or the text is no JSON.
  };

  DecodingError(Kind kind, std::string codingPath, std::string debugDescription);

  [[nodiscard]] Kind kind() const { return kind_; }
  /// Such as "tasks[3].frequency.days"; empty for the document itself.
  [[nodiscard]] const std::string& codingPath() const { return codingPath_; }
  [[nodiscard]] const std::string& debugDescription() const { return debugDescription_; }

  /// Whether one value alone is wrong: it has the right type but no known meaning, or it is null. A
  /// reader that is not strict continues without it (`JSONDecoder`). False if a key is missing or a
  /// value has another type, for the tag of a variant, and for a text that is not JSON.
  [[nodiscard]] bool isOfOneValue() const { return isOfOneValue_; }
  /// The same failure, of a value that is indispensable.
  [[nodiscard]] DecodingError ofMoreThanOneValue() const;

 private:
  Kind kind_;
  bool isOfOneValue_;
  std::string codingPath_;
  std::string debugDescription_;
};

/// Why a value could not be written: a number that is not finite, a text that is not UTF-8, a date
/// beyond the calendar of its form, a nesting that could not be read again.
class EncodingError : public Error {
 public:
  EncodingError(std::string codingPath, std::string debugDescription);

  [[nodiscard]] const std::string& codingPath() const { return codingPath_; }
  [[nodiscard]] const std::string& debugDescription() const { return debugDescription_; }

 private:
  std::string codingPath_;
  std::string debugDescription_;
};

}  // namespace platform
