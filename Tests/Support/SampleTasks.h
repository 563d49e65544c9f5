#pragma once

#include "VelloroSnapshots/ComplicationTaskSnapshot.h"
#include "VelloroSnapshots/NotificationTask.h"

namespace velloro {

inline UniqueID sampleID(int number) {
  return UniqueID::fromString("00000000-0000-4000-8000-00000000000" + std::to_string(number))
      .value();
}

inline DatedPeriod sampleDay() {
  return DatedPeriod::fromDate({2024, 3, 7}, TaskFrequencyPeriodType::day, DayOfWeek::monday, {});
}

/// A task of three parts a day, of which one is done.
inline NotificationTask sampleTask() {
  using Status = CompletionStatus::Status;
  NotificationTask task;
  task.taskId = sampleID(1);
  task.firstDayOfWeek = DayOfWeek::monday;
  task.startOfDay = {4, 0, 0};
  task.timeZone = TimeZone::fromIdentifier("Europe/Berlin").value();
  task.displayTitle = {.localizedPrimary = "Drink"};
  task.displayOrder = {TaskPageNumber{1}, 2};
  task.frequency = TaskFrequency::defaultFrequency;
  task.frequency.numPartialCompletions = 3;
  task.streak = StreakRecord(4, 9);
  task.completionStatus.status = Status::positiveIncomplete(SkipMode::willMissWithIndicator);
  task.completionStatus.codableProgress.base =
      TaskProgressDiscrete{.period = sampleDay(), .expectedCompletions = 3, .numCompletions = 1};
  return task;
}

/// The same with every optional member.
inline NotificationTask fullSampleTask() {
  const ComplicationSnapshotDisplayRepresentation icon{.visualRepresentation = {"ic_water_glass"},
                                                       .displayProperties = {}};
  NotificationTask task = sampleTask();
  task.titleIcon = TaskDisplayTitle::TitleIcon::health;
  task.displayRepresentation = icon;
  task.color = OxCodableColor{.r = 0.2, .g = 0.4, .b = 0.6};
  task.externalUrl = "https://example.org/";
  task.shareStatus = TaskShareStatus::isSharedWithMe;
  task.shareOwnerDisplayRepresentation = icon;
  task.shareOwnerDisplayName = "Ada";
  task.shareParticipantsCount = 2;
  task.userProfileID = sampleID(2);
  return task;
}

}  // namespace velloro
