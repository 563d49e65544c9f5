#pragma once

#include "Agent/QuietTime.h"
#include "Foundation/Time/Date.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// One agent from its start to its end, with all that it listens to.
class AgentRun {
 public:
  enum class Voice : std::uint8_t { desktop, print, exec };
  struct Options {
    Voice voice = Voice::desktop;
    bool isOnce = false;
    bool isJSON = false;
    bool mayBeUrgent = false;
    std::string command = {};
    std::optional<QuietHours> quietHours = {};
    std::vector<TimeInterval> snoozes = {};
  };

  explicit AgentRun(Options options) : options_(std::move(options)) {}

  /// Returns when it was interrupted, or all is shown. \throws HostError if the store can't be
  /// opened, or there is no desktop to show anything on.
  void run() const;

 private:
  Options options_;
};

}  // namespace velloro
