#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/StandIns.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Status/CompletionStatus.h"
#include "VelloroCore/Status/StreakRecord.h"
#include "VelloroCore/Status/TaskStatus.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"
#include "VelloroSnapshots/ComplicationSnapshotDisplayRepresentation.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloro {

/// All that a notification needs to know of its task, as it was when the notification was made: a
/// reader draws it without a store.
struct NotificationTask {
  UniqueID taskId;
  DayOfWeek firstDayOfWeek = {};
  HHMMSS startOfDay;
  TimeZone timeZone = TimeZone::gmt();
  TaskDisplayTitle displayTitle;
  std::optional<TaskDisplayTitle::TitleIcon> titleIcon = {};
  TaskDisplayOrder displayOrder;
  std::optional<ComplicationSnapshotDisplayRepresentation> displayRepresentation = {};
  std::optional<OxCodableColor> color = {};
  TaskFrequency frequency;
  StreakRecord streak;
  CompletionStatus completionStatus;
  std::optional<std::string> externalUrl = {};
  TaskShareStatus shareStatus = TaskShareStatus::notShared;
  std::optional<ComplicationSnapshotDisplayRepresentation> shareOwnerDisplayRepresentation = {};
  std::optional<std::string> shareOwnerDisplayName = {};
  std::int64_t shareParticipantsCount = 0;  ///< Those who have accepted.
  std::optional<UniqueID> userProfileID = {};

  bool operator==(const NotificationTask&) const = default;
  static constexpr auto codingKeys = keys(
      key("taskId", &NotificationTask::taskId),
      key("firstDayOfWeek", &NotificationTask::firstDayOfWeek, whenUnknown(&firstDayOfWeekStandIn)),
      key("startOfDay", &NotificationTask::startOfDay, initialWhenUnknown),
      key("timeZone", &NotificationTask::timeZone, whenUnknown(&timeZoneStandIn)),
      key("displayTitle", &NotificationTask::displayTitle),
      key("titleIcon", &NotificationTask::titleIcon),
      key("displayOrder", &NotificationTask::displayOrder),
      key("displayRepresentation", &NotificationTask::displayRepresentation),
      key("color", &NotificationTask::color), key("frequency", &NotificationTask::frequency),
      key("streak", &NotificationTask::streak),
      key("completionStatus", &NotificationTask::completionStatus),
      key("externalUrl", &NotificationTask::externalUrl),
      key("shareStatus", &NotificationTask::shareStatus, initialWhenUnknown),
      key("shareOwnerDisplayRepresentation", &NotificationTask::shareOwnerDisplayRepresentation),
      key("shareOwnerDisplayName", &NotificationTask::shareOwnerDisplayName),
      key("shareParticipantsCount", &NotificationTask::shareParticipantsCount, initialWhenUnknown),
      key("userProfileID", &NotificationTask::userProfileID));

  /// Its JSON, for logs.
  [[nodiscard]] std::string debugDescription() const;
};

}  // namespace velloro
