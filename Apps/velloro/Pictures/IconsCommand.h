#pragma once

namespace velloro {

class Command;

/// `velloro icons`: the program's own icons.
void addIconsCommand(const Command& app);

}  // namespace velloro
