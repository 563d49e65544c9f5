#pragma once

namespace velloro {

class Command;

/// `velloro import`: a file into the store.
void addImportCommand(const Command& app);

}  // namespace velloro
