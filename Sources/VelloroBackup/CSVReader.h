#pragma once

#include "VelloroBackup/CSVError.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// Reads comma-separated values in one pass. Rows end with a line feed alone, fields are separated
/// by commas, and a field in double quotes may hold both, and quotes that are doubled. The first
/// row has the headers, and every row as many fields.
///
///     CSVReader reader("title,notes\n\"Read, a lot\",\"say \"\"yes\"\"\"\n");
///     reader.next();               // true
///     reader.fields()[0].text;     // "Read, a lot"
///     reader.fields()[1].text;     // "say \"yes\""
///     reader.next();               // false
///     CSVReader("a,b\r\n1,2\r\n");    // throws CSVError
class CSVReader {
 public:
  struct Field {
    std::string_view text;  ///< Empty also for a field of two quotes alone.
    std::size_t at = 0;     ///< Where it begins, its quote included.
  };

  /// Reads the headers. The bytes are UTF-8, or as their byte order mark says UTF-16, and outlive
  /// the reader. \throws CSVError
  explicit CSVReader(std::string_view bytes);
  CSVReader(const CSVReader&) = delete;
  CSVReader& operator=(const CSVReader&) = delete;

  [[nodiscard]] const std::vector<std::string>& headers() const { return headers_; }
  /// Goes to the next row; false behind the last one. \throws CSVError
  [[nodiscard]] bool next();
  /// Of the present row; their texts live until the next one.
  [[nodiscard]] const std::vector<Field>& fields() const { return fields_; }
  /// For the place of a field.
  [[nodiscard]] CSVPlace place(std::size_t at) const;

 private:
  using Kind = CSVError::Kind;

  void readRow();
  std::size_t readField(std::size_t start);
  std::size_t readQuoted(std::size_t start);
  [[nodiscard]] std::size_t endOfField(std::size_t from) const;
  void checkHeaders();
  void validate(std::size_t to);
  [[noreturn]] void fail(Kind kind, std::size_t at);

  std::string converted_;  ///< Of UTF-16.
  std::string_view text_;
  std::size_t at_ = 0;         ///< Where the next row begins.
  std::size_t validated_ = 0;  ///< Up to there it is UTF-8.
  std::vector<std::string> headers_;
  std::vector<Field> fields_;
  std::vector<std::string> unescaped_;  ///< Texts of the present row that had doubled quotes.
};

}  // namespace velloro
