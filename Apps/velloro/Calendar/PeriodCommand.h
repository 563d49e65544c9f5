#pragma once

namespace velloro {

class Command;

/// `velloro period`: the period of a task that a day lies in.
void addPeriodCommand(const Command& app);

}  // namespace velloro
