#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

namespace velloro {

/// The kinds of records of a task's progress in a period; see `TaskProgress`.
enum class TaskProgressType : std::int8_t {
  discrete,
  continuous,
  timer,
  activity,
  simple,
  dateRange,
};

constexpr auto rawValues(std::type_identity<TaskProgressType>) {
  using enum TaskProgressType;
  return rawTexts<TaskProgressType>({{discrete, "discrete"},
                                     {continuous, "continuous"},
                                     {timer, "timer"},
                                     {activity, "activity"},
                                     {simple, "simple"},
                                     {dateRange, "dateRange"}});
}

/// How many completions a period asks for. A count below 1 becomes 1; only one that was stored
/// stays as it is, so that it is written back as it was read.
///
///     ExpectedCompletions(0) == 1;    // true
struct ExpectedCompletions {
  std::int64_t count = 1;

  constexpr ExpectedCompletions() = default;
  constexpr ExpectedCompletions(std::int64_t wanted) : count(std::max<std::int64_t>(wanted, 1)) {}
  constexpr operator std::int64_t() const { return count; }
  static constexpr auto codingValue = &ExpectedCompletions::count;

  /// What to divide a whole by for its part of one completion.
  [[nodiscard]] constexpr double divisor() const {
    return static_cast<double>(std::max<std::int64_t>(count, 1));
  }
  /// One completion more, at most as many as are expected.
  [[nodiscard]] constexpr std::int64_t after(std::int64_t numCompletions) const {
    return numCompletions < count ? numCompletions + 1 : count;
  }
};

/// What stands in for a count of which nothing is known: one more than the record says are done,
/// and at least 2, so that neither what is done nor the next step makes the task look complete.
[[nodiscard]] ExpectedCompletions expectedCompletionsStandIn(const Decoder& record);

}  // namespace velloro
