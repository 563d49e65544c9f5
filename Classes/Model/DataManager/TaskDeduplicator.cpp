#include "DataManager/TaskDeduplicator.h"

#include "Containers/SaveIfChanged.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxLog/Log.h"
#include "Tasks/TaskEntity.h"
#include "Tasks/TemporaryEntries.h"

namespace velloro {

void TaskDeduplicator::run(NSManagedObjectContext& context) const {
  const auto tasks = removeTemporaryEntries(context);
  if (!tasks) return Log::dataManager.error(tasks.error());
  for (const auto& task : *tasks) {
    if (task->managedObjectContext() == nullptr) continue;
    const TimeZone timeZone = task->taskCurrentTimeZone();
    task->updateTemporalData(YYYYMMDD::today(task->startOfDay(), timeZone), timeZone);
  }
  saveIfChanged(context);
}

}  // namespace velloro
