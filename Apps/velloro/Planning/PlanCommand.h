#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// Adds `plan`, which shows what would be scheduled and why, and schedules it.
void addPlanCommand(CLI::App& app);
/// Adds `snooze`, which puts off a reminder.
void addSnoozeCommand(CLI::App& app);
/// Adds `badge`, which shows how many tasks are incomplete, and how that will change.
void addBadgeCommand(CLI::App& app);

}  // namespace velloro
