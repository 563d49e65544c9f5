#pragma once

#include <string>

namespace velloro {

struct ProgramResult {
  std::string output;  ///< What came on standard output.
  std::string errors;  ///< What came on standard error.
  int exitCode = 0;
};

/// Runs the built program as a person would, through the shell.
///
///     runProgram("day 20240307 --json").exitCode;  // 0
[[nodiscard]] ProgramResult runProgram(const std::string& arguments);

/// Whether the program refuses arguments as unusable: exit code 2, nothing on standard output, and
/// `complaint` in what it says on standard error.
void expectRefusal(const std::string& arguments, const std::string& complaint);

}  // namespace velloro
