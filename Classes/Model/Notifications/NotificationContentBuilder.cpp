#include "Notifications/NotificationContentBuilder.h"

#include "Notifications/TaskSharingBadge.h"
#include "OxCheckableTasks/Icons/IconArtwork.h"
#include "OxCheckableTasks/StaticImages/StaticImageGenerator.h"
#include "OxKit/Localization.h"
#include "VelloroCore/Reminders/NotificationTextKeys.h"
#include "VelloroCore/Status/StreakTextKeys.h"
#include "VelloroCore/Titles/FormatManager.h"
#include "VelloroCore/Titles/TaskTitleAttributedString.h"

namespace velloro {
namespace {

/// Seconds. An image that is drawn earlier shows a state that will have changed when it is seen.
constexpr TimeInterval imagesAreMadeAhead = 86400;
constexpr double imageDiameter = 42;

NotificationCategory reminderCategory(const NotificationTask& task) {
  using enum NotificationCategory;
  const bool isNegative = task.completionStatus.isNegative();
  if (task.shareStatus == TaskShareStatus::isSharedWithMe) {
    return isNegative ? reminderNegativeSharedWithMe : reminderPositiveSharedWithMe;
  }
  if (task.externalUrl) return isNegative ? reminderNegativeWithURL : reminderPositiveWithURL;
  return isNegative ? reminderNegative : reminderPositive;
}

std::optional<IconDisplayRepresentation> iconOf(
    const std::optional<ComplicationSnapshotDisplayRepresentation>& snapshot) {
  return snapshot ? snapshot->displayRepresentation() : std::nullopt;
}

/// The letters for a person, where their picture is made of letters.
std::string lettersOf(const std::optional<IconDisplayRepresentation>& person) {
  if (!person) return {};
  const IconVisualRepresentation& look = person->visualRepresentation;
  switch (look.kind()) {
    case IconVisualRepresentation::EncodingPrefix::emoji:
      return look.text();
    case IconVisualRepresentation::EncodingPrefix::monogram:
      return "(" + look.text() + ")";
    default:
      return {};
  }
}

std::string ownersText(const NotificationTask& task) {
  if (task.shareStatus != TaskShareStatus::isSharedWithMe) return {};
  const std::string letters = lettersOf(iconOf(task.shareOwnerDisplayRepresentation));
  const std::string name = task.shareOwnerDisplayName.value_or("");
  return letters + (letters.empty() || name.empty() ? "" : " ") + name;
}

std::optional<ConcreteSoundEffect> sounding(const std::optional<SoundEffect>& effect,
                                            SoundEffectDirection direction) {
  if (!effect) return std::nullopt;
  return concrete(*effect, direction);
}

const LocalizedKey& completionKey(const NotificationContentBuilder::Completion& completion) {
  if (completion.isTimer) return notification_text::timerCompleted;
  return completion.isNegative ? notification_text::missed : notification_text::completed;
}

RelevanceLevel completionLevel(const NotificationContentBuilder::Completion& completion) {
  using enum RelevanceLevel;
  const bool isPartial = completion.isPartial;
  if (completion.isTimer) return isPartial ? taskTimedPartialCompletion : taskTimedCompletion;
  if (completion.isNegative) return isPartial ? taskPartialMiss : taskMiss;
  return isPartial ? taskPartialCompletion : taskCompletion;
}

}  // namespace

NotificationContent NotificationContentBuilder::reminder(Reminder reminder) const {
  NotificationContent content{.notificationId = std::move(reminder.id),
                              .trigger = reminder.trigger,
                              .category = reminderCategory(reminder.data.task),
                              .body = std::move(reminder.body),
                              .data = std::move(reminder.data),
                              .sound = sounding(reminder.sound, SoundEffectDirection::neutral),
                              .timeSensitive = reminder.timeSensitive};
  const NotificationData& data = *content.data;
  if (std::string owner = ownersText(data.task); !owner.empty()) content.title = std::move(owner);
  (content.title ? content.subtitle : content.title) = title(reminder.displayTitle, data);
  if (!content.trigger || content.trigger->date.timeIntervalSince(now) <= imagesAreMadeAhead) {
    content.imageUrl = image(data);
  }
  return content;
}

NotificationContent NotificationContentBuilder::completion(const Completion& completion) const {
  const NotificationTask& task = completion.data.task;
  const std::string text = localized(completionKey(completion));
  NotificationContent content{.notificationId = NotificationID::completion(
                                  task.completionStatus.progress().period().date, task.taskId),
                              .category = NotificationCategory::taskCompleted,
                              .title = title(completion.displayTitle, completion.data),
                              .body = text,
                              .data = completion.data,
                              .sound = sounding(completion.sound, SoundEffectDirection::positive),
                              .imageUrl = image(completion.data),
                              .timeSensitive = completion.timeSensitive,
                              .relevanceLevel = completionLevel(completion)};
  content.data->succinctBody.reset();
  if (!completion.isPartial && !completion.isNegative) {
    content.data->succinctBody = text;
    content.body =
        localized(withCurrentAndBestStreak, {text, task.streak.current, task.streak.best});
  }
  return content;
}

NotificationContent NotificationContentBuilder::timedProgressCompleted(
    const TimedProgress& progress) const {
  return timedProgress(progress, NotificationCategory::timedTaskProgressComplete,
                       notification_text::progressCompleted);
}

NotificationContent NotificationContentBuilder::timedProgressRemaining(
    const TimedProgress& progress) const {
  return timedProgress(progress, NotificationCategory::timedTaskProgressRemaining,
                       notification_text::progressRemaining);
}

NotificationContent NotificationContentBuilder::timedProgress(const TimedProgress& progress,
                                                              NotificationCategory category,
                                                              const LocalizedKey& title) const {
  const auto duration = FormatManager::shared(Locale::current())
                            .formattedDurationForTimedTaskNotification(progress.duration);
  return {.notificationId = progress.id,
          .trigger = progress.trigger,
          .category = category,
          .title = localized(title, {duration.value_or("")}),
          .body = this->title(progress.displayTitle, progress.data),
          .data = progress.data,
          .sound = sounding(progress.sound, SoundEffectDirection::neutral),
          .imageUrl = image(progress.data),
          .timeSensitive = progress.timeSensitive,
          .relevanceLevel = RelevanceLevel::timedTaskDuration};
}

NotificationContent NotificationContentBuilder::badge(const BadgeUpdate& update,
                                                      std::size_t index) const {
  NotificationContent content{.notificationId = NotificationID::badge(index),
                              .category = NotificationCategory::badge,
                              .badge = update.badge > 0 ? update.badge : -1,
                              .sound = std::nullopt};
  if (update.date) content.trigger = NotificationTrigger{*update.date};
  return content;
}

std::string NotificationContentBuilder::title(const TaskDisplayTitle& displayTitle,
                                              const NotificationData& data) const {
  const auto written = displayTitle.localizedTitle(
      TaskDisplayTitle::Context::notificationWithQuantity, Locale::current());
  const std::string text = written.value_or("");
  if (isVoiceOverRunning || !data.task.titleIcon) return text;
  return std::string(textVersion(*data.task.titleIcon)) + " " + text;
}

std::optional<std::filesystem::path> NotificationContentBuilder::image(
    const NotificationData& data) const {
  const NotificationTask& task = data.task;
  const auto icon = iconOf(task.displayRepresentation);
  if (!icon || icon->visualRepresentation.isDynamic()) return std::nullopt;
  const TaskProgress& progress = task.completionStatus.progress();
  StaticImageGenerator::Request request{
      .size = {imageDiameter, imageDiameter},
      .scale = screenScale,
      .image = StaticImageGenerator::Request::Image{.icon = icon->visualRepresentation,
                                                    .displayProperties = icon->displayProperties}};
  if (makesImages &&
      icon->visualRepresentation.kind() == IconVisualRepresentation::EncodingPrefix::monogram) {
    request.image->image =
        IconArtwork{.representation = *icon, .side = imageDiameter, .scale = screenScale}.image();
  }
  request.layoutProperties.colors = data.theme.colorProfile(
      task.completionStatus.status, task.color,
      progress.period().period.numberOfDays(task.timeZone), Theme::Context::notificationAttachment);
  request.layoutProperties.progress = progress.progressPct(now);
  if (task.shareStatus == TaskShareStatus::isSharedWithMe) {
    request.layoutProperties.badges = {
        taskSharingBadge(iconOf(task.shareOwnerDisplayRepresentation), data.theme, task.color)};
  }
  return makesImages ? StaticImageGenerator::imageFile(request)
                     : StaticImageGenerator::imageFilePath(request);
}

}  // namespace velloro
