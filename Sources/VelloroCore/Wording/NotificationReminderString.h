#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"
#include "VelloroCore/Status/StreakRecord.h"
#include "VelloroCore/Wording/NotificationIndividualReminder.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>

namespace velloro {

/// Where the last day of a period lies, seen from the day of a reminder.
enum class PeriodEndRelation : std::uint8_t {
  past,  ///< Before yesterday.
  yesterday,
  today,
  tomorrow,
  withinWeek,  ///< Less than 8 days ahead.
  later,
};

constexpr auto rawValues(std::type_identity<PeriodEndRelation>) {
  return caseNames<PeriodEndRelation::later>();
}

[[nodiscard]] PeriodEndRelation periodEndRelation(YYYYMMDD lastDay, YYYYMMDD date,
                                                  const CountedIn& timeZone);

/// The text that a reminder shows, as keys of the string tables and what goes into them.
///
///     // A week that ends on Sunday, seen from Friday
///     const auto string = NotificationReminderString::from(
///         NotificationIndividualReminder::extendBest, TaskFrequencyPeriodType::week,
///         PeriodEndRelation::withinWeek, /*includeTaskName=*/false);
///     string->stringKey;    // "NotificationIndividualMotivationExtendBest.NoTask.PeriodEnd"
///     string->param1;       // NotificationReminderString::ParameterType::periodEnd
struct NotificationReminderString {
  enum class ParameterType : std::uint8_t {
    taskTitle,
    streakAtDate,
    bestStreakAtDate,
    completionsComplete,  ///< Completed days of the period in which days are counted.
    completionsTarget,
    partialCompletionsComplete,  ///< Steps of the period in which the log is kept.
    partialCompletionsTarget,
    quantityComplete,  ///< Amounts with their unit; in the bracket without.
    quantityTarget,
    periodEnd,
  };

  std::string_view stringKey;
  std::optional<ParameterType> param1 = {};
  std::optional<ParameterType> param2 = {};
  std::optional<ParameterType> param3 = {};
  /// Of a text around the first one, which is its {0}.
  std::optional<std::string_view> bracketStringKey = {};
  std::optional<ParameterType> bracketParam1 = {};
  std::optional<ParameterType> bracketParam2 = {};

  /// Absent where a kind has no words for a period of that type or end.
  ///
  /// \param periodType That of the period in which the task's log is kept.
  [[nodiscard]] static std::optional<NotificationReminderString> from(
      NotificationIndividualReminder kind, TaskFrequencyPeriodType periodType,
      PeriodEndRelation endRelation, bool includeTaskName);

  /// With the current and the best run behind it, unless there is no run, the string has a bracket
  /// already, or tells the run itself.
  [[nodiscard]] NotificationReminderString withStreakBracket(const StreakRecord& streak) const;

  [[nodiscard]] std::array<std::optional<ParameterType>, 3> parameters() const {
    return {param1, param2, param3};
  }
  [[nodiscard]] std::array<std::optional<ParameterType>, 2> bracketParameters() const {
    return {bracketParam1, bracketParam2};
  }
  /// In the text or in its bracket.
  [[nodiscard]] bool has(ParameterType parameter) const;

  bool operator==(const NotificationReminderString&) const = default;
};

constexpr auto rawValues(std::type_identity<NotificationReminderString::ParameterType>) {
  return caseNames<NotificationReminderString::ParameterType::periodEnd>();
}

}  // namespace velloro
