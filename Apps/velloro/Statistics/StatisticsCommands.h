#pragma once

namespace velloro {

class Command;

/// `velloro stats`: how tasks go, in numbers.
void addStatsCommand(const Command& app);
/// `velloro calendar`: the months of a task.
void addCalendarCommand(const Command& app);
/// `velloro graph`: values laid out as a line.
void addGraphCommand(const Command& app);
/// `velloro report`: all tasks on one page.
void addReportCommand(const Command& app);

}  // namespace velloro
