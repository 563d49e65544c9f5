#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "OxDateTime/StandIns.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/EnumSet.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Log/TaskLogEntryPeriod.h"
#include "VelloroCore/Log/TaskLogEntryType.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velloro {

struct AutomaticTime;

/// What a `TaskCloudSummary` consists of, under the names that it has there.
namespace task_cloud_summary {

struct TaskDescriptor {
  Date created;
  TimeZone createdTimeZone = TimeZone::gmt();
  TimeZone currentTimeZone = TimeZone::gmt();
  HHMMSS startOfDay = {};
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
  std::optional<std::string> title = {};
  std::optional<AutomaticTaskType> automaticTaskType = {};
  TaskFrequency frequency = {};
  bool isNegative = false;
  bool isPaused = false;

  bool operator==(const TaskDescriptor&) const = default;
  static constexpr auto codingKeys = keys(
      key("created", &TaskDescriptor::created),
      key("createdTimeZone", &TaskDescriptor::createdTimeZone, whenUnknown(&timeZoneStandIn)),
      key("currentTimeZone", &TaskDescriptor::currentTimeZone, whenUnknown(&timeZoneStandIn)),
      key("startOfDay", &TaskDescriptor::startOfDay, initialWhenUnknown),
      key("firstDayOfWeek", &TaskDescriptor::firstDayOfWeek, whenUnknown(&firstDayOfWeekStandIn)),
      key("title", &TaskDescriptor::title),
      key("automaticTaskType", &TaskDescriptor::automaticTaskType),
      key("frequency", &TaskDescriptor::frequency), key("isNegative", &TaskDescriptor::isNegative),
      key("isPaused", &TaskDescriptor::isPaused));
};

struct Entry {
  std::optional<TaskLogEntryPeriod> period = {};
  TaskLogEntryType type = TaskLogEntryType::unknown;
  std::optional<double> progressValue = {};
  std::optional<double> progressPct = {};
  HHMMSS time = {};                       ///< Of the day on which it was made.
  std::optional<TimeZone> timeZone = {};  ///< Absent for the task's.

  bool operator==(const Entry&) const = default;
  static constexpr auto codingKeys =
      keys(key("period", &Entry::period), key("type", &Entry::type, initialWhenUnknown),
           key("progressValue", &Entry::progressValue), key("progressPct", &Entry::progressPct),
           key("time", &Entry::time, initialWhenUnknown), key("timeZone", &Entry::timeZone));
};

struct History {
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
  /// In JSON one list: a day, its entry, the next day, its entry.
  std::map<YYYYMMDD, Entry> single = {};
  /// Those whose period is longer than a day, or not over yet.
  std::vector<Entry> multi = {};

  /// Those of `multi`, then those of `single`.
  [[nodiscard]] std::vector<Entry> unsortedPeriods() const;

  bool operator==(const History&) const = default;
  static constexpr auto codingKeys =
      keys(key("firstDayOfWeek", &History::firstDayOfWeek, whenUnknown(&firstDayOfWeekStandIn)),
           key("single", &History::single), key("multi", &History::multi));
};

/// How far the current period has come.
struct Progress {
  YYYYMMDD date;
  double value = 0;

  bool operator==(const Progress&) const = default;
  static constexpr auto codingKeys =
      keys(key("date", &Progress::date), key("value", &Progress::value));
};

struct ReminderTime {
  using DayIndexes = std::set<std::int64_t>;

  std::optional<EnumSet<DayOfWeek>> days = {};
  std::optional<DayIndexes> dayIndexesFromStart = {}, dayIndexesFromFinish = {};
  std::set<HHMMSS> times = {};

  bool operator==(const ReminderTime&) const = default;
  static constexpr auto codingKeys =
      keys(key("days", &ReminderTime::days),
           key("dayIndexesFromStart", &ReminderTime::dayIndexesFromStart),
           key("dayIndexesFromFinish", &ReminderTime::dayIndexesFromFinish),
           key("times", &ReminderTime::times));
};

struct NotificationSettings {
  std::vector<ReminderTime> automaticTimes = {};

  bool operator==(const NotificationSettings&) const = default;
  static constexpr auto codingKeys =
      keys(key("automaticTimes", &NotificationSettings::automaticTimes));
};

}  // namespace task_cloud_summary

/// What the participants of a shared task receive: the task itself, what happened in each period,
/// the progress of the current one, and when its owner is reminded. The status of the task can be
/// derived from it without the log.
struct TaskCloudSummary {
  using TaskDescriptor = task_cloud_summary::TaskDescriptor;
  using Entry = task_cloud_summary::Entry;
  using History = task_cloud_summary::History;
  using Progress = task_cloud_summary::Progress;
  using ReminderTime = task_cloud_summary::ReminderTime;
  using NotificationSettings = task_cloud_summary::NotificationSettings;

  TaskDescriptor taskDescriptor;
  History history;
  std::optional<Progress> progress = {};
  std::optional<NotificationSettings> notificationSettings = {};

  bool operator==(const TaskCloudSummary&) const = default;
  static constexpr auto codingKeys =
      keys(key("taskDescriptor", &TaskCloudSummary::taskDescriptor),
           key("history", &TaskCloudSummary::history), key("progress", &TaskCloudSummary::progress),
           key("notificationSettings", &TaskCloudSummary::notificationSettings));

  /// The times at which the owner is reminded, which a participant takes over. A list without days
  /// is of every day, and a time that no dial shows is left out.
  [[nodiscard]] std::vector<AutomaticTime> ownersTimes() const;

  /// Equal for equal summaries on all devices, so that it says whether there is news.
  [[nodiscard]] std::int64_t summaryHash() const;
};

/// A summary as it is kept in a store.
struct TaskCloudSummaryCoreDataContainer {
  TaskCloudSummary summary;

  bool operator==(const TaskCloudSummaryCoreDataContainer&) const = default;
  static constexpr auto codingKeys =
      keys(key("summary", &TaskCloudSummaryCoreDataContainer::summary));
};

}  // namespace velloro
