#include "VelloroPictures/OverviewPicture.h"

#include "OxKit/Localization.h"
#include "VelloroCharts/LineGraph.h"
#include "VelloroCore/Appearance/ColorContrast.h"
#include "VelloroPictures/PictureTextKeys.h"
#include "VelloroPictures/TaskCardPicture.h"

namespace velloro {
namespace {

using Alignment = PicturePainter::Alignment;

constexpr double width = 360;
constexpr double margin = 20;
constexpr double headHeight = 38;
constexpr double rowHeight = 60;
constexpr double ringDiameter = 34;
constexpr double graphWidth = 70;
constexpr double graphHeight = 28;
constexpr double rateWidth = 58;

}  // namespace

CGSize OverviewPicture::size() const {
  return {width, 2 * margin + headHeight + rowHeight * static_cast<double>(rows.size())};
}

void OverviewPicture::draw(CGContext& context, const PictureStyle& style) const {
  PicturePainter painter(context, style, width);
  painter.fillBackground(size());
  painter.write(localized(picture_text::allTasks),
                {{margin, margin - 4}, {width - 2 * margin, headHeight - 8}},
                {.fontSize = 22, .weight = UIFont::Weight::bold, .color = style.text});
  double top = margin + headHeight;
  for (const Row& row : rows) {
    painter.fill({{margin, top - 0.5}, {width - 2 * margin, 0.7}}, style.faint);
    drawRow(context, row.color ? style.withAccent(*row.color) : style, row, top);
    top += rowHeight;
  }
}

void OverviewPicture::drawRow(CGContext& context, const PictureStyle& style, const Row& row,
                              double top) {
  PicturePainter painter(context, style, width);
  const double middle = top + rowHeight / 2;
  painter.ring({margin + ringDiameter / 2, middle}, ringDiameter, row.progress, row.icon);
  const double graphLeft = width - margin - rateWidth - graphWidth;
  const double titleLeft = margin + ringDiameter + 12;
  const double titleWidth = graphLeft - 10 - titleLeft;
  painter.write(row.title, {{titleLeft, middle - 20}, {titleWidth, 20}},
                {.fontSize = 15, .weight = UIFont::Weight::semibold, .color = style.text});
  painter.write(row.streak, {{titleLeft, middle + 1}, {titleWidth, 17}},
                {.fontSize = 12, .color = style.secondary});
  std::vector<LineGraphDataPoint> data;
  for (const double value : row.data) data.push_back({.value = value});
  const LineGraph graph(data, {.rightToLeft = style.isRightToLeft(),
                               .frame = {{}, {graphWidth, graphHeight}},
                               .maxValue = LineGraph::MaxValue::relativeToConstant(1),
                               .pointDiameter = 3});
  const CGPoint origin{graphLeft, middle - graphHeight / 2};
  painter.fill(graph.fillPath, origin, graphWidth, mixed(style.background, style.accent, 0.16));
  painter.stroke(graph.linePath, origin, graphWidth, style.accent, 1.6);
  const double rateLeft = width - margin - rateWidth;
  painter.write(percentageOf(row.success, style.locale), {{rateLeft, middle - 20}, {rateWidth, 20}},
                {.fontSize = 15,
                 .weight = UIFont::Weight::semibold,
                 .color = style.text,
                 .alignment = Alignment::trailing});
  painter.write(titleOf(row.success.type, row.measurementDuration),
                {{rateLeft, middle + 1}, {rateWidth, 17}},
                {.fontSize = 11, .color = style.secondary, .alignment = Alignment::trailing});
}

}  // namespace velloro
