#include "Desktop/NotificationBus.h"

#include <chrono>
#include <exception>
#include <utility>

#include <poll.h>
#include <sdbus-c++/sdbus-c++.h>

namespace platform {
namespace {

constexpr const char* notificationsName = "org.freedesktop.Notifications";
constexpr const char* notificationsPath = "/org/freedesktop/Notifications";
constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";
constexpr const char* loginName = "org.freedesktop.login1";
constexpr std::chrono::seconds answerTimeout{5};

using Pixels = NotifyCall::Pixels;
using PixelStruct = sdbus::Struct<std::int32_t, std::int32_t, std::int32_t, bool, std::int32_t,
                                  std::int32_t, std::vector<std::uint8_t>>;

sdbus::Variant variantOf(const NotifyCall::Hint& hint) {
  if (const auto* pixels = std::get_if<Pixels>(&hint)) {
    constexpr std::int32_t channels = 4;
    constexpr std::int32_t bitsPerSample = 8;
    return sdbus::Variant(PixelStruct{pixels->width, pixels->height, pixels->width * channels, true,
                                      bitsPerSample, channels, pixels->bytes});
  }
  if (const auto* flag = std::get_if<bool>(&hint)) return sdbus::Variant(*flag);
  if (const auto* byte = std::get_if<std::uint8_t>(&hint)) return sdbus::Variant(*byte);
  return sdbus::Variant(std::get<std::string>(hint));
}

std::map<std::string, sdbus::Variant> variantsOf(const NotifyCall& call) {
  std::map<std::string, sdbus::Variant> hints;
  for (const auto& [name, hint] : call.hints) hints.emplace(name, variantOf(hint));
  return hints;
}

BusProblem problemOf(const sdbus::Error& error) {
  return {error.getName(), error.getMessage()};
}

/// No exception may leave a handler: the library's C code is below it.
template <typename Work>
void guarded(Work&& work) noexcept {
  try {
    work();
  } catch (const std::exception&) {  // a message of another form than it should have
  }
}

/// One connection among what the main loop waits for.
class Link : public MainLoopSource {
 public:
  Link(std::unique_ptr<sdbus::IConnection> connection, std::function<void(std::string)> lost)
      : connection_(std::move(connection)), lost_(std::move(lost)) {}

  [[nodiscard]] sdbus::IConnection& connection() { return *connection_; }

  [[nodiscard]] Wait wait() override {
    if (isLost_ || isProceeding_) return {};
    proceed();  // what the library has read already does not make its descriptor ready
    if (isLost_) return {};
    const auto poll = connection_->getEventLoopPollData();
    Wait wait{.descriptor = poll.fd, .forWriting = (poll.events & POLLOUT) != 0};
    if (const int timeout = poll.getPollTimeout(); timeout >= 0) wait.seconds = timeout / 1000.0;
    return wait;
  }

  /// Not from one of its own handlers: the library refuses that.
  void proceed() override {
    if (isLost_ || std::exchange(isProceeding_, true)) return;
    try {
      while (connection_->processPendingRequest()) {
      }
    } catch (const sdbus::Error& error) {
      isLost_ = true;
      lost_(error.getMessage());
    }
    isProceeding_ = false;
  }

 private:
  std::unique_ptr<sdbus::IConnection> connection_;
  std::function<void(std::string)> lost_;
  bool isLost_ = false;
  bool isProceeding_ = false;
};

class SessionBus : public NotificationBus {
 public:
  SessionBus(MainLoop& loop, Signals signals)
      : signals_(std::move(signals)),
        link_(std::make_shared<Link>(sdbus::createSessionBusConnection(),
                                     [this](const std::string& why) { signals_.lost(why); })) {
    watchOwner();
    watchServer();
    loop.watch(link_);
    watchSleep(loop);
    startServer();
  }

  ~SessionBus() override {
    ownerMatch_.reset();
    server_.reset();
    daemon_.reset();
    sleepMatch_.reset();
  }

