#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

class TaskEntity;

/// What a task is, as `velloro task` prints it.
struct TaskReport {
  std::string uniqueId;
  std::string title;
  std::string status;  ///< "normal"
  TaskDisplayOrder displayOrder;
  TaskFrequency frequency;
  std::string recurrence;  ///< The frequency in words: "3 times a week".
  bool isNegative = false;
  std::optional<AutomaticTaskType> automaticTaskType;
  std::optional<std::string> icon;
  std::optional<std::string> color;  ///< "3F91CC"
  HHMMSS startOfDay;
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
  std::string weekBegins;  ///< The same in words: "sunday".
  std::string timeZone;
  std::optional<Date> created;

  static constexpr auto codingKeys =
      keys(key("uniqueId", &TaskReport::uniqueId), key("title", &TaskReport::title),
           key("status", &TaskReport::status), key("displayOrder", &TaskReport::displayOrder),
           key("frequency", &TaskReport::frequency), key("recurrence", &TaskReport::recurrence),
           key("isNegative", &TaskReport::isNegative),
           key("automaticTaskType", &TaskReport::automaticTaskType), key("icon", &TaskReport::icon),
           key("color", &TaskReport::color), key("startOfDay", &TaskReport::startOfDay),
           key("firstDayOfWeek", &TaskReport::firstDayOfWeek),
           key("weekBegins", &TaskReport::weekBegins), key("timeZone", &TaskReport::timeZone),
           key("created", &TaskReport::created));

  [[nodiscard]] static TaskReport of(const TaskEntity& task);
  /// The beginning of the id, by which a person can name the task.
  [[nodiscard]] std::string shortId() const;
  /// How the task recurs, after "avoid" for a habit to avoid.
  [[nodiscard]] std::string due() const;
  /// One line for each property.
  [[nodiscard]] std::string text() const;
};

/// One line per task.
[[nodiscard]] std::string table(const std::vector<TaskReport>& reports);

/// "every day", or "mon wed fri".
[[nodiscard]] std::string daysText(const EnumSet<DayOfWeek>& days);

/// A stored text as UTF-8, whatever is stored; empty for none.
[[nodiscard]] std::string textOf(const std::string* text);

}  // namespace velloro
