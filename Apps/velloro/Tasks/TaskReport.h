#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "Tasks/Rows/TaskEntity.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// What a task is, as `velloro task` tells it.
struct TaskReport {
  std::string uniqueId;
  std::string title;
  std::string status;  ///< "normal"
  TaskDisplayOrder displayOrder;
  TaskFrequency frequency;
  bool isNegative = false;
  std::optional<AutomaticTaskType> automaticTaskType;
  std::optional<std::string> icon;
  std::optional<std::string> color;  ///< "3F91CC"
  HHMMSS startOfDay;
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
  std::string timeZone;
  std::optional<Date> created;

  static constexpr auto codingKeys =
      keys(key("uniqueId", &TaskReport::uniqueId), key("title", &TaskReport::title),
           key("status", &TaskReport::status), key("displayOrder", &TaskReport::displayOrder),
           key("frequency", &TaskReport::frequency), key("isNegative", &TaskReport::isNegative),
           key("automaticTaskType", &TaskReport::automaticTaskType), key("icon", &TaskReport::icon),
           key("color", &TaskReport::color), key("startOfDay", &TaskReport::startOfDay),
           key("firstDayOfWeek", &TaskReport::firstDayOfWeek),
           key("timeZone", &TaskReport::timeZone), key("created", &TaskReport::created));

  [[nodiscard]] static TaskReport of(const TaskEntity& task);
  /// By which a person may call it.
  [[nodiscard]] std::string shortId() const;
  /// A line for each thing that a person may want to know.
  [[nodiscard]] std::string text() const;
};

/// One line a task.
[[nodiscard]] std::string table(const std::vector<TaskReport>& reports);

/// A stored text as UTF-8, whatever is stored; empty for none.
[[nodiscard]] std::string textOf(const std::string* text);

/// "mon wed fri", "3 days a week", "every 3 days".
[[nodiscard]] std::string frequencyText(const TaskFrequency& frequency);

}  // namespace velloro
