#include "VelloroSnapshots/NotificationTask.h"

#include "Foundation/Coding/JSON.h"

namespace velloro {

std::string NotificationTask::debugDescription() const {
  return JSONEncoder{.dateForm = DateForm::iso8601}.encode(*this);
}

}  // namespace velloro
