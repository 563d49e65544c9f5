#pragma once

namespace velloro {

class Command;

/// `velloro settings`: what is set, and in which tier.
void addSettingsCommand(const Command& app);

}  // namespace velloro
