#pragma once

#include "Foundation/Dispatch/DispatchGroup.h"
#include "OxKit/Platform.h"

namespace velloro {

/// Work that its user does not wait for and that is to end before the process does: whoever ends
/// the process asks `running` to notify it first.
class BackgroundTask {
 public:
  BackgroundTask() { running().enter(); }
  BackgroundTask(const BackgroundTask&) { running().enter(); }
  BackgroundTask& operator=(const BackgroundTask&) = default;
  ~BackgroundTask() { running().leave(); }

  [[nodiscard]] static const DispatchGroup& running() {
    static const auto* const group = new DispatchGroup;
    return *group;
  }
};

}  // namespace velloro
