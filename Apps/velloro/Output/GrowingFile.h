#pragma once

#include "Foundation/Files/OutputFile.h"
#include "OxKit/Platform.h"

#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// A file that a person asked for, written piece by piece, so that no more than a piece is ever in
/// memory; see `OutputFile`. "-" is the standard output.
///
///     GrowingFile file(environment_.directories().temporary / "check.png", "--png");
///     for (const std::string_view piece : {"first", "second"}) file.add(piece);
///     file.finish();
///
/// \throws Error From each call, with a text that names the option and the file.
class GrowingFile {
 public:
  /// \param option The option that named the file.
  GrowingFile(std::string file, std::string option);

  void add(std::string_view piece);
  void finish();

 private:
  template <typename T>
  T checked(Result<T> result) const;

  std::string file_;
  std::string option_;
  std::optional<OutputFile> output_;  ///< Absent for the standard output.
};

/// Writes a file of one piece. \throws Error
void writeFile(std::string_view bytes, const std::string& file, const std::string& option);

}  // namespace velloro
