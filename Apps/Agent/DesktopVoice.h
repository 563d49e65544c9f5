#pragma once

#include "Agent/AgentVoice.h"
#include "Desktop/NotificationServer.h"
#include "OxKit/Platform.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// Shows reminders by the desktop's notification server.
class DesktopVoice final : public AgentVoice {
 public:
  struct Options {
    bool mayBeUrgent = false;  ///< Whether time-sensitive reminders break through "do not disturb".
    std::vector<TimeInterval> snoozes = {};  ///< Further lengths to choose from, in seconds.
  };
  /// The name on the bus, that of the desktop file, and of the unit.
  static constexpr const char* busName = "app.velloro.Agent";
  static constexpr const char* desktopEntry = "app.velloro.Agent";

  explicit DesktopVoice(Options options);

  /// Of the bus that this voice is to be connected to, with what else its owner wants to hear.
  [[nodiscard]] NotificationBus::Signals signals() { return server_.signals(); }
  void setBus(NotificationBus& bus);
  [[nodiscard]] const std::optional<NotificationServerInfo>& info() const { return server_.info(); }

  void setHandlers(Handlers handlers) override { handlers_ = std::move(handlers); }
  [[nodiscard]] bool isReady() const override { return server_.info().has_value(); }
  [[nodiscard]] bool staysVisible() const override { return true; }
  [[nodiscard]] bool isInhibited() const override;
  [[nodiscard]] bool isVisible(const std::string& key) const override {
    return server_.isShown(key);
  }
  [[nodiscard]] std::string server() const override { return bus_ + " " + server_.owner(); }

  void show(const OpenReminder& reminder, bool isQuiet) override;
  void showSummary(const std::vector<OpenReminder>& missed, bool isQuiet) override;
  void withdraw(const std::string& key) override { server_.withdraw(key); }
  void closeLeftover(std::uint32_t id) override { server_.closeLeftover(id); }
  void withdrawAll() override { server_.withdrawAll(); }
  void lookAgain() override { server_.lookAgain(); }

  /// What `show` shows.
  [[nodiscard]] static DesktopNotification notification(const OpenReminder& reminder,
                                                        const Options& options);

 private:
  void answer(VoiceAnswer::Kind kind, const std::string& key, const std::string& text = "",
              const std::string& token = "");
  void closed(const std::string& key, NotificationServer::Closed reason);

  Options options_;
  Handlers handlers_;
  std::string bus_;
  NotificationServer server_;
};

}  // namespace velloro
