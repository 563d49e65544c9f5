#include "velloro/Agent/AgentRun.h"

#include "Agent/Agent.h"
#include "Agent/DesktopVoice.h"
#include "Desktop/ClockWatch.h"
#include "Desktop/ServiceManager.h"
#include "Foundation/Files/FileLock.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Interrupts.h"
#include "Foundation/Process/ProcessEnvironment.h"
#include "Foundation/Process/ShellCommand.h"
#include "Foundation/Process/SlowPoll.h"
#include "Foundation/Text/String.h"
#include "UserNotifications/UNNotificationAttachment.h"
#include "velloro/Agent/TerminalVoices.h"

#include <memory>

namespace velloro {
namespace {

/// A link in the form that the desktop's opener knows: with a scheme, so that it is no file, and no
/// option of the opener.
bool isLink(const std::string& url) {
  const auto colon = url.find(':');
  const auto isInScheme = [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '+' || c == '-' || c == '.';
  };
  return colon != std::string::npos && colon > 0 &&
         std::isalpha(static_cast<unsigned char>(url.front())) != 0 &&
         std::all_of(url.begin(), url.begin() + static_cast<std::ptrdiff_t>(colon), isInScheme);
}

void openLink(const std::string& url, const std::string& token) {
  if (!isLink(url)) {
    return Environment::current().report(inQuotes(url) + " is no link that could be opened");
  }
  std::vector<std::pair<std::string, std::string>> variables;
  if (!token.empty()) {
    variables = {{"XDG_ACTIVATION_TOKEN", token}, {"DESKTOP_STARTUP_ID", token}};
  }
  const auto opened = startProgram({"xdg-open", url}, variables);
  if (!opened) Environment::current().report(opened.error()->localizedDescription());
}

/// Held for as long as the process lives; absent where another agent has it.
std::optional<FileLock> onlyAgent() {
  const auto folder = notificationFolder();
  if (const auto made = NSFileManager::createDirectory(folder); !made) throw Error(*made.error());
  const auto path = folder / ".agent.lock";
  if (FileLock::isHeldExclusively(path)) return std::nullopt;
  auto lock = FileLock::exclusive(path);
  if (!lock) throw Error(*lock.error());
  return std::move(*lock);
}

/// The agent with its voice and its senses.
class Session {
 public:
  Session(const HostStore& store, const AgentRun::Options& options)
      : options_(options),
        loop_(Environment::current().mainLoop()),
        voice_(makeVoice()),
        agent_(Agent::make(store, *voice_, {.quietHours = options.quietHours, .open = openLink})) {}

  void end() {
    agent_->endSoon([this] { loop_.stop(); });
  }

  void run() {
    if (desktop_ != nullptr && !connect()) return;
    agent_->start();
    notifyServiceManager("READY=1");
    if (options_.isOnce) {
      endOnce();
    } else {
      listen();
    }
    loop_.run();
    notifyServiceManager("STOPPING=1");
  }

 private:
  std::unique_ptr<AgentVoice> makeVoice() {
    switch (options_.voice) {
      case AgentRun::Voice::print:
        return std::make_unique<PrintVoice>(options_.isJSON);
      case AgentRun::Voice::exec:
        return std::make_unique<ExecVoice>(options_.command);
      case AgentRun::Voice::desktop:
        break;
    }
    auto voice = std::make_unique<DesktopVoice>(
        DesktopVoice::Options{.mayBeUrgent = options_.mayBeUrgent, .snoozes = options_.snoozes});
    desktop_ = voice.get();
    return voice;
  }

  /// False where another agent has the name.
  bool connect() {
    auto signals = desktop_->signals();
    signals.sleep = [this](bool isBeginning) {
      isBeginning ? agent_->machineWillSleep() : agent_->machineDidWake();
    };
    signals.lost = [this](const std::string& reason) {
      Environment::current().report("the desktop's bus is gone: " + reason);
      end();
    };
    auto bus = NotificationBus::connect(loop_, std::move(signals));
    if (!bus) {
      throw HostError("there is no desktop: " + bus.error()->localizedDescription() +
                      "; --print shows reminders here");
    }
    bus_ = std::move(*bus);
    desktop_->setBus(*bus_);
    const auto claimed = bus_->claim(DesktopVoice::busName);
    if (!claimed) throw HostError("the desktop's bus refuses: " + claimed.error().text);
    if (!*claimed) Environment::current().report("an agent is running already");
    return *claimed;
  }

  void listen() {
    clock_ = ClockWatch::begin(
        loop_, [this] { agent_->clockWasSet(); },
        [this] {
          notifyServiceManager("WATCHDOG=1");
          SlowPoll::look();
          agent_->minute();
        });
    folders_ = FolderWatch::begin(
        loop_,
        [this](const std::string& folder, const std::string& file) { fileChanged(folder, file); });
    const auto& directories = Environment::current().directories();
    for (const auto& folder :
         {std::filesystem::path("/etc"), notificationFolder(), directories.preferences}) {
      folders_->add(folder.string());
    }
  }

  void fileChanged(const std::string& folder, const std::string& file) {
    if (folder == "/etc") {
      if (file != "localtime" && file != "timezone") return;
      auto* machine = dynamic_cast<ProcessEnvironment*>(&Environment::current());
      if (machine != nullptr) machine->readTimeZone();
      return agent_->zoneDidChange();
    }
    if (folder == notificationFolder().string()) {
      if (file.starts_with("notifications")) agent_->centreDidChange();
    } else if (file.ends_with(".json")) {
      agent_->settingsDidChange();
    }
  }

  /// A desktop gets time to come up and to answer.
  void endOnce() {
    constexpr TimeInterval longest = 5;
    constexpr TimeInterval step = 0.1;
    const double until = Environment::current().mediaTime() + longest;
    const bool waits = desktop_ != nullptr;
    onceTimer_ = NSTimer::scheduled(step, true, [this, until, waits] {
      const bool isShown = !waits || desktop_->isReady();
      if (!isShown && Environment::current().mediaTime() < until) return;
      onceTimer_.invalidate();
      if (bus_ != nullptr) bus_->flush();
      voice_->finish();
      loop_.stop();
    });
  }

  const AgentRun::Options& options_;
  MainLoop& loop_;
  DesktopVoice* desktop_ = nullptr;
  std::unique_ptr<AgentVoice> voice_;
  std::unique_ptr<NotificationBus> bus_;
  std::shared_ptr<Agent> agent_;
  std::shared_ptr<ClockWatch> clock_;
  std::shared_ptr<FolderWatch> folders_;
  NSTimer onceTimer_;
};

}  // namespace

void AgentRun::run() const {
  // Before there is a second thread; what is asked for before there is a session ends the next run
  // of the loop.
  static Session* session = nullptr;
  onInterrupt([] {
    DispatchQueue::main().async(
        [] { session != nullptr ? session->end() : Environment::current().mainLoop().stop(); });
  });
  if (!options_.isOnce) SlowPoll::makeCommon();
  const auto lock = onlyAgent();
  if (!lock) return Environment::current().report("an agent is running already");
  const HostStore store;
  // Background work and timers may use it until the process has ended.
  session = new Session(store, options_);
  session->run();
}

}  // namespace velloro
