#pragma once

namespace velloro {

class Command;

/// `velloro export`: the store as a file.
void addExportCommand(const Command& app);

}  // namespace velloro
