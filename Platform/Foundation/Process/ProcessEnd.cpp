#include "Foundation/Process/ProcessEnd.h"

#include <cstdio>
#include <cstdlib>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

#ifdef __SANITIZE_THREAD__
// By default the first race would be told at once but turned into an exit code only by a handler at
// exit, which does not run here.
extern "C" const char* __tsan_default_options() {
  return "halt_on_error=1";
}
#endif

namespace platform {

void endProcess(int exitCode) {
  std::fflush(nullptr);
#ifdef __SANITIZE_ADDRESS__
  __lsan_do_leak_check();
#endif
  std::_Exit(exitCode);
}

}  // namespace platform
