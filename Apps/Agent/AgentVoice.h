#pragma once

#include "Agent/OpenReminder.h"
#include "Desktop/NotificationServer.h"
#include "Foundation/Dispatch/Block.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// What the user does with what a voice shows.
struct VoiceAnswer {
  enum class Kind : std::uint8_t {
    action,     ///< A button: `text` is a `NotificationAction`'s identifier, or `skipAction`.
    reply,      ///< `text` was typed.
    opened,     ///< The notification itself was clicked.
    dismissed,  ///< By the user.
    expired,    ///< It is gone, and the user need not have seen it.
    unseen,     ///< It was never shown: the user does not want to be disturbed.
  };
  Kind kind = Kind::dismissed;
  std::string key;
  std::string text = {};
  std::string token = {};  ///< For the program that is started because of it.

  static constexpr const char* skipAction = "skip";
};

/// How the agent shows reminders: on a desktop, on a terminal, by a command. On the main thread.
class AgentVoice {
 public:
  struct Handlers {
    std::function<void(const VoiceAnswer&)> answered;
    /// What is seen has changed without an answer: a place to show it has come or gone.
    std::function<void()> changed;
    /// Shown, with the number by which a later process may close it.
    std::function<void(const std::string& key, std::uint32_t serverId)> shown;
  };

  virtual ~AgentVoice() = default;
  AgentVoice() = default;
  AgentVoice(const AgentVoice&) = delete;
  AgentVoice& operator=(const AgentVoice&) = delete;

  virtual void setHandlers(Handlers handlers) = 0;
  /// Whether something can be shown at present.
  [[nodiscard]] virtual bool isReady() const { return true; }
  /// Whether what is shown stays to be seen, and can be withdrawn.
  [[nodiscard]] virtual bool staysVisible() const { return false; }
  [[nodiscard]] virtual bool isInhibited() const { return false; }
  [[nodiscard]] virtual bool isVisible(const std::string&) const { return false; }
  /// Where it shows; identifiers are valid for the same one alone.
  [[nodiscard]] virtual std::string server() const { return ""; }

  /// \param isQuiet As a change of what is seen, or as something that was seen before.
  virtual void show(const OpenReminder& reminder, bool isQuiet) = 0;
  virtual void showSummary(const std::vector<OpenReminder>& missed, bool isQuiet) = 0;
  virtual void withdraw(const std::string&) {}
  virtual void closeLeftover(std::uint32_t) {}
  virtual void withdrawAll() {}
  /// Looks again at what it can.
  virtual void lookAgain() {}
  /// Returns when all is shown; to be called before the process ends.
  virtual void finish() {}
};

}  // namespace velloro
