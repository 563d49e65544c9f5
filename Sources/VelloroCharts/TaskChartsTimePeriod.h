#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxDateTime/YYYYMMDD.h"

#include <cstdint>
#include <optional>
#include <variant>

namespace velloro {

/// The stretch of time of which statistics tell.
///
///     const YYYYMMDD today{2024, 3, 7};
///     *TaskChartsTimePeriod::thisMonth().days(today).maxDate;     // 20240331
///     *TaskChartsTimePeriod::year(2023).days(today).minDate;      // 20230101
///     TaskChartsTimePeriod::allTime().days(today).minDate;        // absent
struct TaskChartsTimePeriod {
  struct AllTime {
    bool operator==(const AllTime&) const = default;
  };
  struct ThisMonth {
    bool operator==(const ThisMonth&) const = default;
  };
  struct ThisYear {
    bool operator==(const ThisYear&) const = default;
  };
  std::variant<AllTime, ThisMonth, ThisYear, std::int64_t, YYYYMM> value;

  [[nodiscard]] static TaskChartsTimePeriod allTime() { return {AllTime{}}; }
  [[nodiscard]] static TaskChartsTimePeriod thisMonth() { return {ThisMonth{}}; }
  [[nodiscard]] static TaskChartsTimePeriod thisYear() { return {ThisYear{}}; }
  [[nodiscard]] static TaskChartsTimePeriod year(std::int64_t year) { return {year}; }
  [[nodiscard]] static TaskChartsTimePeriod month(YYYYMM month) { return {month}; }

  bool operator==(const TaskChartsTimePeriod&) const = default;
  static constexpr auto codingCases =
      cases(&TaskChartsTimePeriod::value, keyed("allTime"), keyed("thisMonth"), keyed("thisYear"),
            keyed("year"), keyed("month"));

  /// The month that it is, today's for `thisMonth`; absent for longer ones.
  [[nodiscard]] std::optional<YYYYMM> asMonth(YYYYMMDD today) const;
  /// The year that it is, today's for `thisYear`; absent for others.
  [[nodiscard]] std::optional<std::int64_t> asYear(YYYYMMDD today) const;
  /// The first and the last day by the calendar, without ends for all time.
  [[nodiscard]] YYYYMMDD::Range days(YYYYMMDD today) const;
};

}  // namespace velloro
