#pragma once

namespace velloro {

class Command;

/// `velloro backup`.
void addBackupCommand(const Command& app);

}  // namespace velloro
