#pragma once

#include "VelloroCore/Frequency/TaskCalendarPeriodInfo.h"
#include "VelloroPictures/PicturePainter.h"

#include <map>
#include <string>

namespace velloro {

/// A year of a task: a row for each weekday, and a column for each week that the year touches.
struct YearPicture final : Picture {
  std::string title;
  std::int64_t year = 2000;
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
  std::map<YYYYMMDD, TaskCalendarPeriodStatus> days = {};

  [[nodiscard]] CGSize size() const override;
  void draw(CGContext& context, const PictureStyle& style) const override;

  /// The columns.
  [[nodiscard]] std::int64_t numWeeks() const;

 private:
  [[nodiscard]] std::int64_t columnOf(YYYYMMDD day) const;
};

}  // namespace velloro
