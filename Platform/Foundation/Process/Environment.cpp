#include "Foundation/Process/Environment.h"

#include "Foundation/Process/ProcessEnvironment.h"

namespace platform {

Environment& Environment::machine() {
  static auto* environment = new ProcessEnvironment;  // background work may outlast static objects
  return *environment;
}

Environment* Environment::install(Environment* environment) {
  return installed_.exchange(environment, std::memory_order_acq_rel);
}

}  // namespace platform
