#pragma once

#include "Desktop/NotifyCall.h"
#include "Foundation/Process/MainLoop.h"
#include "Foundation/Values/Error.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>

namespace platform {

/// A D-Bus error, such as "org.freedesktop.DBus.Error.UnknownObject" with a text for people.
struct BusProblem {
  std::string name;
  std::string text;
};

/// The calls and signals of the session's message bus that the desktop needs, without rules of
/// their own: `NotificationServer` has them. For the main thread; nothing waits, but for `claim`.
class NotificationBus {
 public:
  /// All called on the main thread. A sender is the unique name of a connection.
  struct Signals {
    /// The notification server's connection; empty when there is none.
    std::function<void(const std::string& owner)> ownerChanged;
    std::function<void(const std::string& sender, std::uint32_t id, const std::string& key)>
        invoked;
    std::function<void(const std::string& sender, std::uint32_t id, const std::string& text)>
        replied;
    std::function<void(const std::string& sender, std::uint32_t id, const std::string& token)>
        token;
    std::function<void(const std::string& sender, std::uint32_t id, std::uint32_t reason)> closed;
    std::function<void(bool isInhibited)> inhibited;
    /// The machine is about to sleep, or has been woken. Not on every machine.
    std::function<void(bool isBeginning)> sleep;
    /// There is no bus any more; nothing else is called.
    std::function<void(const std::string& reason)> lost;
  };
  template <typename T>
  using Answer = std::function<void(const std::expected<T, BusProblem>&)>;

  virtual ~NotificationBus() = default;
  NotificationBus() = default;
  NotificationBus(const NotificationBus&) = delete;
  NotificationBus& operator=(const NotificationBus&) = delete;

  /// Connects to the session's bus, by way of a module that is loaded on first use
  /// (Platform/DesktopBus). `ownerChanged` is then called once in any case.
  [[nodiscard]] static Result<std::unique_ptr<NotificationBus>> connect(MainLoop& loop,
                                                                        Signals signals);

  /// Takes a name that one connection can have. False if another has it.
  [[nodiscard]] virtual std::expected<bool, BusProblem> claim(const std::string& name) = 0;
  /// Tells this bus from any other.
  [[nodiscard]] virtual std::string identity() const = 0;

  virtual void getServer(Answer<NotificationServerInfo> answer) = 0;
  virtual void notify(const NotifyCall& call, Answer<std::uint32_t> answer) = 0;
  /// Errors are ignored.
  virtual void close(std::uint32_t id) = 0;
  /// Returns when what was sent has left this process; to be called before it ends.
  virtual void flush() = 0;
};

}  // namespace platform

/// The module's one entry.
extern "C" [[gnu::visibility("default")]] platform::NotificationBus* velloroNotificationBus(
    platform::MainLoop& loop, platform::NotificationBus::Signals signals, std::string& problem);
