#include "Host/ReminderContent.h"

#include "Notifications/NotificationCategory.h"
#include "Notifications/NotificationData.h"
#include "OxKit/Localization.h"
#include "Settings/Settings.h"
#include "Tasks/Rows/TaskEntity.h"
#include "VelloroCore/Wording/ReminderWordingKeys.h"

namespace velloro {
namespace {

NotificationCategory categoryOf(const TaskEntity& task, bool hasExternalUrl) {
  using enum NotificationCategory;
  const bool isNegative = task.value(TaskAttributes::isNegative);
  if (task.taskShareStatus() == TaskShareStatus::isSharedWithMe) {
    return isNegative ? reminderNegativeSharedWithMe : reminderPositiveSharedWithMe;
  }
  if (hasExternalUrl) {
    return isNegative ? reminderNegativeWithURL : reminderPositiveWithURL;
  }
  return isNegative ? reminderNegative : reminderPositive;
}

}  // namespace

UNNotificationContent reminderContent(const TaskEntity& task, const TaskFrequencyPeriod& period,
                                      Date now) {
  const auto snapshot = task.notificationTaskCurrentProgress(period, now);
  const auto category = categoryOf(task, snapshot && snapshot->externalUrl);
  UNNotificationContent content{.categoryIdentifier = std::string(rawValue(category)),
                                .body = localized(reminder_wording::reminder.noTask)};
  content.title = task.title();
  if (!snapshot) return content;
  const TaskDisplayOrder order = task.taskDisplayOrder();
  const NotificationData data{
      .task = *snapshot, .theme = Settings::shared().theme(order.pageNumber).positioned(order)};
  content.userInfo = data.userInfo();
  return content;
}

}  // namespace velloro
