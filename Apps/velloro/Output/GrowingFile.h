#pragma once

#include "Foundation/Values/Error.h"
#include "OxKit/Platform.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace velloro {

/// A file that is written piece by piece, so that no more than a piece is ever held. It takes its
/// name when it is complete, and leaves nothing behind when it is not. "-" is the standard output.
///
///     GrowingFile file("check.png", "--png");
///     for (const std::string& piece : pieces) file.add(piece);
///     file.finish();
///
/// \throws std::runtime_error From each call, naming the option and the file.
class GrowingFile {
 public:
  /// \param option By which the person named the file.
  GrowingFile(std::string file, std::string option);
  ~GrowingFile();
  GrowingFile(const GrowingFile&) = delete;
  GrowingFile& operator=(const GrowingFile&) = delete;

  void add(std::string_view piece);
  void finish();

 private:
  [[nodiscard]] bool isStandardOutput() const { return file_ == "-"; }
  void check(const Result<void>& done) const;

  std::string file_;
  std::string option_;
  std::filesystem::path hidden_;  // beside the file, until it is complete
};

}  // namespace velloro
