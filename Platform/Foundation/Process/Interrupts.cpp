#include "Foundation/Process/Interrupts.h"

#include <csignal>
#include <thread>
#include <utility>

namespace platform {

void onInterrupt(Block ask) {
  sigset_t wishes;
  sigemptyset(&wishes);
  sigaddset(&wishes, SIGINT);
  sigaddset(&wishes, SIGTERM);
  // Blocked here, they are blocked in every thread begun from now on, and wait for this one.
  pthread_sigmask(SIG_BLOCK, &wishes, nullptr);
  std::thread([wishes, ask = std::move(ask)]() mutable {
    int wish = 0;
    sigwait(&wishes, &wish);
    pthread_sigmask(SIG_UNBLOCK, &wishes, nullptr);
    ask();
    sigset_t none;
    sigemptyset(&none);
    for (;;) sigsuspend(&none);
  }).detach();
}

}  // namespace platform
