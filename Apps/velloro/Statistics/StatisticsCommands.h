#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro stats`: how tasks go, in numbers.
void addStatsCommand(CLI::App& app);
/// `velloro calendar`: the months of a task.
void addCalendarCommand(CLI::App& app);
/// `velloro graph`: values laid out as a line.
void addGraphCommand(CLI::App& app);
/// `velloro report`: all tasks on one page.
void addReportCommand(CLI::App& app);

}  // namespace velloro
