#pragma once

#include "Foundation/Values/Error.h"
#include "OxKit/Platform.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// A place in a text, both counted from 1: line feeds, also those in quotes, and characters.
struct CSVPlace {
  std::size_t line = 1;
  std::size_t column = 1;

  bool operator==(const CSVPlace&) const = default;
};

/// Why a text of comma-separated values can't be read. Its description is the message alone.
class CSVError : public Error {
 public:
  enum class Kind : std::uint8_t {
    unreadableFile,
    emptyHeader,
    equalHeaders,
    differentLength,
    endInQuotes,
    quoteInField,
    textBehindQuote,
    notUTF8,
    date,
    value,  ///< Of another column than a date's.
  };

  explicit CSVError(Kind kind, std::optional<CSVPlace> place = {});
  /// Of a value.
  CSVError(Kind kind, CSVPlace place, const std::string& message);

  [[nodiscard]] Kind kind() const { return kind_; }
  /// What to do about it; empty for a value.
  [[nodiscard]] std::string_view help() const;
  /// Absent for a file that can't be read.
  [[nodiscard]] const std::optional<CSVPlace>& place() const { return place_; }

 private:
  Kind kind_;
  std::optional<CSVPlace> place_;
};

}  // namespace velloro
