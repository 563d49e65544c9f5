#include "velloro/Pictures/RingLook.h"

#include "OxCheckableTasks/Icons/IconManagerIconCases.h"

namespace velloro {
namespace {

using Status = CompletionStatus::Status;
using View = CheckableTaskView;

constexpr auto place = Theme::Context::notification;
constexpr double trackWidth = 0.07;  // per width, as are the captions
constexpr double captionSize = 0.125;

/// The period is over, or what was to be done in it.
bool isSettled(const Status& status) {
  using enum Status::Kind;
  return status.kind != positiveIncomplete && status.kind != negativeComplete &&
         status.kind != positiveSkip;
}

bool isMissed(const Status& status) {
  return isSettled(status) && status != Status::positiveComplete;
}

IconDisplayRepresentation iconOf(IconManagerIcon icon) {
  return {.visualRepresentation = IconVisualRepresentation::icon(icon), .displayProperties = {}};
}

View::Caption captionOf(const RingLook::Caption& caption, double diameter) {
  return {.text = caption.text,
          .trailingIcons = caption.icons,
          .font = UIFont::system(diameter * captionSize, UIFont::Weight::medium)};
}

}  // namespace

std::shared_ptr<View> RingLook::view() const {
  auto view = View::make({.width = diameter, .height = diameter});
  view->setUserInteractionEnabled(false);
  view->update([&](View::Configuration& ring) { configure(ring); });
  view->setProgress(progress, subProgress, 0);
  if (isSettled(status)) view->setState(View::State::completed);
  return view;
}

void RingLook::configure(View::Configuration& ring) const {
  const PositionedTheme here = theme.positioned(order);
  const bool isNegative = status.isNegative();
  const bool isOpen = !isSettled(status);
  const ColorProfile shown = here.colorProfile(status, {}, 1, place);
  const Status before = isOpen ? status : status.uncheckedStatus();
  ring.uncheckedColorProfile = isOpen ? shown : here.colorProfile(before, {}, 1, place);
  ring.completedColorProfile = !isOpen      ? shown
                               : isNegative ? here.negativeMissedColorProfile({}, place)
                                            : here.positiveCompletedColorProfile({}, place);
  if (!isTransparent) ring.containingBackgroundColor = theme.backgroundType().plainColor();
  ring.habitMode = isNegative ? View::HabitMode::negative : View::HabitMode::positive;
  ring.fillDirection =
      fillDirection.value_or(isNegative ? FillDirection::antiClockwise : FillDirection::clockwise);
  ring.trackProgress = trackProgress;
  ring.useRoundedLineCaps = useRoundedLineCaps.value_or(theme.useRoundedLineCaps());
  ring.normalizedTrackWidth = trackWidth;
  ring.numSegments = numSegments;
  if (timerDuration) {
    ring.subProgressBehaviour = View::SubProgressBehaviour::timer;
    ring.subProgressTimerTotalDuration = *timerDuration;
  }
  const bool endsMissed = isNegative || isMissed(status);
  ring.uncheckedIcon = icon;
  ring.checkedIcon = iconOf(isNegative ? IconManagerIcon::missed : IconManagerIcon::checkmark);
  ring.uncheckedWhenCompleteIcon = endsMissed ? iconOf(IconManagerIcon::missed) : icon;
  ring.bottomCaption = captionOf(bottomCaption, diameter);
  ring.topCaption = captionOf(topCaption, diameter);
  ring.badges = badges;
}

}  // namespace velloro
