#include "Host/HealthUpdates.h"

#include "Health/HealthManager.h"
#include "Host/HostStore.h"
#include "Host/NotificationUpdates.h"
#include "Host/PeriodCloser.h"
#include "OxLog/Log.h"
#include "Tasks/Rows/TaskEntity.h"

namespace velloro {

void readChangedHealth(Date now) {
  const auto health = HealthManager::shared().store();
  const auto oldest = health->oldestChange();
  if (!oldest) throw HostError("the health data: " + oldest.error()->localizedDescription());
  if (!*oldest) return;
  const HostStore store;
  store.write([&] {
    for (const auto& task : store.tasks({TaskStatus::normal})) {
      const auto type = task->automaticTaskType();
      if (type && type->usesHealthKit()) bringUpToDate(*task, now);
    }
  });
  // What the reading itself has written is read.
  if (const auto forgotten = health->forgetChanges(**oldest); !forgotten) {
    Log::healthKit.error(forgotten.error());
  }
  NotificationUpdates::shared().noteSettings();
}

}  // namespace velloro
