#include "AppExtensions/NotificationViewController.h"

#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Text/Locale.h"
#include "Notifications/NotificationCategory.h"
#include "Notifications/TaskSharingBadge.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "OxKit/RuntimeError.h"
#include "OxLog/Log.h"
#include "Settings/PendingReportableError.h"
#include "VelloroCore/Titles/TaskTitleAttributedString.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace velloro {
namespace {

using State = CheckableTaskView::State;
using Option = UNNotificationContentExtensionResponseOption;
using TitleIcon = TaskDisplayTitle::TitleIcon;

constexpr double titleFontSize = 18;
constexpr double bodyFontSize = 16;
constexpr double captionFontPart = 0.125;  // per height of the ring
constexpr double ringTrackWidth = 0.07;
constexpr double completionDuration = 0.55;
constexpr double stepDuration = 0.5;
constexpr double stepForwardDelay = 1;
constexpr double completedForwardDelay = 0.5;

IconDisplayRepresentation upright(IconManagerIcon icon) {
  return {.visualRepresentation = IconVisualRepresentation::icon(icon), .displayProperties = {}};
}

std::optional<IconDisplayRepresentation> iconOf(
    const std::optional<ComplicationSnapshotDisplayRepresentation>& snapshot) {
  return snapshot ? snapshot->displayRepresentation() : std::nullopt;
}

/// A record from elsewhere may hold any number; a ring is cut into as many parts as a user can ask
/// for.
int segments(const TaskFrequency& frequency) {
  const auto most = TaskFrequency::maxPartialCompletions(TaskFrequencyPeriodType::week);
  return static_cast<int>(
      std::clamp(frequency.numPartialCompletions, TaskFrequency::minPartialCompletions, most));
}

/// A timer of one completion shows its progress as a whole, and none within.
double subFraction(const TaskProgress& progress, const TaskProgress& next) {
  const bool isPlainTimer =
      next.as<TaskProgressTimer>() != nullptr && next.expectedCompletions() == 1;
  return isPlainTimer ? 0 : progress.currentCompletionProgressPct();
}

bool isAboutTime(const std::string& categoryIdentifier) {
  const auto category = fromRawValue<NotificationCategory>(categoryIdentifier);
  return category == NotificationCategory::timedTaskProgressComplete ||
         category == NotificationCategory::timedTaskProgressRemaining;
}

NSAttributedString plain(std::string_view text, const OxCodableColor& color, double size) {
  return {text, {.font = appFont(size), .color = color}};
}

SharedWithStatus sharedWith(const NotificationTask& task) {
  if (task.shareStatus != TaskShareStatus::isSharedWithOthers) return SharedWithStatus::notShared();
  constexpr std::int64_t many = 1000;  // the sign tells one from more
  return SharedWithStatus::shared(
      static_cast<int>(std::clamp<std::int64_t>(task.shareParticipantsCount, 0, many)));
}

}  // namespace

std::shared_ptr<NotificationViewController> NotificationViewController::make(
    const Screen& screen, const Settings& settings) {
  const std::shared_ptr<NotificationViewController> controller(
      new NotificationViewController(screen, settings));
  controller->view_->checkableTaskView()->setDelegate(controller);
  return controller;
}

NotificationViewController::NotificationViewController(const Screen& screen,
                                                       const Settings& settings)
    : screen_(screen),
      settings_(settings),
      view_(std::make_shared<NotificationView>(screen.width, screen.scale)) {}

void NotificationViewController::didReceive(const UNNotification& notification) {
  abandonResponse();
  const auto& [height, margin, trailing] = view_->constraints();
  preferredContentSize_ = {.width = view_->bounds().size.width, .height = height + 2 * margin};
  const UNNotificationContent& content = notification.request.content;
  try {
    setUp(content);
  } catch (const Error& error) {
    showTextAlone(content, error);
  } catch (const std::exception& error) {
    // The text can always be shown, whatever the rest has come to.
    showTextAlone(content, RuntimeError(error.what()));
  }
}

void NotificationViewController::abandonResponse() {
  // What still plays belongs to the notification before this one, and so does its handler.
  view_->checkableTaskView()->abandonCheck();
  forward();
  responseHandled_ = false;
}

void NotificationViewController::setUp(const UNNotificationContent& content) {
  const auto data = NotificationData::fromUserInfo(content.userInfo);
  task_ = data.task;
  const PositionedTheme theme = this->theme(data.theme);
  view_->setBackground({.type = theme.theme.backgroundType(),
                        .page = {.pageNumber = task_->displayOrder.pageNumber}});
  configureRing(theme, showTexts(content, theme));
  nextProgress_ = task_->completionStatus.progress().nextProgress();
  showProgress();
  showBadge(theme);
  showCaptions(task_->streak);
}

