#pragma once

#include "Agent/AgentVoice.h"
#include "Foundation/Dispatch/DispatchQueue.h"

#include <string>
#include <vector>

namespace velloro {

/// A reminder as one line of JSON, for programs.
[[nodiscard]] std::string reminderJSON(const OpenReminder& reminder);

/// Shows reminders as lines on the standard output.
class PrintVoice final : public AgentVoice {
 public:
  explicit PrintVoice(bool isJSON) : isJSON_(isJSON) {}

  void setHandlers(Handlers) override {}
  void show(const OpenReminder& reminder, bool isQuiet) override;
  void showSummary(const std::vector<OpenReminder>& missed, bool isQuiet) override;

 private:
  bool isJSON_;
};

/// Runs a command of the shell for each reminder, with its JSON as the standard input; for a
/// summary, one after the other. A command that has not ended after `longest` seconds is ended.
class ExecVoice final : public AgentVoice {
 public:
  static constexpr int longest = 60;

  explicit ExecVoice(std::string command) : command_(std::move(command)) {}

  void setHandlers(Handlers) override {}
  void show(const OpenReminder& reminder, bool isQuiet) override;
  void showSummary(const std::vector<OpenReminder>& missed, bool isQuiet) override;
  void finish() override {
    queue_.sync([] {});
  }

 private:
  std::string command_;
  DispatchQueue queue_{"velloro.agent.exec", QualityOfService::utility};
};

}  // namespace velloro
