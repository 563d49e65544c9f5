#include "velloro/Notifications/NotificationSamples.h"

#include "Foundation/Process/Environment.h"
#include "Notifications/NotificationCategory.h"
#include "Notifications/NotificationData.h"

#include <algorithm>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;
using TitleIcon = TaskDisplayTitle::TitleIcon;

struct Scene {
  NotificationTask task;
  NotificationCategory category = NotificationCategory::reminderPositive;
  ColorScheme colors = ColorScheme::orange;
  std::string title = {};  ///< Empty: the task's.
  std::string body = {};
};

DatedPeriod today() {
  return TaskFrequency::defaultFrequency.currentPeriod(HHMMSS::midnight, DayOfWeek::monday,
                                                       TimeZone::current(), Date::now());
}

ComplicationSnapshotDisplayRepresentation snapshotOf(std::string storedIcon) {
  return {.visualRepresentation = {std::move(storedIcon)}, .displayProperties = {}};
}

NotificationTask taskOf(std::string title, std::string icon) {
  NotificationTask task;
  task.taskId = UniqueID::fromString("5A0F6C1E-2D7B-4C3A-9E48-1B6D3F7A9C20").value();
  task.firstDayOfWeek = DayOfWeek::monday;
  task.timeZone = Environment::current().timeZone();
  task.displayTitle.localizedPrimary = std::move(title);
  task.displayRepresentation = snapshotOf(std::move(icon));
  task.frequency = TaskFrequency::defaultFrequency;
  task.streak = StreakRecord(8, 9);
  task.completionStatus =
      CompletionStatus(Status::positiveIncomplete(SkipMode::willMissWithIndicator),
                       TaskProgressDiscrete{.period = today()});
  return task;
}

void setProgress(NotificationTask& task, const TaskProgress& progress) {
  task.completionStatus.codableProgress.base = progress;
  task.frequency.numPartialCompletions = progress.expectedCompletions();
}

Scene positive() {
  return {.task = taskOf("Walk the dog", "ic_dog"), .body = "Time for a walk."};
}

Scene negative() {
  Scene scene{.task = taskOf("No sweets", "ic_candy"),
              .category = NotificationCategory::reminderNegative,
              .colors = ColorScheme::purple,
              .body = "Eight days without. Keep it up!"};
  scene.task.titleIcon = TitleIcon::negative;
  scene.task.completionStatus.status = Status::negativeComplete(SkipMode::willMissWithIndicator);
  return scene;
}

Scene partial() {
  Scene scene{.task = taskOf("Drink water", "ic_water_glass"),
              .colors = ColorScheme::blue,
              .body = "Three of eight glasses so far."};
  scene.task.displayTitle.quantity = TaskDisplayTitle::Quantity{
      .type = HealthType::dietaryDrinkWater,
      .quantity = {.quantity = 5, .unit = TypeUnit::cupsUS, .speeds = {}}};
  scene.task.titleIcon = TitleIcon::health;
  setProgress(scene.task, TaskProgressDiscrete{
                              .period = today(), .expectedCompletions = 8, .numCompletions = 3});
  return scene;
}

TaskProgressTimer twentyMinutes(double elapsed) {
  return {.period = today(),
          .unit = TaskProgressTimer::Unit::minutes,
          .totalTargetDuration = 20 * 60,
          .currentCompletionDuration = elapsed};
}

Scene timer() {
  Scene scene{.task = taskOf("Read", "ic_book"),
              .colors = ColorScheme::green,
              .body = "Read for another twelve minutes."};
  scene.task.displayTitle.quantity = TaskDisplayTitle::Quantity{
      .quantity = {.quantity = 12, .unit = TypeUnit::durationMinutes, .speeds = {}}};
  scene.task.titleIcon = TitleIcon::timed;
  setProgress(scene.task, twentyMinutes(8 * 60));
  return scene;
}

