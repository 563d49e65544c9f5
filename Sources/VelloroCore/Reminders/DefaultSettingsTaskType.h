#pragma once

#include "Foundation/Time/Date.h"
#include "OxKit/Platform.h"

#include <variant>

namespace velloro {

/// The kinds of tasks that begin with different settings.
struct DefaultSettingsTaskType {
  struct Timer {
    TimeInterval duration = 0;
    bool operator==(const Timer&) const = default;
  };
  struct ScreenTime {
    TimeInterval duration = 0;
    bool operator==(const ScreenTime&) const = default;
  };
  struct Untimed {
    bool operator==(const Untimed&) const = default;
  };
  struct Meditation {
    bool operator==(const Meditation&) const = default;
  };
  std::variant<Timer, ScreenTime, Untimed, Meditation> value;

  [[nodiscard]] static DefaultSettingsTaskType timer(TimeInterval duration) {
    return {Timer{duration}};
  }
  [[nodiscard]] static DefaultSettingsTaskType screenTime(TimeInterval duration) {
    return {ScreenTime{duration}};
  }
  [[nodiscard]] static DefaultSettingsTaskType untimed() { return {Untimed{}}; }
  [[nodiscard]] static DefaultSettingsTaskType meditation() { return {Meditation{}}; }

  bool operator==(const DefaultSettingsTaskType&) const = default;
};

}  // namespace velloro
