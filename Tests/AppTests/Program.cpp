#include "AppTests/Program.h"

#include "Foundation/Process/VirtualEnvironment.h"

#include <cstdio>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <sys/wait.h>

namespace velloro {

ProgramResult runProgram(const std::string& arguments) {
  const platform::VirtualEnvironment environment;
  const auto errorFile = environment.directories().temporary / "errors";
  const std::string command = "LC_ALL=en_US.UTF-8 TZ=UTC '" VELLORO_PROGRAM "' " + arguments +
                              " 2>'" + errorFile.string() + "'";
  ProgramResult result;
  FILE* pipe = popen(command.c_str(), "r");
  char buffer[4096];
  while (const std::size_t count = fread(buffer, 1, sizeof buffer, pipe)) {
    result.output.append(buffer, count);
  }
  const int status = pclose(pipe);
  result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  std::ifstream errors(errorFile);
  result.errors.assign(std::istreambuf_iterator<char>(errors), {});
  return result;
}

void expectRefusal(const std::string& arguments, const std::string& complaint) {
  const auto result = runProgram(arguments);
  EXPECT_EQ(result.exitCode, 2) << arguments;
  EXPECT_EQ(result.output, "") << arguments;
  EXPECT_THAT(result.errors, testing::HasSubstr(complaint)) << arguments;
}

}  // namespace velloro
