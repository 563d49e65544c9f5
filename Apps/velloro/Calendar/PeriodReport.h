#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "velloro/Calendar/PeriodStretch.h"

#include <cstdint>
#include <string>

namespace velloro {

/// A period of a task, its neighbours and what is expected in it, as `velloro period` prints it.
struct PeriodReport {
  std::string mode;  ///< "numberOfDaysInWeek"
  YYYYMMDD date = {};
  DayOfWeek dayOfWeek = DayOfWeek::sunday;  ///< Of the date; in the text alone.
  PeriodStretch period;
  PeriodStretch previous;
  PeriodStretch next;
  std::int64_t numberOfDays = 0;
  std::int64_t remainingDays = 0;  ///< The date itself not counted.
  /// For a task that was there before the period began. Said in the text for the modes alone that
  /// count days; in others it has no meaning.
  std::int64_t expectedCompletions = 0;
  std::string countedOver;  ///< "week"
  bool isEmpty = false;

  static constexpr auto codingKeys =
      keys(key("mode", &PeriodReport::mode), key("date", &PeriodReport::date),
           key("period", &PeriodReport::period), key("previous", &PeriodReport::previous),
           key("next", &PeriodReport::next), key("numberOfDays", &PeriodReport::numberOfDays),
           key("remainingDays", &PeriodReport::remainingDays),
           key("expectedCompletions", &PeriodReport::expectedCompletions),
           key("countedOver", &PeriodReport::countedOver), key("isEmpty", &PeriodReport::isEmpty));

  [[nodiscard]] static PeriodReport of(const TaskFrequency& frequency, YYYYMMDD date,
                                       DayOfWeek firstDayOfWeek, TimeZone timeZone);

  [[nodiscard]] std::string json() const;
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
