#pragma once

namespace velloro {

class Command;

/// `velloro types`: what the automatic types offer.
void addTypesCommand(const Command& app);

}  // namespace velloro
