#pragma once

#include "Foundation/Values/Hasher.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/Platform.h"
#include "OxKit/UniqueID.h"

#include <cstddef>
#include <string>

namespace velloro {

/// The identifier under which a notification is scheduled, found again and replaced.
///
///     NotificationID::reminder({2024, 3, 7}, snapshot.taskId, 0).str.substr(0, 3);    // "r7."
struct NotificationID {
  std::string str;

  bool operator==(const NotificationID&) const = default;
  static constexpr auto codingValue = &NotificationID::str;

  /// One reminder of a task on a day; `index` counts within the day. It names the day of the month
  /// alone, so a reminder a month later takes the place of one that is still pending.
  [[nodiscard]] static NotificationID reminder(YYYYMMDD day, const UniqueID& task,
                                               std::size_t index);
  /// The notice of a completion on a day.
  [[nodiscard]] static NotificationID completion(YYYYMMDD day, const UniqueID& task);
  /// A running timer's notice, by its place among the task's timer reminders.
  [[nodiscard]] static NotificationID timedProgress(const UniqueID& task, std::size_t index);
  /// A change of the badge, by its place among them.
  [[nodiscard]] static NotificationID badge(std::size_t index);
  /// A reminder that was asked for by voice.
  [[nodiscard]] static NotificationID spoken(const UniqueID& reminder, const UniqueID& task);

  /// How many identifiers of one task and day may be pending, by the number of its reminders: they
  /// are cancelled without a look at what there is.
  ///
  ///     NotificationID::numRemindersToCancel(0);    // 4: the automatic ones
  [[nodiscard]] static std::size_t numRemindersToCancel(std::size_t numReminders);
};

}  // namespace velloro
