#include "velloro/Pictures/RingArguments.h"

#include "Foundation/Text/String.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"

#include <string_view>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;
using Text = std::optional<std::string>;

constexpr std::int64_t mostSegments = 100;
constexpr std::size_t mostIconCharacters = 8;
constexpr std::size_t mostCaptionCharacters = 100;
constexpr double mostPixels = 8192;

IconVisualRepresentation iconArgument(const std::string& name, const std::string& text) {
  return IconVisualRepresentation::icon(caseArgument<IconManagerIcon>(name, text, "known icon"));
}

/// "ic_book", "em_🚲", "mg_JD", or an icon's bare name.
IconVisualRepresentation storedIconArgument(const std::string& name, const std::string& text) {
  using Prefix = IconVisualRepresentation::EncodingPrefix;
  for (const auto prefix : {rawValue(Prefix::emoji), rawValue(Prefix::monogram)}) {
    if (text.starts_with(prefix)) {
      (void)lineArgument(name, text.substr(prefix.size()), mostIconCharacters);
    }
  }
  if (const auto icon = IconVisualRepresentation::fromStorableValue(text)) return *icon;
  return iconArgument(name, text.starts_with("ic_") ? text.substr(3) : text);
}

Status statusArgument(const std::string& name, const std::string& text) {
  if (const auto status = Status::fromStringValue(text)) return *status;
  std::vector<std::string> texts;
  for (const Status& status : Status::allCases()) texts.push_back(status.stringValue());
  throw unknownName(name, text, "status", {texts.begin(), texts.end()});
}

/// "topTrailing", "bottomLeadingInside:em_🚲".
Badge badgeArgument(const std::string& name, const std::string& text) {
  const auto colon = text.find(':');
  Badge badge{.position =
                  caseArgument<BadgePosition>(name, text.substr(0, colon), "place of a badge")};
  if (colon == std::string::npos) return badge;
  badge.content =
      BadgeContent{.displayRepresentation = {storedIconArgument(name, text.substr(colon + 1)), {}}};
  return badge;
}

/// "bestStreak", or a number of days.
CaptionIcon signArgument(const std::string& name, const std::string& text) {
  const auto kind = caseArgument<CaptionIcon::Kind>(name, text, "sign");
  return kind == CaptionIcon::Kind::multiDay ? CaptionIcon::multiDay(MultiDayCount::duration7)
                                             : CaptionIcon{kind};
}

RingLook::Caption captionOf(const char* name, const Text& text, const char* signName,
                            const std::vector<std::string>& signs) {
  RingLook::Caption caption{.text = text};
  if (text && !text->empty()) (void)lineArgument(name, *text, mostCaptionCharacters);
  for (const std::string& sign : signs) caption.icons.push_back(signArgument(signName, sign));
  return caption;
}

double share(const char* name, const Text& text, double otherwise) {
  return text ? shareArgument(name, *text) : otherwise;
}

}  // namespace

RingPicture RingArguments::picture() const {
  RingPicture picture;
  RingLook& look = picture.look;
  look.isTransparent = isTransparent;
  look.theme = chosenTheme();
  if (position) look.order.position = countArgument("--position", *position);
  look.status = status ? statusArgument("--status", *status) : Status{};
  look.icon = chosenIcon();
  setProgress(look);
  look.bottomCaption = captionOf("--caption", caption, "--sign", signs);
  look.topCaption = captionOf("--top-caption", topCaption, "--top-sign", topSigns);
  for (const std::string& badge : badges) look.badges.push_back(badgeArgument("--badge", badge));
  if (size) look.diameter = numberBetween("--size", *size, 8, 2048, "points from 8 to 2048");
  if (scale) picture.scale = numberBetween("--scale", *scale, 0.5, 8, "a factor from 0.5 to 8");
  if (look.diameter * picture.scale > mostPixels) {
    throw UsageError("--size by --scale makes more than 8192 pixels; take less of one");
  }
  return picture;
}

void RingArguments::setProgress(RingLook& look) const {
  look.progress = share("--progress", progress, 0);
  look.subProgress = share("--sub-progress", subProgress, 0);
  look.trackProgress = share("--track-progress", trackProgress, 1);
  if (timer) look.timerDuration = numberBetween("--timer", *timer, 1, 86400, "seconds of one day");
  if (segments) {
    look.numSegments = static_cast<int>(countBetween("--segments", *segments, 1, mostSegments));
  }
  if (isAntiClockwise) look.fillDirection = FillDirection::antiClockwise;
  if (hasRoundedCaps) look.useRoundedLineCaps = true;
}

Theme RingArguments::chosenTheme() const {
  Theme chosen{.grandSlam = isGrandSlam};
  if (theme) chosen.colorScheme = caseArgument<ColorScheme>("--theme", *theme, "colour scheme");
  if (!mode) return chosen;
  const auto wanted = caseArgument<ThemeMode>("--mode", *mode, "mode");
  chosen = chosen.withMode(wanted);
  if (chosen.mode == wanted) return chosen;
  throw UsageError("--mode", *mode,
                   "not a mode of the scheme \"" + std::string(rawValue(chosen.colorScheme)) +
                       "\"; \"velloro themes\" lists them");
}

std::optional<IconDisplayRepresentation> RingArguments::chosenIcon() const {
  IconDisplayRepresentation shown;
  if (hasSlash) shown.displayProperties.overlay = IconVisualRepresentation::Overlay::slash;
  if (icon) {
    shown.visualRepresentation = storedIconArgument("--icon", *icon);
  } else if (emoji) {
    shown.visualRepresentation =
        IconVisualRepresentation::emoji(lineArgument("--emoji", *emoji, mostIconCharacters));
  } else if (monogram) {
    shown.visualRepresentation = IconVisualRepresentation::monogram(
        lineArgument("--monogram", *monogram, mostIconCharacters));
  } else {
    return std::nullopt;
  }
  return shown;
}

}  // namespace velloro
