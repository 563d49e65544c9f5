#pragma once

#include "Desktop/NotificationBus.h"
#include "Desktop/NotifyCall.h"
#include "Foundation/Dispatch/NSTimer.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

/// The session's notification server, with the rules that hold for all of them: what it shows for
/// this program goes by keys of the program's own, and each answer is told once.
/// Identifiers are only valid for one server: when it goes all of them are forgotten, and when the
/// next one comes the program shows again what is still open (`arrived`). A signal counts if it
/// comes from the server itself, for a notification of this program, with an action that was
/// offered by its present form. An action may come up to `afterClosing` after the notification was
/// closed. For the main thread alone.
class NotificationServer {
 public:
  /// Why a notification is gone.
  enum class Closed : std::uint8_t { expired = 1, dismissed = 2, byProgram = 3, other = 4 };

  struct Handlers {
    /// A server is there, or its abilities have changed. \param isNew It shows nothing yet.
    std::function<void(bool isNew)> arrived;
    std::function<void()> gone;
    /// \param token For the program that is started because of it, may be empty.
    std::function<void(const std::string& key, const std::string& action, const std::string& token)>
        answered;
    std::function<void(const std::string& key, const std::string& text)> replied;
    std::function<void(const std::string& key, Closed reason)> closed;
    /// The server has shown it, under that identifier.
    std::function<void(const std::string& key, std::uint32_t id)> shown = nullptr;
    /// Whether the user does not want to be disturbed has changed.
    std::function<void()> inhibitionChanged = nullptr;
  };

  static constexpr TimeInterval afterClosing = 2;
  static constexpr TimeInterval retryDelay = 0.3;
  static constexpr int retries = 20;
  /// Between posts to a server that has complained of too many.
  static constexpr TimeInterval backOff = 1.5;

  NotificationServer(NotifyCall::Sender sender, Handlers handlers)
      : sender_(std::move(sender)), handlers_(std::move(handlers)) {}

  /// To be handed to `NotificationBus::connect`, together with a bus of this server alone.
  [[nodiscard]] NotificationBus::Signals signals();
  void setBus(NotificationBus& bus) { bus_ = &bus; }

  /// Absent while there is none.
  [[nodiscard]] const std::optional<NotificationServerInfo>& info() const { return info_; }
  [[nodiscard]] const std::string& owner() const { return owner_; }
  /// Reads again what the server can: some change that while they run.
  void lookAgain();

  /// Shows it in the place of what is shown under the key. \param isQuiet As a change of it that
  /// nobody needs to be told of; else it is closed and comes back as a new one.
  void show(const std::string& key, DesktopNotification notification, bool isQuiet);
  void withdraw(const std::string& key);
  void withdrawAll();
  /// Closes what an earlier process has left on the same server.
  void closeLeftover(std::uint32_t id) {
    if (bus_ != nullptr) bus_->close(id);
  }
  [[nodiscard]] bool isShown(const std::string& key) const { return posts_.contains(key); }

 private:
  struct Post {
    DesktopNotification notification;
    std::uint32_t id = 0;  ///< 0 until the server has answered.
    std::string nonce;
    bool isPending = false;   ///< The server has not answered the last call yet.
    bool isStale = false;     ///< Changed meanwhile: to be posted once more.
    bool isUnwanted = false;  ///< Withdrawn meanwhile.
  };
  struct Former {
    std::string key, nonce;
    std::vector<DesktopNotification::Action> actions;
    double until = 0;  ///< Media time.
  };
  struct Early {
    std::uint32_t id = 0;
    std::function<void()> signal;
  };

  void ownerChanged(const std::string& owner);
  void askServer(bool isNew, int triesLeft);
  void serverKnown(NotificationServerInfo info, bool isNew);
  void post(const std::string& key);
  void posted(const std::string& key, const std::string& nonce, std::uint32_t id);
  void refused(const std::string& key, const std::string& nonce, const BusProblem& problem);
  void replayEarly();
  [[nodiscard]] bool isOurs(const std::string& sender) const {
    return !owner_.empty() && sender == owner_;
  }
  [[nodiscard]] bool awaitsAnswer() const;
  void invoked(std::uint32_t id, const std::string& key);
  void replied(std::uint32_t id, const std::string& text);
  void closed(std::uint32_t id, std::uint32_t reason);
  [[nodiscard]] std::map<std::string, Post>::iterator postOf(std::uint32_t id);
  /// Runs the signal's work now, or once the call under way that may be meant is answered.
  void take(const std::string& sender, std::uint32_t id, std::function<void()> work);

  NotifyCall::Sender sender_;
  Handlers handlers_;
  NotificationBus* bus_ = nullptr;
  std::string owner_;
  std::optional<NotificationServerInfo> info_;
  std::map<std::string, Post> posts_;
  std::map<std::uint32_t, Former> formers_;
  std::vector<Early> early_;
  std::map<std::uint32_t, std::string> tokens_;
  std::uint64_t nonces_ = 0;
  NSTimer retry_;
  std::map<std::string, NSTimer> backOffs_;
};

}  // namespace platform
