#pragma once

namespace velloro {

class Command;

/// `velloro notification`: what a reminder looks like when it is expanded, and what an answer does.
void addNotificationCommand(const Command& app);

}  // namespace velloro
