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

/// What a person says of a task. What is absent stays as it is, or is as new tasks have it.
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

/// The fields that were given contradict each other: no task can have them all.
class ImpossibleTask : public HostError {
 public:
  using HostError::HostError;
};

/// A new task, behind the others of its page. Within `HostStore::write`. \throws HostError
std::shared_ptr<TaskEntity> addTask(const HostStore& store, const TaskFields& fields, Date created);
/// Within `HostStore::write`. \throws ImpossibleTask
void changeTask(const HostStore& store, TaskEntity& task, const TaskFields& fields);

}  // namespace velloro
