#include "Settings/PendingReportableError.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "OxLog/Log.h"
#include "Settings/AppGroup.h"

namespace velloro {

PendingReportableError PendingReportableError::of(const Error& error) {
  return {.date = Date::now(),
          .errorDescription = error.localizedDescription(),
          .underlyingError = error.domain() + " " + std::to_string(error.code()) + ": " +
                             error.localizedDescription()};
}

void PendingReportableError::save() const {
  auto defaults = NSUserDefaults::initWithSuiteName(appGroupIdentifier);
  if (!defaults) return;
  try {
    // A write of the defaults returns when it is on the disk: nothing is left to synchronise.
    defaults->setObject(Data(JSONEncoder{}.encode(*this)), storageKey);
  } catch (const EncodingError& failure) {
    Log::notifications.error(failure);
  }
}

}  // namespace velloro
