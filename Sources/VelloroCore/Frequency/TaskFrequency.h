#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxKit/EnumSet.h"
#include "OxKit/FunctionRef.h"
#include "VelloroCore/Frequency/DatedPeriod.h"
#include "VelloroCore/Frequency/DayMode.h"
#include "VelloroCore/Frequency/DaysOfMonth.h"
#include "VelloroCore/Frequency/SkipMode.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloro {

/// How often a task is due.
///
///     const TaskFrequency thrice{.dayMode = DayMode::numberOfDaysInWeek, .numCompletions = 3};
///     thrice.period({2024, 3, 6}, DayOfWeek::sunday, berlin).period.numberOfDays(berlin);   // 1
struct TaskFrequency {
  using DayMode = velloro::DayMode;
  using SkipMode = velloro::SkipMode;

  DayMode dayMode = DayMode::specificDaysOfWeek;
  EnumSet<DayOfWeek> days = everyDay();    ///< For `specificDaysOfWeek`.
  DaysOfMonth daysOfMonth = {};            ///< For `specificDaysOfMonth`.
  std::int64_t numPartialCompletions = 1;  ///< The steps that make one full completion.
  std::int64_t numCompletions = 7;  ///< Completed days per period, for modes that count them.
  std::int64_t dayInterval = 2;     ///< Days from one completion to the next, for `dayInterval`.

  /// Every day of the week.
  static const TaskFrequency defaultFrequency;

  bool operator==(const TaskFrequency&) const = default;
  static constexpr auto codingKeys =
      keys(key("dayMode", &TaskFrequency::dayMode, initialWhenUnknown),
           key("days", &TaskFrequency::days),
           key("daysOfMonth", &TaskFrequency::daysOfMonth, initialWhenUnknown),
           key("numPartialCompletions", &TaskFrequency::numPartialCompletions, initialWhenUnknown),
           key("numCompletions", &TaskFrequency::numCompletions, initialWhenUnknown),
           key("dayInterval", &TaskFrequency::dayInterval, initialWhenUnknown));
  /// Names every member, for logs.
  [[nodiscard]] std::string debugDescription() const;

  // What a user can choose.
  static constexpr std::int64_t minPartialCompletions = 1;
  [[nodiscard]] static constexpr std::int64_t maxPartialCompletions(
      TaskFrequencyPeriodType measurementDuration) {
    return measurementDuration == TaskFrequencyPeriodType::day ? 18 : 36;
  }
  static constexpr std::int64_t dailyCompletionMinIntervalDays = 2;
  static constexpr std::int64_t dailyCompletionMaxIntervalDays = 30;
  static constexpr std::int64_t dailyCompletionMinTimesPerWeek = 1;
  static constexpr std::int64_t dailyCompletionMaxTimesPerWeek = 7;
  static constexpr std::int64_t dailyCompletionMinTimesPerFortnight = 1;
  static constexpr std::int64_t dailyCompletionMaxTimesPerFortnight = 14;
  static constexpr std::int64_t dailyCompletionMinTimesPerMonth = 1;
  static constexpr std::int64_t dailyCompletionMaxTimesPerMonth = 31;
  static constexpr std::int64_t dailyCompletionMinTimesPerYear = 1;
  static constexpr std::int64_t dailyCompletionMaxTimesPerYear = 366;

  // The period of the mode's `measurementDuration` that holds today's logical day, a day, or the
  // logical day of an instant.
  [[nodiscard]] DatedPeriod currentPeriod(HHMMSS startOfDay, DayOfWeek firstDayOfWeek,
                                          TimeZone timeZone, Date now) const;
  [[nodiscard]] DatedPeriod period(YYYYMMDD date, DayOfWeek firstDayOfWeek,
                                   const CountedIn& timeZone) const;
  [[nodiscard]] DatedPeriod period(HHMMSS startOfDay, Date date, DayOfWeek firstDayOfWeek,
                                   TimeZone timeZone) const;
  [[nodiscard]] YYYYMMDD startOfPeriod(YYYYMMDD date, DayOfWeek firstDayOfWeek,
                                       const CountedIn& timeZone) const;

  [[nodiscard]] bool hasDay(DayOfWeek day) const { return days.contains(day); }
  void set(DayOfWeek day, bool include);

  /// The completions that are required in the counting period that contains `period.startDate`: at
  /// least 1, and, where the task was created in it, no more than it has days.
  [[nodiscard]] std::int64_t numberOfExpectedTimes(const TaskFrequencyPeriod& period,
                                                   YYYYMMDD taskCreatedDate,
                                                   const CountedIn& timeZone) const;

  /// Whether no day can ever be due, as without any weekday; such a task is not scheduled.
  [[nodiscard]] bool isEmpty() const;

  /// What the log contains for the counting period with the first day of a period.
  struct DaysInPeriodCallbackResponse {
    DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
    std::int64_t numUniqueCompletions = 0;  ///< Completed days so far.
    YYYYMMDD taskCreatedDate = {};
    bool isNegative = false;
    YYYYMMDD fromDate = {};
    YYYYMMDD toDate = {};
  };
  struct DayIntervalResponse {
    std::optional<TaskFrequencyPeriod> periodOfLastCompletionBeforeToday = {};
  };
  /// A period of the mode's `measurementDuration`, and callbacks for what only the log knows. Each
  /// callback receives the period, and is called at most once, and only for the modes that need it.
  struct SkipQuestion {
    const TaskFrequencyPeriod& period;
    HHMMSS startOfDay;
    TimeZone timeZone = TimeZone::gmt();
    FunctionRef<DaysInPeriodCallbackResponse(const TaskFrequencyPeriod&)> daysInPeriodCallback;
    FunctionRef<DayIntervalResponse(const TaskFrequencyPeriod&)> dayIntervalCallback;
    Date now;
  };

  /// What an open period will become if it ends unfinished. Of three days a week none is due before
  /// the days left run short; of Monday, Wednesday and Friday these three are due, and any other
  /// day is a skip.
  ///
  ///     // Friday of a week that begins on Sunday, one day done: two more are needed, one is left.
  ///     const TaskFrequency thrice{.dayMode = DayMode::numberOfDaysInWeek, .numCompletions = 3};
  ///     const auto friday = thrice.period({2024, 3, 8}, DayOfWeek::sunday, berlin).period;
  ///     thrice.shouldSkipPeriod(
  ///         {friday, HHMMSS::midnight, berlin,
  ///          [](auto&) { return TaskFrequency::DaysInPeriodCallbackResponse{{}, 1}; },
  ///          [](auto&) { return TaskFrequency::DayIntervalResponse{}; }, now});
  ///     // SkipMode::willMissWithIndicator
  [[nodiscard]] SkipMode shouldSkipPeriod(const SkipQuestion& question) const;

 private:
  [[nodiscard]] SkipMode skipByInterval(const SkipQuestion& question) const;
  [[nodiscard]] SkipMode skipByCount(const SkipQuestion& question) const;
  [[nodiscard]] TaskFrequencyPeriod countingPeriod(const TaskFrequencyPeriod& period,
                                                   const CountedIn& timeZone) const;
  [[nodiscard]] std::int64_t expectedTimes(const TaskFrequencyPeriod& countingPeriod,
                                           YYYYMMDD taskCreatedDate,
                                           const CountedIn& timeZone) const;
};

inline constexpr TaskFrequency TaskFrequency::defaultFrequency{};

}  // namespace velloro
