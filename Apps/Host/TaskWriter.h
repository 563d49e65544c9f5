#pragma once

#include "Host/HostStore.h"
#include "OxCheckableTasks/Icons/IconManagerIcon.h"
#include "OxKit/OxCodableColor.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <optional>
#include <string>

namespace velloro {

/// The properties of a task that a user gives. What is absent is left unchanged, or has the default
/// of new tasks.
struct TaskFields {
  std::optional<std::string> title = {};
  std::optional<TaskFrequency> frequency = {};
  std::optional<AutomaticTaskType> automaticTaskType = {};
  std::optional<bool> isNegative = {};
  std::optional<HHMMSS> startOfDay = {};
  std::optional<DayOfWeek> firstDayOfWeek = {};
  std::optional<TimeZone> timeZone = {};  ///< To which the task is pinned.
  std::optional<IconManagerIcon> icon = {};
  std::optional<OxCodableColor> color = {};
  std::optional<TaskPageNumber> page = {};
};

/// The given fields contradict each other: no task can have all of them.
class ImpossibleTask : public HostError {
 public:
  using HostError::HostError;
};

/// Makes a task, after the others of its page. Within `HostStore::write`. \throws HostError
std::shared_ptr<TaskEntity> addTask(const HostStore& store, const TaskFields& fields, Date created);
/// Within `HostStore::write`. \throws ImpossibleTask
void changeTask(const HostStore& store, TaskEntity& task, const TaskFields& fields);

}  // namespace velloro
