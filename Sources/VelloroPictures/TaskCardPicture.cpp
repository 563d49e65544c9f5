#include "VelloroPictures/TaskCardPicture.h"

#include "OxCheckableTasks/Ring/CheckableTaskTextKeys.h"
#include "OxKit/Localization.h"
#include "VelloroCharts/ChartTextKeys.h"
#include "VelloroCore/Appearance/ColorContrast.h"
#include "VelloroCore/Status/StreakRecord.h"
#include "VelloroCore/Titles/FormatManager.h"
#include "VelloroPictures/CalendarDrawing.h"
#include "VelloroPictures/PictureTextKeys.h"

#include <algorithm>

namespace velloro {
namespace {

using Alignment = PicturePainter::Alignment;

constexpr double width = 360;
constexpr double margin = 22;
constexpr double inner = width - 2 * margin;
constexpr double ringDiameter = 60;
constexpr double headTop = 24;
constexpr double numbersTop = 108;
constexpr double lineTop = 176;
constexpr double lineHeight = 86;
constexpr double barsTop = 312;
constexpr double barsHeight = 58;
constexpr double monthTop = 432;
constexpr double labelHeight = 18;

PicturePainter::Text labelLook(const PictureStyle& style) {
  return {.fontSize = 11, .color = style.secondary};
}

/// A row of columns, each from the floor up; behind them columns in full.
void drawColumns(PicturePainter& painter, CGRect rect, const std::vector<double>& shares,
                 double gap) {
  const PictureStyle& style = painter.style();
  const double step = (rect.size.width + gap) / static_cast<double>(shares.size());
  const double column = step - gap;
  double x = rect.origin.x;
  for (const double share : shares) {
    const double height = rect.size.height * std::clamp(share, 0.0, 1.0);
    const double radius = std::min(column / 2, 3.0);
    painter.fill({{x, rect.origin.y}, {column, rect.size.height}}, style.faint, radius);
    if (height > 0) {
      painter.fill({{x, rect.origin.y + rect.size.height - height}, {column, height}}, style.accent,
                   std::min(radius, height / 2));
    }
    x += step;
  }
}

}  // namespace

std::string titleOf(PreviousSuccessType type, TaskFrequencyPeriodType measurementDuration) {
  const auto count = numPeriods(type);
  if (!count) return localized(chart_text::allTime);
  return StreakRecord(*count, *count).localizedWithMeasurementDuration(measurementDuration);
}

std::string percentageOf(const PreviousDaysSuccess& success, const Locale& locale) {
  if (success.numSamples == 0) return "–";
  return FormatManager::shared(locale).percentageWholeFormatter.string(success.successPct);
}

/// "All time": what the charts tell of.
std::string TaskCardPicture::covered(const Locale& locale) const {
  return stats.allTimeChart.veryBriefLabels(locale, now).centerText.value_or("");
}

CGSize TaskCardPicture::size() const {
  return {width, monthTop + CalendarDrawing{.month = month, .width = inner}.height() + margin};
}

void TaskCardPicture::draw(CGContext& context, const PictureStyle& style) const {
  PicturePainter painter(context, style, width);
  painter.fillBackground(size());
  drawHead(painter);
  drawNumbers(painter);
  drawLine(painter);
  drawBars(painter);
  CalendarDrawing{.month = month, .width = inner}.draw(painter, {margin, monthTop});
}

void TaskCardPicture::drawHead(PicturePainter& painter) const {
  const PictureStyle& style = painter.style();
  painter.ring({margin + ringDiameter / 2, headTop + ringDiameter / 2}, ringDiameter, progress,
               icon);
  const double x = margin + ringDiameter + 16;
  const double room = width - margin - x;
  painter.write(title, {{x, headTop + 4}, {room, 30}},
                {.fontSize = 22, .weight = UIFont::Weight::bold, .color = style.text});
  const FormatManager& formats = FormatManager::shared(style.locale);
  painter.write(formats.percentageWholeFormatter.string(stats.pct) + " · " + covered(style.locale),
                {{x, headTop + 34}, {room, 22}},
                {.fontSize = 14, .weight = UIFont::Weight::medium, .color = style.accent});
}

void TaskCardPicture::drawNumbers(PicturePainter& painter) const {
  const PictureStyle& style = painter.style();
  const auto& integers = FormatManager::shared(style.locale).integerFormatter;
  const auto whole = [&](std::int64_t number) {
    return integers.string(static_cast<double>(number));
  };
  const auto measured = stats.allTimeChart.measurementDuration;
  const std::pair<std::string, std::string> numbers[] = {
      {whole(stats.streak.current), localized(picture_text::currentStreak)},
      {whole(stats.streak.best), localized(checkable_task_text::bestStreak)},
      {percentageOf(shortTerm, style.locale), titleOf(shortTerm.type, measured)},
      {percentageOf(longTerm, style.locale), titleOf(longTerm.type, measured)}};
  constexpr double column = inner / 4;
  double x = margin;
  for (const auto& [number, label] : numbers) {
    painter.write(number, {{x, numbersTop}, {column - 6, 26}},
                  {.fontSize = 20, .weight = UIFont::Weight::semibold, .color = style.text});
    painter.write(label, {{x, numbersTop + 26}, {column - 6, labelHeight}}, labelLook(style));
    x += column;
  }
}

void TaskCardPicture::drawLine(PicturePainter& painter) const {
  const PictureStyle& style = painter.style();
  const AllTimeChart& chart = stats.allTimeChart;
  const LineGraph graph(chart.dataPoints(style.locale),
                        {.rightToLeft = style.isRightToLeft(),
                         .frame = {{}, {inner, lineHeight}},
                         .maxValue = LineGraph::MaxValue::relativeToConstant(1),
                         .pointDiameter = 6,
                         .lineThickness = 2.5});
  const CGPoint origin{margin, lineTop + labelHeight + 4};
  painter.write(covered(style.locale), {{margin, lineTop}, {inner, labelHeight}}, labelLook(style));
  painter.fill(graph.fillPath, origin, inner, mixed(style.background, style.accent, 0.16));
  painter.stroke(graph.linePath, origin, inner, style.accent, 2.5);
  const SummaryLabels labels = chart.labels(style.locale, now);
  const CGRect row{{margin, origin.y + lineHeight + 2}, {inner, labelHeight}};
  auto look = labelLook(style);
  painter.write(labels.leadingText.value_or(""), row, look);
  look.alignment = Alignment::center;
  painter.write(labels.centerText.value_or(""), row, look);
  look.alignment = Alignment::trailing;
  painter.write(labels.trailingText.value_or(""), row, look);
}

void TaskCardPicture::drawBars(PicturePainter& painter) const {
  const PictureStyle& style = painter.style();
  constexpr double gap = 24;
  constexpr double half = (inner - gap) / 2;
  constexpr double top = barsTop + labelHeight + 6;
  constexpr double namesTop = top + barsHeight + 2;
  painter.write(localized(picture_text::daysOfWeek), {{margin, barsTop}, {half, labelHeight}},
                labelLook(style));
  painter.write(localized(picture_text::timeOfDay),
                {{margin + half + gap, barsTop}, {half, labelHeight}}, labelLook(style));
  std::vector<double> days, hours;
  double x = margin;
  constexpr double columnGap = 5;
  constexpr double step = (half + columnGap) / 7;
  for (const auto& day : stats.daysOfWeekChart.sortedValues(month.month.firstDayOfWeek)) {
    days.push_back(day.value);
    painter.write(localizedVeryShortTitle(day.dayOfWeek, style.locale),
                  {{x, namesTop}, {step - columnGap, labelHeight}},
                  {.fontSize = 10, .color = style.secondary, .alignment = Alignment::center});
    x += step;
  }
  drawColumns(painter, {{margin, top}, {half, barsHeight}}, days, columnGap);
  const auto points = stats.timeOfDayChart.dataPoints(style.locale);
  for (const LineGraphDataPoint& point : points) hours.push_back(point.value);
  drawColumns(painter, {{margin + half + gap, top}, {half, barsHeight}}, hours, 1.5);
  for (std::size_t hour = 0; hour < points.size(); hour += 12) {
    const double at = margin + half + gap + half * static_cast<double>(hour) / 24;
    painter.write(points[hour].label.value_or(""), {{at, namesTop}, {half / 2, labelHeight}},
                  {.fontSize = 10, .color = style.secondary});
  }
}

}  // namespace velloro
