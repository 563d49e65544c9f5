#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/Date.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Frequency/DatedPeriod.h"

namespace velloro {

/// One running timer of a task.
struct TimedTaskManagerEntry {
  UniqueID entryId;         ///< Of this run.
  UniqueID taskIdentifier;  ///< Of the task.
  DatedPeriod period;       ///< For which the run counts.
  Date start;
  Date end;  ///< When it falls due.

  bool operator==(const TimedTaskManagerEntry&) const = default;
  static constexpr auto codingKeys =
      keys(key("entryId", &TimedTaskManagerEntry::entryId),
           key("taskIdentifier", &TimedTaskManagerEntry::taskIdentifier),
           key("period", &TimedTaskManagerEntry::period),
           key("start", &TimedTaskManagerEntry::start), key("end", &TimedTaskManagerEntry::end));
};

}  // namespace velloro
