#include "Agent/Agent.h"
#include "Agent/AgentInstallation.h"
#include "Agent/DesktopVoice.h"
#include "Agent/QuietTime.h"
#include "Foundation/Coding/JSON.h"
#include "Foundation/Dispatch/NSTimer.h"
#include "Foundation/Files/FileLock.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Text/Locale.h"
#include "Settings/SettingsStorage.h"
#include "velloro/Agent/AgentCommand.h"
#include "velloro/Notifications/CenterReport.h"
#include "velloro/Options/Command.h"
#include "velloro/Output/Output.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velloro {
namespace {

struct DoctorOptions {
  bool json = false;
};

/// What was found, in the order in which it is told, and what of it is wrong.
struct Findings {
  std::vector<std::pair<std::string, std::string>> facts;
  std::vector<std::string> problems;

  void add(const std::string& name, const std::string& value) { facts.emplace_back(name, value); }
};

/// Asks the server, and waits for a few seconds at most.
std::optional<NotificationServerInfo> serverInfo(std::string& problem) {
  auto& loop = Environment::current().mainLoop();
  DesktopVoice voice({});
  std::unique_ptr<NotificationBus> owner;
  voice.setHandlers({.answered = [](const auto&) {},
                     .changed = [&] { loop.stop(); },
                     .shown = [](const auto&, auto) {}});
  auto signals = voice.signals();
  signals.ownerChanged = [&, known = signals.ownerChanged](const std::string& connection) {
    known(connection);
    if (connection.empty()) loop.stop();
  };
  signals.sleep = [](bool) {};
  signals.lost = [&](const std::string& reason) {
    problem = reason;
    loop.stop();
  };
  auto bus = NotificationBus::connect(loop, std::move(signals));
  if (!bus) {
    problem = bus.error()->localizedDescription();
    return std::nullopt;
  }
  voice.setBus(**bus);
  constexpr TimeInterval longest = 6;
  const auto end = NSTimer::scheduled(longest, false, [&] { loop.stop(); });
  loop.run();
  if (!voice.info() && problem.empty()) problem = "no notification server answers";
  return voice.info();
}

void addServer(Findings& findings) {
  std::string problem;
  const auto server = serverInfo(problem);
  if (!server) {
    findings.add("server", "none: " + problem);
    findings.problems.push_back("No desktop can show reminders (" + problem +
                                "); \"velloro agent --print\" and \"--exec\" work without one.");
    return;
  }
  findings.add("server", server->name + " " + server->version + " by " + server->vendor);
  std::string capabilities;
  for (const auto& each : server->capabilities) {
    capabilities += (capabilities.empty() ? "" : ", ") + each;
  }
  findings.add("capabilities", capabilities);
  const auto fallsBack = [&](const char* capability, const char* name, const char* with,
                             const char* without) {
    findings.add(name, server->has(capability) ? with : without);
  };
  fallsBack("actions", "buttons", "yes", "no: answer with \"velloro log add\"");
  fallsBack("body-markup", "text", "as markup, escaped", "plain");
  fallsBack("inline-reply", "amounts", "typed into the reminder",
            "no line to type into: \"Mark as done\" logs a step");
  fallsBack("sound", "sound", "by the server", "none");
  fallsBack("persistence", "missed ones", "stay in the server's list", "stay until answered");
  if (!server->has("actions")) {
    findings.problems.push_back("The server announces no buttons at present.");
  }
}

void addStore(Findings& findings) {
  try {
    const HostStore store;
    findings.add("store", HostStore::existingFile().string() + ", " +
                              std::to_string(store.tasks(activeStatuses).size()) + " active tasks");
  } catch (const Error& error) {
    findings.add("store", error.localizedDescription());
    findings.problems.push_back("The store can't be used: " + error.localizedDescription());
  }
}

void addReminders(Findings& findings) {
  const auto pending = CenterReport::pending();
  const NotificationLine* next = nullptr;
  std::size_t reminders = 0;
  for (const NotificationLine& line : pending) {
    if (!line.task) continue;
    ++reminders;
    if (next == nullptr) next = &line;
  }
  findings.add("pending",
               std::to_string(reminders) + (reminders == 1 ? " reminder" : " reminders"));
  if (next != nullptr) {
    findings.add("next",
                 (next->trigger ? instantText(*next->trigger) : "at once") + "  " + next->text());
  }
  if (!SettingsStorage::shared().boolean(Setting::nmCanPromptForNotifications)) {
    findings.problems.push_back(
        "Notifications were never allowed; the agent asks for that when it starts.");
  }
}

void addAgent(Findings& findings) {
  const Date now = Date::now();
  const bool runs = FileLock::isHeldExclusively(Agent::recordFile().parent_path() / ".agent.lock");
  findings.add("agent", runs ? "running" : "not running");
  if (!runs) {
    findings.problems.push_back(
        "No agent is running; \"velloro agent --install\" starts one with each session.");
  }
  findings.add("service manager", AgentInstallation::hasSystemd() ? "systemd" : "none");
  if (const auto end = AgentPause::end(now)) {
    findings.add("paused", *end == Date::distantFuture() ? "until \"velloro agent resume\""
                                                         : "until " + instantText(*end));
  }
}

void doctor(const DoctorOptions& options) {
  Findings findings;
  addServer(findings);
  addAgent(findings);
  addStore(findings);
  findings.add("zone", std::string(TimeZone::current().identifier()));
  findings.add("locale", Locale::current().identifier());
  addReminders(findings);
  if (options.json) {
    PropertyList::Dictionary facts;
    for (const auto& [name, value] : findings.facts) facts.emplace(name, value);
    PropertyList::Array problems;
    for (const auto& each : findings.problems) problems.emplace_back(each);
    return print(
        PropertyList(PropertyList::Dictionary{{"facts", facts}, {"problems", problems}}).json() +
        "\n");
  }
  std::vector<std::vector<std::string>> rows;
  for (const auto& [name, value] : findings.facts) rows.push_back({name, terminalText(value)});
  print(aligned(rows));
  for (const auto& each : findings.problems) print("! " + terminalText(each) + "\n");
}

}  // namespace

void addDoctorCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("doctor", "Says what the agent can do here, and what is wrong", doctor);
  command.json(options.json, "Prints one JSON object");
  command.footer("Examples:\n  velloro doctor\n  velloro doctor --json");
}

}  // namespace velloro
