#include "Foundation/Terminal.h"

#include "Foundation/Environment.h"

#include <unistd.h>

namespace platform {

bool standardOutputHasColors() {
  if (isatty(STDOUT_FILENO) == 0) return false;
  const Environment& environment = Environment::current();
  return environment.variable("NO_COLOR").empty() && environment.variable("TERM") != "dumb";
}

}  // namespace platform
