#pragma once

#include "VelloroCore/Titles/TaskDisplayTitle.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace velloro {

/// Titles of a task whose amount changes, as while its target is being edited; see
/// `TaskTitleFormatter`.
struct TaskTitleDynamicFormatter {
  std::optional<std::string> customTitle = {};
  std::optional<AutomaticTaskType> type = {};
  bool isNegative = false;
  std::int64_t numPartialCompletions = 1;
  TaskDisplayTitle::Context context = TaskDisplayTitle::Context::voiceOver;

  bool operator==(const TaskTitleDynamicFormatter&) const = default;
  [[nodiscard]] double currentValue(double progress) const;
  [[nodiscard]] std::optional<TaskDisplayTitle> displayTitle(double quantity,
                                                             const Locale& locale) const;
};

/// One title, whatever the amount.
struct TaskTitleStaticFormatter {
  TaskDisplayTitle displayTitle = {};
  TaskDisplayTitle::Context context = TaskDisplayTitle::Context::voiceOver;

  bool operator==(const TaskTitleStaticFormatter&) const = default;
  [[nodiscard]] double currentValue(double progress) const;
};

/// For a place where no task is yet.
struct TaskTitlePlaceholderFormatter {
  static constexpr TaskDisplayTitle::Context context = TaskDisplayTitle::Context::voiceOver;

  bool operator==(const TaskTitlePlaceholderFormatter&) const = default;
  [[nodiscard]] double currentValue(double) const { return 0; }
  [[nodiscard]] std::optional<TaskDisplayTitle> displayTitle(double, const Locale&) const {
    return TaskDisplayTitle{};
  }
};

/// The title for an amount, in the unit of the task's type: any of the three behind one interface.
///
///     const AutomaticTaskType eightCups(HealthType::dietaryDrinkWater,
///                                       TaskTarget{8, TypeUnit::cupsUS});
///     const TaskTitleFormatter water = TaskTitleDynamicFormatter{
///         .customTitle = "Drink", .type = eightCups, .numPartialCompletions = 2};
///     water.formattedTitle(3, locale);       // "Drink"
///     water.formattedSubtitle(3, locale);    // "3 cups"
///     water.currentValue(0.25);              // 3: of the 4 cups of one part, a quarter is done
struct TaskTitleFormatter {
  std::variant<TaskTitlePlaceholderFormatter, TaskTitleStaticFormatter, TaskTitleDynamicFormatter>
      formatter = {};

  TaskTitleFormatter() = default;
  TaskTitleFormatter(TaskTitlePlaceholderFormatter of) : formatter(of) {}
  TaskTitleFormatter(TaskTitleStaticFormatter of) : formatter(std::move(of)) {}
  TaskTitleFormatter(TaskTitleDynamicFormatter of) : formatter(std::move(of)) {}

  bool operator==(const TaskTitleFormatter&) const = default;

  /// Absent for a title without a text.
  [[nodiscard]] std::optional<std::string> formattedTitle(double quantity,
                                                          const Locale& locale) const;
  /// What stands beside it: a second text or the amount.
  [[nodiscard]] std::optional<std::string> formattedSubtitle(double quantity,
                                                             const Locale& locale) const;
  /// The amount that is left of the completion under way when that share of it, 0 to 1, is done.
  [[nodiscard]] double currentValue(double progress) const;
  [[nodiscard]] std::optional<TaskDisplayTitle> displayTitle(double quantity,
                                                             const Locale& locale) const;
};

}  // namespace velloro