Scene rings() {
  Scene scene{.task = taskOf("Close the rings", "ic_activity_rings"),
              .colors = ColorScheme::black,
              .body = "Exercise and stand are nearly there."};
  scene.task.titleIcon = TitleIcon::health;
  setProgress(scene.task, TaskProgressActivityRings{
                              .period = today(), .energy = 0.45, .exercise = 0.9, .stand = 0.8});
  return scene;
}

Scene sharedWithMe() {
  Scene scene{.task = taskOf("Meditate", "ic_meditation"),
              .category = NotificationCategory::reminderPositiveSharedWithMe,
              .colors = ColorScheme::royalPurple,
              .body = "Ada has done it already."};
  scene.task.shareStatus = TaskShareStatus::isSharedWithMe;
  scene.task.shareOwnerDisplayRepresentation = snapshotOf("mg_AL");
  scene.task.shareOwnerDisplayName = "Ada";
  scene.task.shareParticipantsCount = 1;
  return scene;
}

Scene completed() {
  Scene scene{.task = taskOf("Run", "ic_running"),
              .category = NotificationCategory::taskCompleted,
              .colors = ColorScheme::red,
              .body = "Completed! This is your best streak."};
  scene.task.streak = StreakRecord(10, 10);
  scene.task.completionStatus.status = Status::positiveComplete;
  setProgress(scene.task, TaskProgressDiscrete{.period = today(), .numCompletions = 1});
  return scene;
}

Scene missed() {
  Scene scene = negative();
  scene.body = "There is always tomorrow.";
  scene.task.streak = StreakRecord(0, 9);
  scene.task.completionStatus.status = Status::negativeMiss;
  setProgress(scene.task, TaskProgressDiscrete{.period = today(), .numCompletions = 1});
  return scene;
}

Scene timedProgress() {
  Scene scene = timer();
  scene.category = NotificationCategory::timedTaskProgressRemaining;
  scene.title = "Five minutes remaining";
  scene.body = "Read";
  setProgress(scene.task, twentyMinutes(15 * 60));
  return scene;
}

UNNotificationContent contentOf(const Scene& scene) {
  const NotificationData data{
      .task = scene.task,
      .theme = Theme{.colorScheme = scene.colors}.positioned(scene.task.displayOrder)};
  return {.categoryIdentifier = std::string(rawValue(scene.category)),
          .title = scene.title.empty() ? *scene.task.displayTitle.localizedPrimary : scene.title,
          .body = scene.body,
          .userInfo = data.userInfo()};
}

UNNotificationContent unknownCategory() {
  UNNotificationContent content = contentOf(positive());
  content.categoryIdentifier = "nm.c.future";
  return content;
}

UNNotificationContent undecodablePayload() {
  UNNotificationContent content = contentOf(positive());
  (*(*content.userInfo.dictionary())["velloro"].dictionary())["task"] = "damaged";
  return content;
}

UNNotificationContent noPayload() {
  UNNotificationContent content = contentOf(positive());
  content.userInfo = PropertyList::Dictionary{};
  return content;
}

template <Scene scene()>
UNNotificationContent of() {
  return contentOf(scene());
}

struct Sample {
  std::string_view name;
  UNNotificationContent (*content)();
};

constexpr Sample samples[] = {
    {"positive", of<positive>},
    {"negative", of<negative>},
    {"partial", of<partial>},
    {"timer", of<timer>},
    {"rings", of<rings>},
    {"shared-with-me", of<sharedWithMe>},
    {"completed", of<completed>},
    {"missed", of<missed>},
    {"timed-progress", of<timedProgress>},
    {"unknown-category", unknownCategory},
    {"undecodable-payload", undecodablePayload},
    {"no-payload", noPayload},
};

}  // namespace

std::vector<std::string_view> NotificationSamples::names() {
  std::vector<std::string_view> names;
  for (const Sample& sample : samples) names.push_back(sample.name);
  return names;
}

std::optional<UNNotificationContent> NotificationSamples::named(std::string_view name) {
  const auto* sample = std::ranges::find(samples, name, &Sample::name);
  if (sample == std::end(samples)) return std::nullopt;
  return sample->content();
}

}  // namespace velloro
