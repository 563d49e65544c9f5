#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxKit/Platform.h"

#include <cstdint>

namespace velloro {

/// How many tasks a store holds.
struct TaskCount {
  std::int64_t active = 0;
  std::int64_t archived = 0;

  bool operator==(const TaskCount&) const = default;
  [[nodiscard]] std::int64_t total() const { return active + archived; }

  static constexpr auto codingKeys =
      keys(key("active", &TaskCount::active), key("archived", &TaskCount::archived));
};

}  // namespace velloro
