#include "Foundation/Environment.h"

#include "Foundation/ProcessEnvironment.h"

#include <atomic>

namespace platform {
namespace {

std::atomic<Environment*> installed = nullptr;

Environment& machine() {
  static auto* environment = new ProcessEnvironment;  // background work may outlast static objects
  return *environment;
}

}  // namespace

Environment& Environment::current() {
  Environment* environment = installed.load(std::memory_order_acquire);
  return environment != nullptr ? *environment : machine();
}

Environment* Environment::install(Environment* environment) {
  return installed.exchange(environment, std::memory_order_acq_rel);
}

}  // namespace platform
