#include "Foundation/Process/SlowPoll.h"

#include "Foundation/Dispatch/NSNotificationCenter.h"

#include <atomic>

namespace platform {
namespace {

std::atomic<bool> isMadeCommon = false;

}  // namespace

void SlowPoll::makeCommon() {
  isMadeCommon = true;
}

bool SlowPoll::isCommon() {
  return isMadeCommon;
}

void SlowPoll::look() {
  NSNotificationCenter::defaultCenter().post({.name = looks});
}

}  // namespace platform
