#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro notification`: what a reminder looks like when it is expanded, and what an answer does.
void addNotificationCommand(CLI::App& app);

}  // namespace velloro
