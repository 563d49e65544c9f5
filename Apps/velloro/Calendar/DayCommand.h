#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro day`: everything about a logical day.
void addDayCommand(CLI::App& app);

}  // namespace velloro
