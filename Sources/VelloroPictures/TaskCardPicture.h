#pragma once

#include "VelloroCharts/TaskCalendarMonth.h"
#include "VelloroCharts/TrophyRoomTaskStats.h"
#include "VelloroCore/Log/PreviousDaysSuccess.h"
#include "VelloroPictures/PicturePainter.h"

#include <string>

namespace velloro {

/// All about a task, at the width of a phone: its ring and runs, its rates, how it went over time,
/// by weekday and by hour, and a month of it.
struct TaskCardPicture final : Picture {
  std::string title;
  std::shared_ptr<const IconDisplayRepresentation> icon = {};  ///< Within the ring.
  double progress = 0;                                         ///< Of the current period, 0 to 1.
  TrophyRoomTaskStats stats = {};
  PreviousDaysSuccess shortTerm = PreviousDaysSuccess::defaultShortTerm;
  PreviousDaysSuccess longTerm = PreviousDaysSuccess::defaultLongTerm;
  TaskCalendarMonthSnapshot month = {};
  Date now;

  [[nodiscard]] CGSize size() const override;
  void draw(CGContext& context, const PictureStyle& style) const override;

 private:
  [[nodiscard]] std::string covered(const Locale& locale) const;
  void drawHead(PicturePainter& painter) const;
  void drawNumbers(PicturePainter& painter) const;
  void drawLine(PicturePainter& painter) const;
  void drawBars(PicturePainter& painter) const;
};

/// "7 days": what a rate looks back at, in the periods of its task.
[[nodiscard]] std::string titleOf(PreviousSuccessType type,
                                  TaskFrequencyPeriodType measurementDuration);
/// "82%", or a dash where nothing was counted.
[[nodiscard]] std::string percentageOf(const PreviousDaysSuccess& success, const Locale& locale);

}  // namespace velloro