  [[nodiscard]] std::expected<bool, BusProblem> claim(const std::string& name) override {
    constexpr std::uint32_t doNotQueue = 4;
    constexpr std::uint32_t isOwner = 1;
    constexpr std::uint32_t isOwnerAlready = 4;
    try {
      std::uint32_t answer = 0;
      daemon_->callMethod("RequestName")
          .onInterface(busName)
          .withTimeout(answerTimeout)
          .withArguments(name, doNotQueue)
          .storeResultsTo(answer);
      return answer == isOwner || answer == isOwnerAlready;
    } catch (const sdbus::Error& error) {
      return std::unexpected(problemOf(error));
    }
  }

  [[nodiscard]] std::string identity() const override {
    try {
      std::string id;
      daemon_->callMethod("GetId")
          .onInterface(busName)
          .withTimeout(answerTimeout)
          .storeResultsTo(id);
      return id;
    } catch (const sdbus::Error&) {
      return "";
    }
  }

  void getServer(Answer<NotificationServerInfo> answer) override {
    server_->callMethodAsync("GetServerInformation")
        .onInterface(notificationsName)
        .withTimeout(answerTimeout)
        .uponReplyInvoke([this, answer](const sdbus::Error* error, const std::string& name,
                                        const std::string& vendor, const std::string& version,
                                        const std::string& specVersion) {
          guarded([&] {
            if (error != nullptr) return answer(std::unexpected(problemOf(*error)));
            getCapabilities({name, vendor, version, specVersion, {}, {}}, answer);
          });
        });
  }

  void notify(const NotifyCall& call, Answer<std::uint32_t> answer) override {
    server_->callMethodAsync("Notify")
        .onInterface(notificationsName)
        .withTimeout(answerTimeout)
        .withArguments(call.applicationName, call.replaces, call.icon, call.summary, call.body,
                       call.actions, variantsOf(call), call.expireTimeout)
        .uponReplyInvoke([answer](const sdbus::Error* error, std::uint32_t id) {
          guarded([&] {
            if (error != nullptr) return answer(std::unexpected(problemOf(*error)));
            answer(id);
          });
        });
  }

  void close(std::uint32_t id) override {
    server_->callMethodAsync("CloseNotification")
        .onInterface(notificationsName)
        .withTimeout(answerTimeout)
        .withArguments(id)
        .uponReplyInvoke([](const sdbus::Error*) {});
  }

  /// The answer to a call comes after all that was sent before.
  void flush() override { static_cast<void>(identity()); }

 private:
  void watchOwner() {
    auto& connection = link_->connection();
    daemon_ = sdbus::createProxy(connection, busName, busPath);
    daemon_->finishRegistration();
    ownerMatch_ = connection.addMatch(
        "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
        "member='NameOwnerChanged',arg0='org.freedesktop.Notifications'",
        [this](sdbus::Message& message) {
          guarded([&] {
            std::string name, before, after;
            message >> name >> before >> after;
            signals_.ownerChanged(after);
          });
        });
  }

  /// Handlers of the plain form: those that take an error run twice on arguments of another form.
  void watchServer() {
    server_ = sdbus::createProxy(link_->connection(), notificationsName, notificationsPath);
    const auto onSignal = [&]<typename Value>(const char* name, auto& handler,
                                              std::type_identity<Value>) {
      server_->uponSignal(name)
          .onInterface(notificationsName)
          .call([this, &handler](std::uint32_t id, const Value& value) {
            guarded([&] { handler(sender(), id, value); });
          });
    };
    onSignal("ActionInvoked", signals_.invoked, std::type_identity<std::string>());
    onSignal("NotificationReplied", signals_.replied, std::type_identity<std::string>());
    onSignal("ActivationToken", signals_.token, std::type_identity<std::string>());
    onSignal("NotificationClosed", signals_.closed, std::type_identity<std::uint32_t>());
    server_->uponSignal("PropertiesChanged")
        .onInterface("org.freedesktop.DBus.Properties")
        .call([this](const std::string&, const std::map<std::string, sdbus::Variant>& changed,
                     const std::vector<std::string>&) {
          guarded([&] {
            const auto inhibited = changed.find("Inhibited");
            if (inhibited != changed.end()) signals_.inhibited(inhibited->second.get<bool>());
          });
        });
    server_->finishRegistration();
  }

