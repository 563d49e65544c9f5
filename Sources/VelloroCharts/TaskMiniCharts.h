#pragma once

#include "Foundation/Coding/Coding.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <optional>
#include <string>

namespace platform {
class Locale;
}

namespace velloro {

/// A number with its name.
struct TaskMiniChartStatistic {
  /// Exactly one of the three is there.
  struct Value {
    std::optional<std::string> stringValue = {};
    std::optional<std::int64_t> intValue = {};
    std::optional<double> percentageValue = {};  ///< A share of 1.

    bool operator==(const Value&) const = default;
    static constexpr auto codingKeys =
        keys(key("stringValue", &Value::stringValue), key("intValue", &Value::intValue),
             key("percentageValue", &Value::percentageValue));

    /// "1,234", "75%"; empty where there is no value.
    [[nodiscard]] std::string localizedValue(const Locale& locale) const;
  };

  std::string title;
  std::optional<std::string> shortTitle = {};
  Value value = {};

  bool operator==(const TaskMiniChartStatistic&) const = default;
  static constexpr auto codingKeys = keys(key("title", &TaskMiniChartStatistic::title),
                                          key("shortTitle", &TaskMiniChartStatistic::shortTitle),
                                          key("value", &TaskMiniChartStatistic::value));

  [[nodiscard]] std::string accessibilityLabel(const Locale& locale) const;
};

/// A small gauge with one or two numbers.
///
///     const auto chart = TaskMiniChart::currentBestStreak("Current", 3, "Best", 12);
///     chart.progress;                               // 0.25
///     *chart.secondaryStatistic->value.intValue;    // 12
struct TaskMiniChart {
  double progress = 0;  ///< 0 to 1.
  TaskMiniChartStatistic primaryStatistic;
  std::optional<TaskMiniChartStatistic> secondaryStatistic = {};

  bool operator==(const TaskMiniChart&) const = default;
  static constexpr auto codingKeys =
      keys(key("progress", &TaskMiniChart::progress),
           key("primaryStatistic", &TaskMiniChart::primaryStatistic),
           key("secondaryStatistic", &TaskMiniChart::secondaryStatistic));

  /// Two runs; a best one that is shorter than the current one becomes as long.
  [[nodiscard]] static TaskMiniChart currentBestStreak(const std::string& currentLabel,
                                                       std::int64_t current,
                                                       const std::string& bestLabel,
                                                       std::int64_t best);
  [[nodiscard]] std::string accessibilityLabel(const Locale& locale) const;
};

/// Three gauges, one below the other.
struct TaskMiniCharts {
  TaskMiniChart top, middle, bottom;

  bool operator==(const TaskMiniCharts&) const = default;
  static constexpr auto codingKeys =
      keys(key("top", &TaskMiniCharts::top), key("middle", &TaskMiniCharts::middle),
           key("bottom", &TaskMiniCharts::bottom));

  [[nodiscard]] std::string accessibilityLabel(const Locale& locale) const;
};

}  // namespace velloro
