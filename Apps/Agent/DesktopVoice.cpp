#include "Agent/DesktopVoice.h"

#include "Agent/AgentPlan.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Text/Locale.h"
#include "OxKit/Localization.h"
#include "VelloroCore/Reminders/NotificationTextKeys.h"
#include "VelloroCore/Titles/FormatManager.h"

#include <algorithm>
#include <cmath>

namespace velloro {
namespace {

using Action = DesktopNotification::Action;

/// The key of an action: some servers accept letters, digits and a few signs alone.
std::string keyOf(NotificationAction action) {
  return std::string(rawValue(action));
}

std::string snoozeKey(TimeInterval seconds) {
  return keyOf(NotificationAction::snooze) + "-" + std::to_string(std::lround(seconds));
}

bool mayBeSkipped(const OpenReminder& reminder) {
  using enum NotificationCategory;
  return reminder.category == reminderPositive || reminder.category == reminderPositiveWithURL;
}

bool takesAmounts(const OpenReminder& reminder) {
  if (!mayBeSkipped(reminder) || !reminder.data) return false;
  const TaskProgress& progress = reminder.data->task.completionStatus.progress();
  return progress.as<TaskProgressContinuous>() != nullptr ||
         (progress.as<TaskProgressDiscrete>() != nullptr && progress.expectedCompletions() > 1);
}

std::string snoozeLabel(TimeInterval seconds) {
  const auto duration =
      FormatManager::shared(Locale::current()).formattedDurationForTimedTaskNotification(seconds);
  return localizedTitle(NotificationAction::snooze) + " " + duration.value_or("");
}

/// The answer that settles it, then to put it off, to skip it, and the rest.
std::vector<Action> actionsOf(const OpenReminder& reminder, const DesktopVoice::Options& options) {
  if (!reminder.category) return {};
  std::vector<NotificationAction> given;
  std::ranges::copy(actions(*reminder.category), std::back_inserter(given));
  const auto rank = [](NotificationAction action) {
    using enum NotificationAction;
    return action == markAsDone || action == markAsMissed ? 0 : action == snooze ? 1 : 2;
  };
  std::ranges::stable_sort(given, {}, rank);
  std::vector<Action> buttons;
  for (const NotificationAction action : given) {
    if (action == NotificationAction::sendMessage) continue;
    if (rank(action) == 2 && buttons.size() == 2 && mayBeSkipped(reminder)) {
      buttons.push_back({VoiceAnswer::skipAction, localized(notification_text::skip)});
    }
    buttons.push_back({keyOf(action), localizedTitle(action)});
  }
  if (mayBeSkipped(reminder) && buttons.size() == 2) {
    buttons.push_back({VoiceAnswer::skipAction, localized(notification_text::skip)});
  }
  if (rank(given.empty() ? NotificationAction::sendMessage : given.front()) == 0) {
    for (const TimeInterval length : options.snoozes) {
      buttons.push_back({snoozeKey(length), snoozeLabel(length)});
    }
  }
  return buttons;
}

std::shared_ptr<const CGImage> imageOf(const OpenReminder& reminder) {
  if (reminder.content().attachments.empty()) return nullptr;
  const auto bytes = NSFileManager::contents(reminder.content().attachments.front().url);
  if (!bytes) return nullptr;
  const auto image = CGImage::fromPNG(std::as_bytes(std::span(*bytes)));
  return image ? *image : nullptr;
}

std::optional<std::string> soundOf(const UNNotificationContent& content) {
  if (!content.sound || !content.sound->name) return std::nullopt;
  const auto file = Environment::current().directories().resources / *content.sound->name;
  return NSFileManager::exists(file) ? std::optional(file.string()) : std::nullopt;
}

}  // namespace

DesktopVoice::DesktopVoice(Options options)
    : options_(std::move(options)),
      server_(
          {.name = "velloro", .desktopEntry = desktopEntry, .icon = ""},
          {.arrived = [this](bool) { handlers_.changed(); },
           .gone = [this] { handlers_.changed(); },
           .answered =
               [this](const std::string& key, const std::string& chosen, const std::string& token) {
                 const bool isClick = chosen == UNNotificationDefaultActionIdentifier;
                 answer(isClick ? VoiceAnswer::Kind::opened : VoiceAnswer::Kind::action, key,
                        chosen, token);
               },
           .replied = [this](
                          const std::string& key,
                          const std::string& text) { answer(VoiceAnswer::Kind::reply, key, text); },
           .closed = [this](const std::string& key,
                            NotificationServer::Closed reason) { closed(key, reason); },
           .shown = [this](const std::string& key, std::uint32_t id) { handlers_.shown(key, id); },
           .inhibitionChanged = [this] { handlers_.changed(); }}) {}

void DesktopVoice::setBus(NotificationBus& bus) {
  server_.setBus(bus);
  bus_ = bus.identity();
}

bool DesktopVoice::isInhibited() const {
  return server_.info() && server_.info()->isInhibited.value_or(false);
}

void DesktopVoice::answer(VoiceAnswer::Kind kind, const std::string& key, const std::string& text,
                          const std::string& token) {
  handlers_.answered({.kind = kind, .key = key, .text = text, .token = token});
}

void DesktopVoice::closed(const std::string& key, NotificationServer::Closed reason) {
  using enum NotificationServer::Closed;
  switch (reason) {
    case dismissed:
      return answer(VoiceAnswer::Kind::dismissed, key);
    case other:
      return answer(VoiceAnswer::Kind::unseen, key);
    case expired:
    case byProgram:  // of some servers: also after an action that they have told
      return answer(VoiceAnswer::Kind::expired, key);
  }
}

DesktopNotification DesktopVoice::notification(const OpenReminder& reminder,
                                               const Options& options) {
  const UNNotificationContent& content = reminder.content();
  using enum UNNotificationInterruptionLevel;
  DesktopNotification shown{
      .title = content.title,
      .body = content.subtitle + (content.subtitle.empty() || content.body.empty() ? "" : "\n") +
              content.body,
      .actions = actionsOf(reminder, options),
      .image = imageOf(reminder),
      .isUrgent = options.mayBeUrgent && content.interruptionLevel >= timeSensitive,
      .isSilent = !content.sound,
      .soundFile = soundOf(content),
      .category = reminder.isReminder ? "presence.reminder" : "presence",
      .stays = reminder.isReminder};
  if (reminder.data && reminder.data->task.externalUrl) {
    shown.defaultAction = {std::string(UNNotificationDefaultActionIdentifier),
                           localizedTitle(NotificationAction::openExternalUrl)};
  }
  if (takesAmounts(reminder)) {
    shown.reply = {.placeholder = localized(notification_text::amount),
                   .button = localized(notification_text::logAmount)};
  }
  return shown;
}

void DesktopVoice::show(const OpenReminder& reminder, bool isQuiet) {
  auto shown = notification(reminder, options_);
  if (isQuiet) shown.isSilent = true;
  server_.show(reminder.key, std::move(shown), isQuiet);
}

void DesktopVoice::showSummary(const std::vector<OpenReminder>& missed, bool isQuiet) {
  std::string body;
  for (const OpenReminder& each : missed) {
    body += (body.empty() ? "" : "\n") + each.content().title;
  }
  server_.show(AgentPlan::summaryKey,
               {.title = localized(notification_text::missedReminders,
                                   {static_cast<std::int64_t>(missed.size())}),
                .body = std::move(body),
                .isSilent = isQuiet,
                .category = "presence.reminder"},
               isQuiet);
}

}  // namespace velloro
