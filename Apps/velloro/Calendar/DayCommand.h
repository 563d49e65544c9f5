#pragma once

namespace velloro {

class Command;

/// `velloro day`: everything about a logical day.
void addDayCommand(const Command& app);

}  // namespace velloro
