#pragma once

namespace velloro {

class Command;

/// `velloro themes`: the colour schemes and what a ring looks like in them.
void addThemesCommand(const Command& app);

}  // namespace velloro
