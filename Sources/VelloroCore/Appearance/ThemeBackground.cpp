#include "VelloroCore/Appearance/ThemeBackground.h"

#include "VelloroCore/Appearance/ThemeHelper.h"

namespace velloro {
namespace {

constexpr double barAlpha = 0.35;  // texts stay readable before all the colours

/// Bars at an angle of 45 degrees, from one upper corner to the opposite lower one.
void paintBars(CGContext& context, CGSize size, ThemeHelper::ColorBarsMode mode) {
  const bool leansRight = mode == ThemeHelper::ColorBarsMode::angledUpRight;
  const auto bars = allCases<ThemeHelper::PrideColor>();
  const double width = (size.width + size.height) / static_cast<double>(bars.size());
  const double lean = leansRight ? -size.height : size.height;
  double left = leansRight ? 0 : -size.height;
  context.setAlpha(barAlpha);
  for (const auto bar : bars) {
    CGPath path;
    path.move({left, 0});
    path.addLine({left + width, 0});
    path.addLine({left + width + lean, size.height});
    path.addLine({left + lean, size.height});
    path.closeSubpath();
    context.setFillColor(color(bar));
    context.fill(path);
    left += width;
  }
}

}  // namespace

void paintBackground(CGContext& context, CGRect rect, const ThemeBackgroundType& background,
                     const TaskPageContext& page) {
  const SavedGState saved(context);
  context.clip(CGPath::rect(rect));
  context.translateBy(rect.origin.x, rect.origin.y);
  context.setFillColor(background.plainColor());
  context.fill(CGRect{.origin = {}, .size = rect.size});
  if (const auto* gradient = std::get_if<ThemeGradient>(&background.value)) {
    context.drawLinearGradient({.colors = {gradient->from, gradient->to}, .locations = {0, 1}}, {},
                               {.x = rect.size.width, .y = rect.size.height});
  }
  if (std::holds_alternative<ThemeBackgroundType::Pride>(background.value)) {
    using enum ThemeHelper::ColorBarsMode;
    paintBars(context, rect.size, page.pageNumber.value % 2 == 0 ? angledUpRight : angledUpLeft);
  }
}

}  // namespace velloro
