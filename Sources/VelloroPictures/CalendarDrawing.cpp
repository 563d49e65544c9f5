#include "VelloroPictures/CalendarDrawing.h"

#include "VelloroCore/Appearance/ColorContrast.h"
#include "VelloroCore/Titles/FormatManager.h"

#include <algorithm>

namespace velloro {
namespace {

using Alignment = PicturePainter::Alignment;

constexpr double titleHeight = 26;
constexpr double namesHeight = 18;
constexpr double rowHeight = 30;
constexpr double gap = 2;
constexpr double cornerRadius = 7;
constexpr double margin = 20;
constexpr double pictureWidth = 360;

}  // namespace

PeriodLook PeriodLook::of(TaskCalendarPeriodStatus status, const PictureStyle& style) {
  using enum TaskCalendarPeriodStatus;
  if (isCompleted(status)) return {style.accent, {}, style.onAccent};
  const OxCodableColor pale = mixed(style.background, style.accent, 0.2);
  switch (status) {
    case missed:
    case currentMissed:
      return {pale, {}, style.text};
    case current:
      return {{}, style.accent, style.text};
    case skipped:
    case allowedMiss:
    case currentAllowedMiss:
      return {style.faint, {}, style.secondary};
    default:
      return {{}, {}, style.secondary};
  }
}

double CalendarDrawing::height() const {
  return titleHeight + namesHeight + rowHeight * static_cast<double>(month.weeks().size());
}

void CalendarDrawing::draw(PicturePainter& painter, CGPoint origin) const {
  const PictureStyle& style = painter.style();
  const auto& [of, firstDayOfWeek] = month.month;
  const double column = width / 7;
  painter.write(of.localizedTitleWithYear(style.locale), {origin, {width, titleHeight}},
                {.fontSize = 13, .weight = UIFont::Weight::semibold, .color = style.text});
  double x = origin.x;
  for (const DayOfWeek day : everyDay(firstDayOfWeek)) {
    painter.write(localizedVeryShortTitle(day, style.locale),
                  {{x, origin.y + titleHeight}, {column, namesHeight}},
                  {.fontSize = 10.5, .color = style.secondary, .alignment = Alignment::center});
    x += column;
  }
  const auto& numbers = FormatManager::shared(style.locale).integerFormatter;
  std::int64_t place = of.numberOfDaysInWeekBeforeMonthStarts(firstDayOfWeek);
  for (YYYYMMDD day = of.firstDay(); day <= of.lastDay(); day = day.nextDay({}), ++place) {
    const auto holds = [&](const SnapshotPeriod& item) { return item.period.period.contains(day); };
    const auto item =
        std::ranges::find_if(month.sortedPeriods.rbegin(), month.sortedPeriods.rend(), holds);
    const auto status =
        item != month.sortedPeriods.rend() ? item->period.status : TaskCalendarPeriodStatus::future;
    const PeriodLook look = PeriodLook::of(status, style);
    const CGRect cell{
        {origin.x + column * static_cast<double>(place % 7) + gap,
         origin.y + titleHeight + namesHeight + rowHeight * static_cast<double>(place / 7) + gap},
        {column - 2 * gap, rowHeight - 2 * gap}};
    if (look.fill) painter.fill(cell, *look.fill, cornerRadius);
    if (look.line) painter.stroke(cell, *look.line, 1.5, cornerRadius);
    painter.write(numbers.string(static_cast<double>(day.d)), cell,
                  {.fontSize = 12,
                   .weight = look.fill ? UIFont::Weight::medium : UIFont::Weight::regular,
                   .color = look.text,
                   .alignment = Alignment::center});
  }
}

CGSize MonthPicture::size() const {
  return {pictureWidth, 2 * margin + titleHeight + CalendarDrawing{.month = month_}.height()};
}

void MonthPicture::draw(CGContext& context, const PictureStyle& style) const {
  PicturePainter painter(context, style, pictureWidth);
  painter.fillBackground(size());
  painter.write(title_, {{margin, margin}, {pictureWidth - 2 * margin, titleHeight}},
                {.fontSize = 19, .weight = UIFont::Weight::bold, .color = style.text});
  CalendarDrawing{.month = month_, .width = pictureWidth - 2 * margin}.draw(
      painter, {margin, margin + titleHeight});
}

}  // namespace velloro
