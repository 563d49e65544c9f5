#pragma once

#include "AppExtensions/NotificationView.h"
#include "CheckableTasks/CheckableTaskView.h"
#include "Foundation/Values/Geometry.h"
#include "Notifications/NotificationData.h"
#include "Settings/Settings.h"
#include "UserNotifications/UNNotificationContentExtension.h"
#include "VelloroCore/Appearance/Theme.h"
#include "VelloroCore/Progress/TaskProgress.h"
#include "VelloroSnapshots/NotificationTask.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace velloro {

enum class UIUserInterfaceStyle : std::uint8_t { unspecified, light, dark };

/// Shows an expanded notification of a task, from nothing but what the notification carries: no
/// store is opened. An answer is played, and then handed on to the program, which writes it down.
///
///     UNNotificationContentExtensionHost host(
///         {.makeController = [] { return NotificationViewController::make({.width = 320}); },
///          .forward = [](const auto& response) {}});
///     host.present({.date = now, .request = {.content = {.title = "Read"}}});
///     host.respond("NotificationManager.Action.MarkAsDone");
///         // The ring fills in 0.55 s and is completed after 0.96 s, with the new streak below it;
///         // after 1.46 s the response is forwarded. A step that doesn't complete the task moves
///         // the ring in 0.5 s and is forwarded after 1 s; any other action at once.
///
/// A notification whose record can't be read or shown is shown by its text alone. What was wrong is
/// kept as a `PendingReportableError`. When another notification takes the place of one whose
/// answer is still played, the play ends, and that answer is forwarded. For the main queue alone.
class NotificationViewController : public UNNotificationContentExtension,
                                   public CheckableTaskView::Delegate,
                                   public std::enable_shared_from_this<NotificationViewController> {
 public:
  /// Where it is shown.
  struct Screen {
    double width = 320;  ///< In points.
    double scale = 2;    ///< Pixels per point.
    UIUserInterfaceStyle userInterfaceStyle = UIUserInterfaceStyle::light;
  };

  /// \param settings Must outlive it.
  [[nodiscard]] static std::shared_ptr<NotificationViewController> make(
      const Screen& screen, const Settings& settings = Settings::shared());

  void didReceive(const UNNotification& notification) override;
  void didReceive(const UNNotificationResponse& response,
                  CompletionHandler completionHandler) override;
  /// Has the ring's height and the margins round it, whatever the texts need; the view is higher
  /// where they need more.
  [[nodiscard]] CGSize preferredContentSize() const override { return preferredContentSize_; }
  void checkableTaskViewDidChangeState(CheckableTaskView::State newState) override;

  [[nodiscard]] const std::shared_ptr<NotificationView>& view() const { return view_; }
  /// Absent where the notification's text is all that is shown.
  [[nodiscard]] const std::optional<NotificationTask>& task() const { return task_; }
  /// The progress that one further completion makes; absent without a task.
  [[nodiscard]] const std::optional<TaskProgress>& nextProgress() const { return nextProgress_; }
  /// Called after each change of the ring's state, when the caption has changed with it.
  void setObserver(std::function<void()> observer) { observer_ = std::move(observer); }

 private:
  static constexpr Theme::Context themeContext = Theme::Context::notification;

  NotificationViewController(const Screen& screen, const Settings& settings);

  /// Ends the response to the notification that was shown until now.
  void abandonResponse();
  /// \throws Error where there is no task to be read; nothing has changed then.
  void setUp(const UNNotificationContent& content);
  void showTextAlone(const UNNotificationContent& content, const Error& reason);
  void setUpFallback(const UNNotificationContent& content);
  [[nodiscard]] PositionedTheme theme(const PositionedTheme& ofNotification) const;
  /// Returns what a screen reader says first of the ring.
  std::optional<std::string> showTexts(const UNNotificationContent& content,
                                       const PositionedTheme& theme);
  void configureRing(const PositionedTheme& theme, std::optional<std::string> accessibilityLabel);
  void showProgress();
  void showBadge(const PositionedTheme& theme);
  void showCaptions(const StreakRecord& streak);
  void setProgress(const TaskProgress& progress, double duration);
  [[nodiscard]] bool isChecking() const;
  void playCompletion();
  /// Hands the action on, now or so many seconds from now.
  void forward();
  void forward(double delay);

  const Screen screen_;
  const Settings& settings_;
  const std::shared_ptr<NotificationView> view_;
  CGSize preferredContentSize_;
  std::optional<TaskProgress> nextProgress_;
  std::optional<NotificationTask> task_;
  CompletionHandler completionHandler_;
  bool responseHandled_ = false;
  std::function<void()> observer_;
};

}  // namespace velloro