  [[nodiscard]] std::string sender() const {
    const auto* message = server_->getCurrentlyProcessedMessage();
    return message != nullptr ? message->getSender() : "";
  }

  /// A machine without logind, or without a system bus, only tells by its clock that it slept.
  void watchSleep(MainLoop& loop) {
    try {
      system_ = std::make_shared<Link>(sdbus::createSystemBusConnection(), [](const auto&) {});
      sleepMatch_ = system_->connection().addMatch(
          std::string("type='signal',sender='") + loginName +
              "',interface='org.freedesktop.login1.Manager',member='PrepareForSleep'",
          [this](sdbus::Message& message) {
            guarded([&] {
              bool isBeginning = false;
              message >> isBeginning;
              signals_.sleep(isBeginning);
            });
          });
      loop.watch(system_);
    } catch (const sdbus::Error&) {
      system_.reset();
    }
  }

  /// The first answer starts a server that the bus can start.
  void startServer() {
    daemon_->callMethodAsync("StartServiceByName")
        .onInterface(busName)
        .withTimeout(answerTimeout)
        .withArguments(std::string(notificationsName), std::uint32_t{0})
        .uponReplyInvoke([this](const sdbus::Error*, std::uint32_t) { askForOwner(); });
  }

  void askForOwner() {
    daemon_->callMethodAsync("GetNameOwner")
        .onInterface(busName)
        .withTimeout(answerTimeout)
        .withArguments(std::string(notificationsName))
        .uponReplyInvoke([this](const sdbus::Error* error, const std::string& owner) {
          guarded([&] { signals_.ownerChanged(error != nullptr ? "" : owner); });
        });
  }

  void getCapabilities(NotificationServerInfo info, const Answer<NotificationServerInfo>& answer) {
    server_->callMethodAsync("GetCapabilities")
        .onInterface(notificationsName)
        .withTimeout(answerTimeout)
        .uponReplyInvoke(
            [this, info = std::move(info), answer](const sdbus::Error* error,
                                                   const std::vector<std::string>& capabilities) {
              guarded([&] {
                if (error != nullptr) return answer(std::unexpected(problemOf(*error)));
                NotificationServerInfo known = info;
                known.capabilities.insert(capabilities.begin(), capabilities.end());
                if (!known.has("inhibitions")) return answer(known);
                getInhibited(known, answer);
              });
            });
  }

  void getInhibited(NotificationServerInfo info, const Answer<NotificationServerInfo>& answer) {
    server_->callMethodAsync("Get")
        .onInterface("org.freedesktop.DBus.Properties")
        .withTimeout(answerTimeout)
        .withArguments(std::string(notificationsName), std::string("Inhibited"))
        .uponReplyInvoke([info = std::move(info), answer](const sdbus::Error* error,
                                                          const sdbus::Variant& value) {
          guarded([&] {
            NotificationServerInfo known = info;
            if (error == nullptr) known.isInhibited = value.get<bool>();
            answer(known);
          });
        });
  }

  Signals signals_;
  std::shared_ptr<Link> link_;
  std::shared_ptr<Link> system_;
  std::unique_ptr<sdbus::IProxy> daemon_;
  std::unique_ptr<sdbus::IProxy> server_;
  sdbus::Slot ownerMatch_;
  sdbus::Slot sleepMatch_;
};

}  // namespace
}  // namespace platform

platform::NotificationBus* velloroNotificationBus(platform::MainLoop& loop,
                                                  platform::NotificationBus::Signals signals,
                                                  std::string& problem) {
  try {
    return new platform::SessionBus(loop, std::move(signals));
  } catch (const sdbus::Error& error) {
    problem = error.getMessage();
    return nullptr;
  }
}
