#pragma once

#include "VelloroCore/Frequency/TaskCalendarPeriodInfo.h"
#include "VelloroCore/Log/TaskLogEntryType.h"
#include "VelloroCore/Status/CompletionStatus.h"

#include <string_view>

namespace velloro {

// Plain words for stored codes, as tables show them and as JSON has them beside the code.

/// "due", "not due" or "can wait" for an open period; else "done", "missed", "skipped", "clean",
/// "happened" or "allowed".
[[nodiscard]] std::string_view stateText(const CompletionStatus::Status& status);
/// What an entry says happened, such as "done", "part done", "skipped" or "missed".
[[nodiscard]] std::string_view stateText(TaskLogEntryType type);
/// What an open period turns into if nothing more happens: "missed" or "skipped".
[[nodiscard]] std::string_view outcomeText(SkipMode willSkip);

}  // namespace velloro
