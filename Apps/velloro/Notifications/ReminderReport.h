#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Host/ReminderEdit.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// A reminder of a task, as `velloro reminder` prints it.
struct ReminderLine {
  using DayIndexes = TaskReminder::DayIndexes;

  std::optional<std::string> id;  ///< Absent for an automatic time that is not stored yet.
  std::string type;               ///< "tod"
  std::string trigger;            ///< The same in words: "timeOfDay".
  std::optional<std::string> time;
  std::optional<double> duration;  ///< Of a timer, in seconds.
  std::optional<TriggerRegion> region;
  std::vector<std::string> days;  ///< "monday", from Monday on.
  std::optional<DayIndexes> dayIndexesFromStart, dayIndexesFromFinish;
  std::optional<SoundEffect> sound;
  std::optional<bool> muted;  ///< Whether it is never sent; absent for one that is.
  // What an automatic time was learned from; of the history the middle of the times at which the
  // task was done, and their number.
  std::optional<AutomaticTimeSource> source;
  std::optional<std::string> median;
  std::optional<std::int64_t> samples;
  /// The same as `days`, for the text alone.
  EnumSet<DayOfWeek> daysOfWeek;

  static constexpr auto codingKeys =
      keys(key("id", &ReminderLine::id), key("type", &ReminderLine::type),
           key("trigger", &ReminderLine::trigger), key("time", &ReminderLine::time),
           key("duration", &ReminderLine::duration), key("region", &ReminderLine::region),
           key("days", &ReminderLine::days),
           key("dayIndexesFromStart", &ReminderLine::dayIndexesFromStart),
           key("dayIndexesFromFinish", &ReminderLine::dayIndexesFromFinish),
           key("sound", &ReminderLine::sound), key("muted", &ReminderLine::muted),
           key("source", &ReminderLine::source), key("median", &ReminderLine::median),
           key("samples", &ReminderLine::samples));

  /// \param automatic What it was derived from; null for a reminder that the user has made.
  [[nodiscard]] static ReminderLine of(const TaskReminder& reminder,
                                       const AutomaticTime* automatic = nullptr);

  /// When it comes: "07:30:00 every day".
  [[nodiscard]] std::string text() const;
};

/// The reminders of a task.
struct ReminderReport {
  std::string task;  ///< Its identifier.
  std::string title;
  ReminderType mode = ReminderType::none;
  bool timeSensitive = false;  ///< `automaticRemindersAreTimeSensitive` of its settings.
  std::vector<ReminderLine> reminders;

  static constexpr auto codingKeys =
      keys(key("task", &ReminderReport::task), key("title", &ReminderReport::title),
           key("mode", &ReminderReport::mode), key("timeSensitive", &ReminderReport::timeSensitive),
           key("reminders", &ReminderReport::reminders));

  [[nodiscard]] static ReminderReport of(const TaskEntity& task);

  /// The mode, and one line per reminder.
  [[nodiscard]] std::string text() const;
};

/// What a command has changed, and the reminders as they are with that.
struct ReminderChange {
  std::optional<ReminderLine> added, removed;
  std::optional<ReminderType> switchedFrom;  ///< The former mode, if it is another one now.
  std::vector<ReminderLine> kept;            ///< The automatic times that are the task's own now.
  ReminderReport now = {};

  static constexpr auto codingKeys =
      keys(key("added", &ReminderChange::added), key("removed", &ReminderChange::removed),
           key("switchedFrom", &ReminderChange::switchedFrom), key("kept", &ReminderChange::kept),
           key("now", &ReminderChange::now));

  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
