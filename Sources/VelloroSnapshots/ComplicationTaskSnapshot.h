#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/StandIns.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"
#include "VelloroCore/Status/CompletionStatus.h"
#include "VelloroCore/Status/StreakRecord.h"
#include "VelloroCore/Status/TaskStatus.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"
#include "VelloroCore/Types/AutomaticTaskType.h"
#include "VelloroCore/Types/TaskExtra.h"
#include "VelloroSnapshots/ComplicationSnapshotDisplayRepresentation.h"
#include "VelloroSnapshots/WatchTaskAction.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velloro {

/// A note on a task, on one day or pinned.
struct ComplicationTaskNoteSnapshot {
  struct Content {
    std::string body;

    bool operator==(const Content&) const = default;
    static constexpr auto codingKeys = keys(key("body", &Content::body));
  };

  UniqueID uniqueID;
  std::optional<YYYYMMDD> date = {};
  Content content;

  bool operator==(const ComplicationTaskNoteSnapshot&) const = default;
  static constexpr auto codingKeys = keys(key("uniqueID", &ComplicationTaskNoteSnapshot::uniqueID),
                                          key("date", &ComplicationTaskNoteSnapshot::date),
                                          key("content", &ComplicationTaskNoteSnapshot::content));
};

/// A task for the watch: all that is shown and done with it there, away from the store. What an
/// older program did not write reads as its initial value.
struct ComplicationTaskSnapshot {
  /// How many days were completed in a stretch of days.
  struct UniqueCompletions {
    YYYYMMDD start;
    YYYYMMDD end;
    std::int64_t count = 0;

    bool operator==(const UniqueCompletions&) const = default;
    static constexpr auto codingKeys =
        keys(key("start", &UniqueCompletions::start), key("end", &UniqueCompletions::end),
             key("count", &UniqueCompletions::count));
  };

  Date date;  ///< The instant that the snapshot describes.
  Date statusDate;
  std::optional<UniqueID> taskUniqueId = {};
  TaskStatus taskStatus = defaultStatus;
  YYYYMMDD createdDate;
  HHMMSS startOfDay;
  DayOfWeek firstDayOfWeek = {};
  TimeZone taskCurrentTimeZone = TimeZone::gmt();
  std::optional<std::string> title = {};
  std::optional<ComplicationSnapshotDisplayRepresentation> snapshotDisplayRepresentation = {};
  std::optional<AutomaticTaskType> automaticTaskType = {};
  TaskDisplayOrder taskDisplayOrder;
  TaskFrequency frequency;
  bool isNegative = false;
  std::optional<OxCodableColor> codableColor = {};
  TaskExtra taskExtra = {};
  std::set<UniqueID> categoryIDs = {};
  CompletionStatus completionStatus;
  StreakRecord streak;
  TaskShareStatus shareStatus = TaskShareStatus::notShared;
  std::optional<ComplicationSnapshotDisplayRepresentation> shareOwnerSnapshotDisplayRepresentation =
      {};
  std::optional<std::string> shareOwnerDisplayName = {};
  std::int64_t shareParticipantCount = 0;
  TaskNotificationSettings notificationSettings;
  std::optional<UniqueID> userProfileID = {};  ///< Stays on this device.
  std::optional<TaskFrequencyPeriod> periodOfLastCompletionBeforeToday = {};
  std::optional<UniqueCompletions> numUniqueCompletions = {};
  std::vector<WatchTaskAction> pendingActions = {};
  std::vector<ComplicationTaskNoteSnapshot> notes = {};
  std::optional<ComplicationTaskNoteSnapshot> snapshotPinnedNote = {};

  bool operator==(const ComplicationTaskSnapshot&) const = default;

  using Self = ComplicationTaskSnapshot;
  static constexpr auto codingKeys = keys(
      key("date", &Self::date), key("statusDate", &Self::statusDate),
      key("taskUniqueId", &Self::taskUniqueId),
      key("taskStatus", &Self::taskStatus, initialWhenUnknown),
      key("createdDate", &Self::createdDate),
      key("startOfDay", &Self::startOfDay, initialWhenUnknown),
      key("firstDayOfWeek", &Self::firstDayOfWeek, whenUnknown(&firstDayOfWeekStandIn)),
      key("taskCurrentTimeZone", &Self::taskCurrentTimeZone, whenUnknown(&timeZoneStandIn)),
      key("title", &Self::title),
      key("snapshotDisplayRepresentation", &Self::snapshotDisplayRepresentation),
      key("automaticTaskType", &Self::automaticTaskType),
      key("taskDisplayOrder", &Self::taskDisplayOrder), key("frequency", &Self::frequency),
      key("isNegative", &Self::isNegative, initialValue), key("codableColor", &Self::codableColor),
      key("taskExtra", &Self::taskExtra, initialValue),
      key("categoryIDs", &Self::categoryIDs, initialValue),
      key("completionStatus", &Self::completionStatus), key("streak", &Self::streak),
      key("shareStatus", &Self::shareStatus, initialValue),
      key("shareOwnerSnapshotDisplayRepresentation",
          &Self::shareOwnerSnapshotDisplayRepresentation),
      key("shareOwnerDisplayName", &Self::shareOwnerDisplayName),
      key("shareParticipantCount", &Self::shareParticipantCount, initialValue),
      key("notificationSettings", &Self::notificationSettings),
      key("periodOfLastCompletionBeforeToday", &Self::periodOfLastCompletionBeforeToday),
      key("numUniqueCompletions", &Self::numUniqueCompletions),
      key("pendingActions", &Self::pendingActions, initialValue),
      key("notes", &Self::notes, initialValue),
      key("snapshotPinnedNote", &Self::snapshotPinnedNote));

  /// Runs against a clock.
  [[nodiscard]] bool isTimed() const;
  [[nodiscard]] std::optional<TaskDisplayTitle::TitleIcon> titleIcon() const;
  [[nodiscard]] TaskDisplayTitle displayTitle(Date now, const Locale& locale) const;
};

/// A category for the watch.
struct TaskCategorySnapshot {
  UniqueID uniqueID;
  std::string title;
  std::optional<ComplicationSnapshotDisplayRepresentation> snapshotDisplayRepresentation = {};
  std::optional<OxCodableColor> color = {};

  bool operator==(const TaskCategorySnapshot&) const = default;
  static constexpr auto codingKeys = keys(
      key("uniqueID", &TaskCategorySnapshot::uniqueID), key("title", &TaskCategorySnapshot::title),
      key("snapshotDisplayRepresentation", &TaskCategorySnapshot::snapshotDisplayRepresentation),
      key("color", &TaskCategorySnapshot::color));
};

}  // namespace velloro
