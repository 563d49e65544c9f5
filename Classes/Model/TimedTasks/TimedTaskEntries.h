#pragma once

#include "Foundation/Values/Error.h"
#include "OxKit/FunctionRef.h"
#include "Settings/SettingsStorage.h"
#include "VelloroCore/Progress/TimedTaskManagerEntry.h"

#include <vector>

namespace velloro {

/// The list of running timers, in the setting `timedTaskEntries`, which all processes of the
/// program read and write. An entry that can't be read is left out.
class TimedTaskEntries {
 public:
  using Entry = TimedTaskManagerEntry;

  /// \param storage Must outlive this.
  explicit TimedTaskEntries(SettingsStorage& storage) : storage_(storage) {}

  /// In the order in which they were started.
  [[nodiscard]] std::vector<Entry> all() const;
  /// Reads the list, lets `change` alter it, and writes it if it differs, while no other process
  /// does the same. Fails where it can't be written; what `change` throws is passed on, and nothing
  /// is written then. `change` must not wait for another lock: whoever writes the store takes this
  /// one second.
  Result<void> change(FunctionRef<void(std::vector<Entry>&)> change) const;

 private:
  SettingsStorage& storage_;
};

}  // namespace velloro
