#include "VelloroPictures/YearPicture.h"

#include "OxKit/Localization.h"
#include "VelloroCore/Titles/FormatManager.h"
#include "VelloroPictures/CalendarDrawing.h"

namespace velloro {
namespace {

using Alignment = PicturePainter::Alignment;

constexpr double margin = 20;
constexpr double headHeight = 30;
constexpr double monthsHeight = 18;
constexpr double namesWidth = 20;
constexpr double cell = 10;
constexpr double step = 12.5;

}  // namespace

std::int64_t YearPicture::columnOf(YYYYMMDD day) const {
  const YYYYMMDD first = YYYYMMDD{year, 1, 1}.startOfWeek(firstDayOfWeek, {});
  return first.distance(day) / 7;
}

std::int64_t YearPicture::numWeeks() const {
  return columnOf({year, 12, 31}) + 1;
}

CGSize YearPicture::size() const {
  return {2 * margin + namesWidth + step * static_cast<double>(numWeeks()),
          2 * margin + headHeight + monthsHeight + 7 * step};
}

void YearPicture::draw(CGContext& context, const PictureStyle& style) const {
  const auto [width, height] = size();
  PicturePainter painter(context, style, width);
  painter.fillBackground({width, height});
  const CGRect head{{margin, margin - 4}, {width - 2 * margin, headHeight}};
  const YYYYMM january{year, 1};
  painter.write(title, {head.origin, {head.size.width - 60, headHeight}},
                {.fontSize = 18, .weight = UIFont::Weight::bold, .color = style.text});
  painter.write(january.localizedYear(style.locale), head,
                {.fontSize = 14,
                 .weight = UIFont::Weight::medium,
                 .color = style.secondary,
                 .alignment = Alignment::trailing});
  const double left = margin + namesWidth;
  const double top = margin + headHeight + monthsHeight;
  const auto at = [&](std::int64_t place, double from) {
    return from + step * static_cast<double>(place);
  };
  const auto& months = FormatManager::shared(style.locale).monthNameFormatter.shortMonthSymbols();
  for (std::int64_t m = 1; m <= 12; ++m) {
    painter.write(
        months[static_cast<std::size_t>(m - 1)],
        {{at(columnOf({year, m, 7}), left), top - monthsHeight}, {4 * step, monthsHeight}},
        {.fontSize = 10, .color = style.secondary});
  }
  std::int64_t row = 0;
  for (const DayOfWeek day : everyDay(firstDayOfWeek)) {
    if (row % 2 == 1) {
      painter.write(localizedVeryShortTitle(day, style.locale),
                    {{margin, at(row, top)}, {namesWidth - 6, cell}},
                    {.fontSize = 9.5, .color = style.secondary});
    }
    ++row;
  }
  for (YYYYMMDD day{year, 1, 1}; day.y == year; day = day.nextDay({})) {
    const auto found = days.find(day);
    const auto status = found != days.end() ? found->second : TaskCalendarPeriodStatus::future;
    const PeriodLook look = PeriodLook::of(status, style);
    const std::int64_t inWeek = day.startOfWeek(firstDayOfWeek, {}).distance(day);
    const CGRect square{{at(columnOf(day), left), at(inWeek, top)}, {cell, cell}};
    painter.fill(square, look.fill.value_or(style.faint), 2.5);
    if (look.line) painter.stroke(square, *look.line, 1.2, 2.5);
  }
}

}  // namespace velloro
