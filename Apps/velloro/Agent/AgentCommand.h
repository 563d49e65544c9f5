#pragma once

namespace velloro {

class Command;
struct GlobalOptions;

/// Adds "agent" with its commands "pause" and "resume".
/// \param global What an installed agent is started with, too. Outlives the command.
void addAgentCommand(const Command& app, const GlobalOptions& global);
/// Adds "doctor".
void addDoctorCommand(const Command& app);

}  // namespace velloro
