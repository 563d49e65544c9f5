#pragma once

namespace velloro {

class Command;

/// `velloro log`: writes, lists and removes entries of the log.
void addLogCommand(const Command& app);

}  // namespace velloro
