#include "velloro/Notifications/NotificationReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "OxKit/RuntimeError.h"

#include <array>
#include <cmath>
#include <ranges>
#include <string_view>

namespace velloro {
namespace {

using Ring = CheckableTaskView::Configuration;

/// The text that is read, without the signs in it.
std::string shownText(const NSAttributedString& text) {
  std::string shown;
  for (const NSAttributedString::Run& run : text.runs()) shown += run.text;
  const auto first = shown.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return shown.substr(first, shown.find_last_not_of(' ') - first + 1);
}

/// A body may have several lines, and nothing else that a terminal would act on.
std::string bodyLines(const std::string& body) {
  std::string text;
  for (const auto line : std::views::split(body, '\n')) {
    text += terminalText(std::string_view(line.begin(), line.end())) + "\n";
  }
  return text;
}

PropertyList valueOf(const std::optional<std::string>& text) {
  return text ? PropertyList(*text) : PropertyList();
}

PropertyList valueOf(const std::optional<IconDisplayRepresentation>& icon) {
  return icon ? PropertyList(icon->visualRepresentation.storableValue()) : PropertyList();
}

PropertyList valueOf(const std::vector<CaptionIcon>& icons) {
  PropertyList::Array ids;
  for (const CaptionIcon& icon : icons) ids.emplace_back(icon.id());
  return ids;
}

PropertyList valueOf(const std::vector<Badge>& badges) {
  PropertyList::Array list;
  for (const Badge& badge : badges) {
    list.emplace_back(PropertyList::Dictionary{
        {"content", badge.content ? valueOf(std::optional(badge.content->displayRepresentation))
                                  : PropertyList()},
        {"position", rawValue(badge.position)}});
  }
  return list;
}

PropertyList ringReport(const CheckableTaskView& view) {
  const Ring& ring = view.configuration();
  return PropertyList::Dictionary{
      {"state", stateName(view.state())},
      {"progress", view.progress()},
      {"subProgress", view.subProgress()},
      {"numSegments", ring.numSegments},
      {"fillDirection", rawValue(ring.fillDirection)},
      {"fills", ring.fillDirection == FillDirection::clockwise ? "clockwise" : "anticlockwise"},
      {"uncheckedIcon", valueOf(ring.uncheckedIcon)},
      {"checkedIcon", valueOf(ring.checkedIcon)},
      {"uncheckedWhenCompleteIcon", valueOf(ring.uncheckedWhenCompleteIcon)},
      {"bottomCaption", valueOf(ring.bottomCaption.text)},
      {"topCaptionLeadingIcons", valueOf(ring.topCaption.leadingIcons)},
      {"topCaptionTrailingIcons", valueOf(ring.topCaption.trailingIcons)},
      {"bottomCaptionLeadingIcons", valueOf(ring.bottomCaption.leadingIcons)},
      {"bottomCaptionTrailingIcons", valueOf(ring.bottomCaption.trailingIcons)},
      {"badges", valueOf(ring.badges)},
      {"accessibilityLabel", view.accessibilityLabel()}};
}

}  // namespace

std::string_view stateName(CheckableTaskView::State state) {
  constexpr std::array<std::string_view, 4> names = {"checkable", "checkedInner", "checked",
                                                     "completed"};
  return names[static_cast<std::size_t>(state)];
}

PropertyList notificationReport(const NotificationViewController& controller) {
  const NotificationView& view = *controller.view();
  const auto [width, height] = controller.preferredContentSize();
  return PropertyList::Dictionary{
      {"fallback", !controller.task().has_value()},
      {"title", shownText(view.titleLabel().text)},
      {"body", shownText(view.bodyLabel().text)},
      {"preferredContentSize", PropertyList::Dictionary{{"width", width}, {"height", height}}},
      {"ring", view.ringIsHidden() ? PropertyList() : ringReport(*view.checkableTaskView())}};
}

std::string notificationText(const NotificationViewController& controller) {
  const NotificationView& view = *controller.view();
  const CheckableTaskView& ring = *view.checkableTaskView();
  std::string text = terminalText(shownText(view.titleLabel().text)) + "\n";
  if (!view.bodyLabel().text.isEmpty()) text += bodyLines(shownText(view.bodyLabel().text));
  if (view.ringIsHidden()) return text + "(shown by its text alone)\n";
  const std::string caption = ring.configuration().bottomCaption.text.value_or("");
  text += stringWithFormat("ring: %s, %.0f %%", std::string(stateName(ring.state())).c_str(),
                           ring.progress() * 100);
  return text + (caption.empty() ? "" : ", streak " + terminalText(caption)) + "\n";
}

std::shared_ptr<const CGImage> notificationPicture(NotificationView& view) {
  const double scale = view.contentsScale();
  const auto pixels = [&](double points) {
    return static_cast<std::size_t>(std::ceil(points * scale));
  };
  const auto [width, height] = view.bounds().size;
  const auto context = CGContext::bitmap(pixels(width), pixels(height));
  if (!context) throw RuntimeError("the picture can't be made");
  context->scaleBy(scale, scale);
  view.draw(*context);
  return context->makeImage();
}

}  // namespace velloro
