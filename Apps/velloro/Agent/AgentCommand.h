#pragma once

namespace velloro {

class Command;
struct GlobalOptions;

/// Adds "agent" with its commands "pause" and "resume". An installed agent uses the store that
/// `global` names when the command runs.
void addAgentCommand(const Command& app, const GlobalOptions& global);
/// Adds "doctor".
void addDoctorCommand(const Command& app);

}  // namespace velloro
