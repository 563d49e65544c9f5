#pragma once

namespace velloro {

class Command;

/// Adds `plan`, which shows what would be scheduled and why, and schedules it.
void addPlanCommand(const Command& app);
/// Adds `snooze`, which puts off a reminder.
void addSnoozeCommand(const Command& app);
/// Adds `badge`, which shows how many tasks are incomplete, and how that will change.
void addBadgeCommand(const Command& app);

}  // namespace velloro
