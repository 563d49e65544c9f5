#include "velloro/Pictures/ThemeReport.h"

#include "Foundation/Text/String.h"
#include "velloro/Output/StateText.h"

#include <span>

namespace velloro {
namespace {

std::string hex(const OxCodableColor& color) {
  return color.a < 1 ? color.toHexAlpha() : color.toHex();
}

std::vector<std::string> hexes(std::span<const OxCodableColor> colors) {
  std::vector<std::string> texts;
  for (const OxCodableColor& color : colors) texts.push_back(hex(color));
  return texts;
}

std::string joined(const std::vector<std::string>& texts) {
  std::string line;
  for (const std::string& text : texts) line += (line.empty() ? "" : " ") + text;
  return line;
}

RingReport ringOf(const PositionedTheme& theme, const CompletionStatus::Status& status,
                  ThemeContext context) {
  constexpr std::int64_t week = 7;
  const ColorProfile profile = theme.colorProfile(status, {}, week, context);
  return {.status = status.stringValue(),
          .state = std::string(stateText(status)),
          .faded = profile.isFaded,
          .fill = hex(profile.trackFill),
          .track = hex(profile.trackBackground),
          .icon = hex(profile.imageMask),
          .caption = hex(profile.bottomCaption),
          .center = hexes(profile.centerFill)};
}

ModeReport modeOf(const Theme& theme, ThemeContext context) {
  ModeReport report{.mode = theme.mode,
                    .title = theme.localizedTitle(),
                    .background = hex(theme.backgroundType(context).plainColor()),
                    .text = hex(theme.taskTextColor({{}, {}, context})),
                    .rings = {}};
  for (const auto& status : CompletionStatus::Status::allCases()) {
    report.rings.push_back(ringOf(theme.positioned({}), status, context));
  }
  return report;
}

}  // namespace

ThemeReport ThemeReport::of(ColorScheme scheme, ThemeContext context) {
  ThemeReport report{.scheme = scheme,
                     .title = localizedTitle(scheme),
                     .colors = hexes(velloro::colors(scheme, isOnWatch(context))),
                     .modes = {}};
  for (const ThemeMode mode : validModes(scheme)) {
    report.modes.push_back(modeOf({.colorScheme = scheme, .mode = mode}, context));
  }
  return report;
}

std::string ThemeReport::text() const {
  std::string text;
  for (const ModeReport& mode : modes) {
    text += (text.empty() ? "" : "\n") + mode.title + ": text " + mode.text + " on " +
            mode.background + "\n";
    text += stringWithFormat("  %-8s %-8s %-8s %-8s %-8s %-6s %s\n", "status", "fill", "track",
                             "icon", "caption", "faded", "center");
    for (const RingReport& ring : mode.rings) {
      text += stringWithFormat("  %-8s %-8s %-8s %-8s %-8s %-6s %s\n", ring.status.c_str(),
                               ring.fill.c_str(), ring.track.c_str(), ring.icon.c_str(),
                               ring.caption.c_str(), ring.faded ? "yes" : "no",
                               joined(ring.center).c_str());
    }
  }
  return text;
}

std::string table(const std::vector<ThemeReport>& reports) {
  std::string text =
      stringWithFormat("%-14s %-18s %-32s %s\n", "scheme", "title", "modes", "colors");
  for (const ThemeReport& report : reports) {
    std::vector<std::string> modes;
    for (const ModeReport& mode : report.modes) modes.emplace_back(rawValue(mode.mode));
    text += stringWithFormat("%-14s %-18s %-32s %s\n", std::string(rawValue(report.scheme)).c_str(),
                             report.title.c_str(), joined(modes).c_str(),
                             joined(report.colors).c_str());
  }
  return text;
}

}  // namespace velloro
