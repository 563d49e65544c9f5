#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "VelloroCore/Types/TypeSpeed.h"
#include "VelloroCore/Types/TypeUnit.h"

namespace velloro {

/// How much of an automatic task is called for; `AutomaticTaskType::TaskTarget`.
struct TaskTarget {
  double quantity = 0;  ///< In `unit`.
  TypeUnit unit = TypeUnit::durationSeconds;
  TypeSpeeds speeds = {};

  bool operator==(const TaskTarget&) const = default;
  static constexpr auto codingKeys =
      keys(key("quantity", &TaskTarget::quantity), key("unit", &TaskTarget::unit),
           key("speeds", &TaskTarget::speeds, initialValue));
};

}  // namespace velloro
