#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// What one automatic type offers in a period, as `velloro types` prints it.
struct TypeReport {
  /// The targets in one unit. A range without steps has a default alone.
  struct Range {
    TypeUnit unit = TypeUnit::steps;
    std::optional<double> first;
    std::optional<double> last;
    std::size_t count = 0;
    std::optional<double> defaultValue;

    static constexpr auto codingKeys =
        keys(key("unit", &Range::unit), key("first", &Range::first), key("last", &Range::last),
             key("count", &Range::count), key("default", &Range::defaultValue));
  };
  /// Of a task with the default target.
  struct PartialCompletions {
    std::int64_t minimum = 0;
    std::int64_t maximum = 0;
    std::int64_t atFirst = 0;
    std::int64_t suggested = 0;

    static constexpr auto codingKeys = keys(key("minimum", &PartialCompletions::minimum),
                                            key("maximum", &PartialCompletions::maximum),
                                            key("default", &PartialCompletions::atFirst),
                                            key("suggested", &PartialCompletions::suggested));
  };

  TaskType type;
  std::string period;
  std::vector<TypeUnit> unitOptions;
  std::vector<TypeSpeed> speedOptions;
  std::optional<TaskTarget> defaultTarget;
  std::vector<Range> ranges;
  PartialCompletions partialCompletions;
  std::vector<std::string> frequencyModes;

  static constexpr auto codingKeys = keys(
      key("type", &TypeReport::type), key("period", &TypeReport::period),
      key("unitOptions", &TypeReport::unitOptions), key("speedOptions", &TypeReport::speedOptions),
      key("defaultTarget", &TypeReport::defaultTarget), key("ranges", &TypeReport::ranges),
      key("partialCompletions", &TypeReport::partialCompletions),
      key("frequencyModes", &TypeReport::frequencyModes));

  [[nodiscard]] static TypeReport of(TaskType type, TaskFrequencyPeriodType period);

  [[nodiscard]] std::string json() const;
  [[nodiscard]] std::string text() const;
};

/// One array, and one line per type.
[[nodiscard]] std::string json(const std::vector<TypeReport>& reports);
[[nodiscard]] std::string table(const std::vector<TypeReport>& reports);

}  // namespace velloro