PositionedTheme NotificationViewController::theme(const PositionedTheme& ofNotification) const {
  Theme theme = ofNotification.theme;
  if (settings_.themeAutoSwitch()) {
    const bool isLight = screen_.userInterfaceStyle == UIUserInterfaceStyle::light;
    const auto mode =
        isLight ? settings_.themeAutoSwitchLightMode() : settings_.themeAutoSwitchDarkMode();
    if (mode) theme = theme.withMode(*mode);
  }
  return theme.positioned(ofNotification.order);
}

std::optional<std::string> NotificationViewController::showTexts(
    const UNNotificationContent& content, const PositionedTheme& theme) {
  const Theme::Place place{theme.order, task_->color, themeContext};
  const OxCodableColor textColor = theme.theme.taskTextColor(place);
  const AttributedWithIconRequest request{
      .font = appFont(titleFontSize),
      .textColor = textColor,
      .iconColor = theme.theme.taskIconColor(place),
      .writingDirection = view_->effectiveUserInterfaceLayoutDirection()};
  const auto show = [&](NSAttributedString title) {
    view_->setContents({.titleLabel = {std::move(title)},
                        .bodyLabel = {plain(content.body, textColor, bodyFontSize)}});
  };
  if (isAboutTime(content.categoryIdentifier)) {
    show(attributed(Locale::current().uppercased(content.title),
                    visualRepresentation(TitleIcon::timed), request));
    return content.title;
  }
  const auto icon =
      task_->titleIcon ? std::optional(visualRepresentation(*task_->titleIcon)) : std::nullopt;
  const auto config = TaskDisplayTitle::AttributedStringConfig::create(
      request, theme.theme.taskQuantityTextColor(place),
      TaskDisplayTitle::Context::iPhoneNotificationUI);
  show(task_->displayTitle.buildAttributedString(icon, config, Locale::current()));
  return task_->displayTitle.localizedAccessibilityLabel(Locale::current());
}

void NotificationViewController::configureRing(const PositionedTheme& theme,
                                               std::optional<std::string> accessibilityLabel) {
  const auto& ring = view_->checkableTaskView();
  const auto& color = task_->color;
  const DayMode dayMode = task_->frequency.dayMode;
  const auto taskIcon = iconOf(task_->displayRepresentation);
  const bool negative = task_->completionStatus.isNegative();
  const UIFont captionFont = appFont(view_->constraints().height * captionFontPart);
  ring->setUserInteractionEnabled(false);
  ring->update([&](CheckableTaskView::Configuration& look) {
    look.uncheckedColorProfile =
        negative ? theme.negativeCompletedColorProfile(color, themeContext, isAggregate(dayMode),
                                                       /*willShowPeriodProgress=*/false)
                 : theme.positiveUncheckedColorProfile(color, themeContext, /*isFaded=*/false);
    look.completedColorProfile = negative
                                     ? theme.negativeMissedColorProfile(color, themeContext)
                                     : theme.positiveCompletedColorProfile(color, themeContext);
    look.containingBackgroundColor = theme.theme.backgroundType().plainColor();
    look.normalizedTrackWidth = ringTrackWidth;
    look.useRoundedLineCaps = theme.theme.useRoundedLineCaps();
    look.uncheckedIcon = taskIcon;
    look.uncheckedWhenCompleteIcon = negative ? upright(IconManagerIcon::missed) : taskIcon;
    look.checkedIcon = upright(negative ? IconManagerIcon::missed : IconManagerIcon::checkmark);
    look.numSegments = segments(task_->frequency);
    look.bottomCaption.font = captionFont;
    look.topCaption.font = captionFont;
    look.accessibilityLabelPrefix = std::move(accessibilityLabel);
    look.bottomCaption.accessibilityLabel =
        task_->streak.localizedWithMeasurementDuration(measurementDuration(dayMode));
    look.habitMode =
        negative ? CheckableTaskView::HabitMode::negative : CheckableTaskView::HabitMode::positive;
    look.fillDirection = negative ? FillDirection::antiClockwise : FillDirection::clockwise;
    look.writingDirection = view_->effectiveUserInterfaceLayoutDirection();
  });
}

bool NotificationViewController::isChecking() const {
  const auto& ring = view_->checkableTaskView();
  return ring->currentlyCheckingManual() || ring->currentlyCheckingAuto();
}

void NotificationViewController::setProgress(const TaskProgress& progress, double duration) {
  if (isChecking()) return;
  view_->checkableTaskView()->setProgress(progress.progressPct(Date::now()),
                                          subFraction(progress, *nextProgress_), duration);
}

