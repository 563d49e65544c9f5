#include "VelloroSnapshots/ComplicationTaskSnapshot.h"

#include "VelloroCore/Titles/TaskTitleIcon.h"
#include "VelloroCore/Titles/TaskTitleSource.h"

namespace velloro {

bool ComplicationTaskSnapshot::isTimed() const {
  if (!automaticTaskType) return false;
  const TaskType type = automaticTaskType->type;
  return type == TaskType::timer() || type == HealthType::mindfulMinutes ||
         type == HealthType::toothbrushingEventBrush;
}

std::optional<TaskDisplayTitle::TitleIcon> ComplicationTaskSnapshot::titleIcon() const {
  return velloro::titleIcon(automaticTaskType, isNegative);
}

TaskDisplayTitle ComplicationTaskSnapshot::displayTitle(Date now, const Locale& locale) const {
  return TaskDisplayTitle::build({.title = title.value_or(""),
                                  .automaticTaskType = automaticTaskType,
                                  .isNegative = isNegative,
                                  .isTimed = isTimed(),
                                  .progress = completionStatus.progress(),
                                  .now = now},
                                 locale);
}

}  // namespace velloro
