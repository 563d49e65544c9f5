#include "velloro/Notifications/NotificationPlay.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/String.h"
#include "Settings/Settings.h"
#include "UserNotifications/UNNotificationContentExtensionHost.h"
#include "velloro/Notifications/NotificationReport.h"
#include "velloro/Output/Output.h"

#include <array>
#include <cmath>

namespace velloro {
namespace {

using Option = UNNotificationContentExtensionResponseOption;

constexpr double duration = 3;  // longer than any road of an answer

std::string_view optionName(Option option) {
  constexpr std::array<std::string_view, 3> names = {"doNotDismiss", "dismiss",
                                                     "dismissAndForwardAction"};
  return names[static_cast<std::size_t>(option)];
}

/// The machine's place and language, in a time of its own.
struct Stage {
  Stage() {
    const Environment& machine = Environment::current();
    const Date now = machine.now();
    const Directories directories = machine.directories();
    const std::string locale = machine.localeIdentifier();
    const TimeZone zone = machine.timeZone();
    (void)Settings::shared();  // those of the machine
    scene.emplace();
    scene->setResources(directories.resources);
    scene->setLocale(locale);
    scene->setTimeZone(zone);
    scene->setNow(now);
  }

  std::optional<VirtualEnvironment> scene;
};

class Player {
 public:
  Player(VirtualEnvironment& scene, const NotificationViewController::Screen& screen)
      : scene_(scene), controller_(NotificationViewController::make(screen)) {}

  NotificationPlay play(const UNNotification& notification, const std::string& action,
                        const NotificationPlay::TakeFrame& take) {
    UNNotificationContentExtensionHost host(
        {.makeController = [this] { return controller_; },
         .forward = [this](const UNNotificationResponse& response) { play_.forwarded = response; },
         .didAnswer =
             [this](Option option) {
               play_.option = option;
               play_.optionTime = time();
             }});
    host.present(notification);
    scene_.settle();
    start_ = scene_.mediaTime();
    caption_ = caption();
    controller_->setObserver([this] { noteChange(); });
    host.respond(action);
    scene_.settle();
    for (int i = 0; i <= duration * NotificationPlay::framesPerSecond; ++i) {
      const double at = static_cast<double>(i) / NotificationPlay::framesPerSecond;
      if (play_.option && at > play_.optionTime) break;
      scene_.advance(start_ + at - scene_.mediaTime());
      if (take) take(*notificationPicture(*controller_->view()));
    }
    controller_->setObserver(nullptr);
    return std::move(play_);
  }

 private:
  /// What a sum of binary fractions lost is no part of the time.
  [[nodiscard]] double time() const {
    return std::round((scene_.mediaTime() - start_) * 1e6) / 1e6;
  }
  [[nodiscard]] const CheckableTaskView& ring() const {
    return *controller_->view()->checkableTaskView();
  }
  [[nodiscard]] std::string caption() const {
    return ring().configuration().bottomCaption.text.value_or("");
  }

  void noteChange() {
    play_.timeline.push_back({time(), "state", std::string(stateName(ring().state()))});
    if (caption() == caption_) return;
    caption_ = caption();
    play_.timeline.push_back({time(), "caption", caption_});
  }

  VirtualEnvironment& scene_;
  std::shared_ptr<NotificationViewController> controller_;
  NotificationPlay play_;
  double start_ = 0;
  std::string caption_;
};

}  // namespace

NotificationPlay NotificationPlay::of(const UNNotification& notification,
                                      const std::string& actionIdentifier,
                                      const NotificationViewController::Screen& screen,
                                      const TakeFrame& take) {
  Stage stage;
  return Player(*stage.scene, screen).play(notification, actionIdentifier, take);
}

PropertyList NotificationPlay::report() const {
  PropertyList::Array events;
  for (const Event& event : timeline) {
    events.emplace_back(PropertyList::Dictionary{{"time", event.time}, {event.what, event.value}});
  }
  PropertyList completion;
  if (option) {
    completion = PropertyList::Dictionary{
        {"option", rawValue(*option)}, {"name", optionName(*option)}, {"time", optionTime}};
  }
  PropertyList handedOn;
  if (forwarded) {
    handedOn = PropertyList::Dictionary{
        {"actionIdentifier", forwarded->actionIdentifier},
        {"categoryIdentifier", forwarded->notification.request.content.categoryIdentifier},
        {"userInfo", forwarded->notification.request.content.userInfo}};
  }
  return PropertyList::Dictionary{
      {"timeline", events}, {"completion", completion}, {"forwarded", handedOn}};
}

std::string NotificationPlay::text() const {
  std::string lines;
  const auto addLine = [&](double time, const std::string& what, std::string_view value) {
    lines += stringWithFormat("%.3f  ", time) + padded(what, 8) + " " + terminalText(value) + "\n";
  };
  for (const Event& event : timeline) {
    addLine(event.time, event.what, event.value.empty() ? "-" : event.value);
  }
  if (option) addLine(optionTime, "answer", optionName(*option));
  if (forwarded) addLine(optionTime, "forwards", forwarded->actionIdentifier);
  return lines;
}

}  // namespace velloro