void NotificationViewController::showProgress() {
  const TaskProgress& progress = task_->completionStatus.progress();
  const bool isFull = progress.progressPct(Date::now()) >= 1;
  if (!isChecking()) {
    view_->checkableTaskView()->setState(isFull ? State::completed : State::checkable);
  }
  if (!isFull) setProgress(progress, 0);
}

void NotificationViewController::showBadge(const PositionedTheme& theme) {
  std::vector<Badge> badges;
  if (task_->shareStatus == TaskShareStatus::isSharedWithMe) {
    badges.push_back(
        taskSharingBadge(iconOf(task_->shareOwnerDisplayRepresentation), theme, task_->color));
  }
  view_->checkableTaskView()->update([&](auto& look) { look.badges = std::move(badges); });
}

void NotificationViewController::showCaptions(const StreakRecord& streak) {
  const CompletionStatus& status = task_->completionStatus;
  CaptionIcons icons = iconsForStreakNumber(
      {.todayStatus = {.completionStatus = status, .period = status.progress().period()},
       .streak = streak,
       .sharedWithStatus = sharedWith(*task_),
       .startOfDay = task_->startOfDay,
       .timeZone = task_->timeZone,
       .now = Date::now()});
  view_->checkableTaskView()->update([&](CheckableTaskView::Configuration& look) {
    look.bottomCaption.text = streak.localizedCurrent(Locale::current());
    look.topCaption.leadingIcons = std::move(icons.topLeading);
    look.topCaption.trailingIcons = std::move(icons.topTrailing);
    look.bottomCaption.leadingIcons = std::move(icons.bottomLeading);
    look.bottomCaption.trailingIcons = std::move(icons.bottomTrailing);
  });
}

void NotificationViewController::showTextAlone(const UNNotificationContent& content,
                                               const Error& reason) {
  Log::notifications.error(
      [&] { return "Unable to show the task: " + reason.localizedDescription(); });
  PendingReportableError::of(reason).save();
  setUpFallback(content);
}

void NotificationViewController::setUpFallback(const UNNotificationContent& content) {
  // An answer belongs to what is seen, not to the task of an earlier notification.
  task_.reset();
  nextProgress_.reset();
  view_->setBackground(
      {.type = Theme::hero.backgroundType(), .page = {.pageNumber = TaskPageNumber::first}});
  const OxCodableColor color =
      Theme::hero.taskTextColor({TaskDisplayOrder::first, std::nullopt, themeContext});
  view_->setContents(
      {.titleLabel = {plain(content.title, color, titleFontSize), NSTextAlignment::center},
       .bodyLabel = {plain(content.body, color, bodyFontSize), NSTextAlignment::center},
       .ringIsHidden = true});
}

void NotificationViewController::didReceive(const UNNotificationResponse& response,
                                            CompletionHandler completionHandler) {
  if (std::exchange(responseHandled_, true)) return;
  completionHandler_ = std::move(completionHandler);
  const auto action = fromRawValue<NotificationAction>(response.actionIdentifier);
  const bool completes =
      action == NotificationAction::markAsDone || action == NotificationAction::markAsMissed;
  // Without a task there is nothing to play, and yet the platform waits for its answer.
  if (!completes || !nextProgress_) {
    return forward();
  }
  playCompletion();
}

void NotificationViewController::playCompletion() {
  if (nextProgress_->progressPct(Date::now()) >= 1) {
    return view_->checkableTaskView()->checkAutomatically(completionDuration);
  }
  setProgress(*nextProgress_, stepDuration);
  forward(stepForwardDelay);
}

void NotificationViewController::forward() {
  if (auto handler = std::exchange(completionHandler_, nullptr)) {
    handler(Option::dismissAndForwardAction);
  }
}

void NotificationViewController::forward(double delay) {
  // Only the handler of the road that ends here: by then another response may be under way. The
  // controller stays until its handler was called.
  auto handler = std::exchange(completionHandler_, nullptr);
  if (!handler) return;
  DispatchQueue::main().asyncAfter(
      delay, [self = shared_from_this(), handler = std::move(handler)]() mutable {
        handler(Option::dismissAndForwardAction);
      });
}

void NotificationViewController::checkableTaskViewDidChangeState(State newState) {
  if (newState == State::completed) {
    if (task_) {
      const bool negative = task_->completionStatus.isNegative();
      showCaptions(negative ? task_->streak.reset() : task_->streak.increment());
      forward(completedForwardDelay);
    } else {
      forward();
    }
  }
  if (observer_) observer_();
}

}  // namespace velloro
