#pragma once

#include "Notifications/NotificationContentBuilder.h"
#include "Notifications/Planning/NotificationHelper.h"
#include "OxKit/FunctionRef.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace velloro {

/// How many tasks are incomplete now, and how that number will change on this day and the four that
/// follow if nobody does anything.
///
///     BadgePlan plan(now);
///     plan.add({.now = now}, {.badgeMode = BadgeMode::includeWhenIncomplete}, [](const auto&) {
///       return CompletionStatus::Status::positiveIncomplete(SkipMode::willMissWithIndicator);
///     });
///     plan.count();             // 1
///     plan.updates().size();    // 0: nothing changes by itself
class BadgePlan {
 public:
  static constexpr std::int64_t lastDay = 4;  ///< Counted from the present one.

  explicit BadgePlan(Date now) : now_(now) {}

  using Status = FunctionRef<CompletionStatus::Status(const TaskFrequencyPeriod&)>;
  /// Counts a task whose settings want it, from `badgeFrom` on and before `badgeTo` of each of its
  /// logical days on which it is incomplete. Hours that end no later than they begin go on in the
  /// morning of the logical day.
  void add(const TaskStanding& task, const TaskNotificationSettings& settings, Status status);

  [[nodiscard]] std::int64_t count() const;
  /// In order of time; each count differs from the one before it.
  [[nodiscard]] std::vector<NotificationContentBuilder::BadgeUpdate> updates() const;

  /// Sets the count at once and its changes at their times, and cancels those of an earlier plan.
  [[nodiscard]] NotificationHelper::ScheduleRequest request(
      const NotificationContentBuilder& builder) const;
  /// Cancels what an earlier plan has pending, for a program that shows no badge.
  [[nodiscard]] NotificationHelper::ScheduleRequest cancels() const;

 private:
  /// \param to Absent: up to the end of what is planned.
  void addStretch(Date from, std::optional<Date> to);

  Date now_;
  std::map<Date, std::int64_t> changes_;
};

}  // namespace velloro
