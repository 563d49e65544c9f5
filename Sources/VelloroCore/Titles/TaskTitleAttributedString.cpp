#include "VelloroCore/Titles/TaskTitleAttributedString.h"

#include "OxCheckableTasks/Icons/IconManagerIconCases.h"

namespace velloro {
namespace {

using Config = TaskDisplayTitle::AttributedStringConfig;

/// A title's font beside the diameter of the task's ring; the ring's own captions have it too.
constexpr double fontSizePerDiameter = 0.125;

Config scaled(Config config, double factor) {
  config.request.font = config.request.font.withSize(config.request.font.pointSize * factor);
  config.quantityFont = config.quantityFont.withSize(config.quantityFont.pointSize * factor);
  config.quantityBaselineOffset *= factor;
  return config;
}

}  // namespace

Config Config::create(const AttributedWithIconRequest& request, const CGColor& quantityColor,
                      Context context) {
  return {.context = context,
          .request = request,
          .quantityFont = request.font,
          .quantityColor = quantityColor};
}

NSAttributedString TaskDisplayTitle::titleAttributedText(
    const std::optional<IconVisualRepresentation>& icon, double taskIconDiameter,
    const AttributedStringConfig& config, const Locale& locale) const {
  const double wanted = taskIconDiameter * fontSizePerDiameter;
  return buildAttributedString(icon, scaled(config, wanted / config.request.font.pointSize),
                               locale);
}

NSAttributedString TaskDisplayTitle::buildAttributedString(
    const std::optional<IconVisualRepresentation>& icon, const AttributedStringConfig& config,
    const Locale& locale) const {
  const Shown parts = shown(config.context, locale);
  const auto look = config.request.textAttributes();
  const NSAttributedString text(parts.text.value_or(""), look);
  const NSAttributedString amount(parts.quantity.value_or(""),
                                  {.font = config.quantityFont,
                                   .color = config.quantityColor,
                                   .baselineOffset = config.quantityBaselineOffset,
                                   .writingDirection = config.request.writingDirection});
  const bool leads = config.quantityPosition == QuantityPosition::leading;
  const auto line = joinedBySpace(leads ? amount : text, leads ? text : amount, look);
  return attributed(line, icon, config.request);
}

IconVisualRepresentation visualRepresentation(TaskDisplayTitle::TitleIcon icon) {
  switch (icon) {
    case TaskDisplayTitle::TitleIcon::health:
      return IconVisualRepresentation::icon(IconManagerIcon::heart);
    case TaskDisplayTitle::TitleIcon::timed:
      return IconVisualRepresentation::sfSymbol("stopwatch.fill");
    case TaskDisplayTitle::TitleIcon::negative:
      return IconVisualRepresentation::sfSymbol("nosign");
    case TaskDisplayTitle::TitleIcon::paused:
      return IconVisualRepresentation::sfSymbol("pause.fill");
    case TaskDisplayTitle::TitleIcon::hourGlass:
      break;
  }
  return IconVisualRepresentation::sfSymbol("hourglass");
}

std::string_view textVersion(TaskDisplayTitle::TitleIcon icon) {
  // The selector behind a sign asks for its plain form, in the colour of the text.
  switch (icon) {
    case TaskDisplayTitle::TitleIcon::health:
      return "\u2665\uFE0E";
    case TaskDisplayTitle::TitleIcon::timed:
      return "\u23F1\uFE0E";
    case TaskDisplayTitle::TitleIcon::negative:
      return "\u2298";
    case TaskDisplayTitle::TitleIcon::paused:
      return "\u23F8\uFE0E";
    case TaskDisplayTitle::TitleIcon::hourGlass:
      break;
  }
  return "\u231B\uFE0E";
}

}  // namespace velloro
