#pragma once

#include "VelloroCharts/TaskCalendarMonth.h"
#include "VelloroPictures/PicturePainter.h"

namespace velloro {

/// How a period shows in a calendar: filled when it was completed, with a line around it while it
/// is open, pale when it was missed, and empty otherwise.
struct PeriodLook {
  std::optional<OxCodableColor> fill, line;
  OxCodableColor text;

  [[nodiscard]] static PeriodLook of(TaskCalendarPeriodStatus status, const PictureStyle& style);
};

/// A month as a grid of its days, with its title above.
struct CalendarDrawing {
  const TaskCalendarMonthSnapshot& month;
  double width = 320;

  [[nodiscard]] double height() const;
  void draw(PicturePainter& painter, CGPoint origin) const;
};

/// The same as a picture.
class MonthPicture final : public Picture {
 public:
  MonthPicture(std::string title, TaskCalendarMonthSnapshot month)
      : title_(std::move(title)), month_(std::move(month)) {}

  [[nodiscard]] CGSize size() const override;
  void draw(CGContext& context, const PictureStyle& style) const override;

 private:
  std::string title_;
  TaskCalendarMonthSnapshot month_;
};

}  // namespace velloro
