#include "velloro/Agent/AgentCommand.h"

#include "Agent/AgentInstallation.h"
#include "Agent/QuietTime.h"
#include "Foundation/Coding/JSON.h"
#include "velloro/Agent/AgentRun.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/GlobalOptions.h"
#include "velloro/Output/Output.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

struct AgentOptions {
  bool once = false, print = false, json = false, urgent = false;
  bool install = false, uninstall = false, autostart = false;
  std::optional<std::string> exec, quiet, duration;
  std::vector<std::string> snoozes;

  /// Whether something else than "--json" was asked of an agent that is to run.
  [[nodiscard]] bool isAboutRunning() const {
    return once || print || urgent || install || uninstall || autostart || exec || quiet ||
           !snoozes.empty();
  }
};

/// "22:00-07:00".
QuietHours quietHoursArgument(const std::string& text) {
  const auto dash = text.find('-');
  const auto from = timeIn(text.substr(0, dash));
  const auto to = dash == std::string::npos ? std::nullopt : timeIn(text.substr(dash + 1));
  if (!from || !to || *from == *to) {
    throw UsageError("--quiet", text, "not two times of day; write 22:00-07:00");
  }
  return {*from, *to};
}

AgentRun::Options runOptions(const AgentOptions& options) {
  if (options.print && options.exec) {
    throw UsageError("--print and --exec: one of them at a time");
  }
  if (options.json && !options.print) throw UsageError("--json: only with --print");
  AgentRun::Options run{.voice = options.print  ? AgentRun::Voice::print
                                 : options.exec ? AgentRun::Voice::exec
                                                : AgentRun::Voice::desktop,
                        .isOnce = options.once,
                        .isJSON = options.json,
                        .mayBeUrgent = options.urgent};
  if (options.exec) {
    if (options.exec->empty()) throw UsageError("--exec", "", "no command");
    run.command = *options.exec;
  }
  if (options.quiet) run.quietHours = quietHoursArgument(*options.quiet);
  for (const auto& text : options.snoozes) {
    run.snoozes.push_back(durationArgument("--snooze", text));
  }
  return run;
}

/// The command line of an agent with the same options.
std::vector<std::string> commandOf(const AgentOptions& options, const GlobalOptions& global) {
  std::error_code ignored;
  std::vector<std::string> words = {
      std::filesystem::read_symlink("/proc/self/exe", ignored).string(), "agent"};
  const auto add = [&](const std::string& option, const std::string& value) {
    words.push_back(option);
    words.push_back(value);
  };
  if (global.store) add("--store", std::filesystem::absolute(*global.store).string());
  if (global.zone) add("--zone", *global.zone);
  if (global.locale) add("--locale", *global.locale);
  if (options.exec) add("--exec", *options.exec);
  if (options.quiet) add("--quiet", *options.quiet);
  for (const auto& length : options.snoozes) add("--snooze", length);
  if (options.urgent) words.emplace_back("--urgent");
  return words;
}

void printLines(const std::vector<std::string>& lines) {
  for (const auto& line : lines) print(terminalText(line) + "\n");
}

void install(const AgentOptions& options, const GlobalOptions& global) {
  if (options.print || options.once) throw UsageError("--install: not with --print or --once");
  static_cast<void>(runOptions(options));
  if (options.exec && options.exec->contains('\n')) {
    throw UsageError("--exec", *options.exec, "files of one line per command can't hold it");
  }
  const bool usesSystemd = AgentInstallation::hasSystemd() && !options.autostart;
  const auto installation = AgentInstallation::of(commandOf(options, global), usesSystemd);
  printLines(installation.install());
  print(usesSystemd
            ? std::string("To start it now, and with each session:\n"
                          "  systemctl --user daemon-reload\n"
                          "  systemctl --user enable --now ") +
                  AgentInstallation::unit + "\n"
            : "It starts with the next session; to start it now, repeat this command without\n"
              "--install, and with \"&\" at its end.\n");
}

void uninstall() {
  const auto done = AgentInstallation::uninstall();
  printLines(done);
  if (done.empty()) return print("There is nothing to remove.\n");
  print("An agent that is running ends with the session.\n");
  if (AgentInstallation::hasSystemd()) {
    print(std::string("To end it now:\n  systemctl --user stop ") + AgentInstallation::unit + "\n");
  }
}

void agent(const AgentOptions& options, const GlobalOptions& global) {
  if (options.install && options.uninstall) {
    throw UsageError("--install and --uninstall: one of them at a time");
  }
  if (options.install) return install(options, global);
  if (options.uninstall) return uninstall();
  AgentRun(runOptions(options)).run();
}

/// The options of the agent itself may be typed behind its commands, as far as the parser knows.
void refuseRunOptions(const AgentOptions& options, const std::string& command) {
  if (options.isAboutRunning()) {
    throw UsageError("agent " + command + ": only --json can stand here, and for pause --for");
  }
}

void pause(const AgentOptions& options) {
  refuseRunOptions(options, "pause");
  const Date now = Date::now();
  const Date end =
      options.duration ? now + durationArgument("--for", *options.duration) : Date::distantFuture();
  AgentPause::begin(end);
  if (options.json) {
    PropertyList::Dictionary report{{"paused", true}};
    if (options.duration) report.emplace("until", end.iso8601());
    return print(PropertyList(report).json() + "\n");
  }
  print(options.duration ? "No reminders until " + instantText(end) + "\n"
                         : "No reminders until \"velloro agent resume\"\n");
}

void resume(const AgentOptions& options) {
  refuseRunOptions(options, "resume");
  const bool wasPaused = AgentPause::remove(Date::now());
  if (options.json) {
    return print(PropertyList(PropertyList::Dictionary{{"paused", false}}).json() + "\n");
  }
  print(wasPaused ? "Reminders come again; what was missed is shown once\n"
                  : "Reminders were not paused\n");
}

void addRunOptions(const Command& command, AgentOptions& options) {
  command.flag("--once", options.once, "Shows what is due, and ends");
  command.flag("--print", options.print, "Shows reminders on the standard output");
  command.json(options.json, "With --print: one JSON object per line");
  command.option("--exec", options.exec, "COMMAND",
                 "Runs a command of the shell for each reminder, with its JSON as the input");
  command.option("--quiet", options.quiet, "FROM-TO",
                 "Hours in which nothing is shown; what comes in them is shown at their end");
  command.option("--snooze", options.snoozes, "DURATION",
                 "A further button to put a reminder off, such as 10m or 1h");
  command.flag("--urgent", options.urgent,
               "Lets time-sensitive reminders break through \"do not disturb\"");
  command.flag("--install", options.install,
               "Writes the files that start the agent with the session, with these options");
  command.flag("--autostart", options.autostart,
               "With --install: by the desktop's autostart, not by systemd");
  command.flag("--uninstall", options.uninstall, "Removes these files");
}

}  // namespace

void addAgentCommand(const Command& app, const GlobalOptions& global) {
  const Command command =
      app.subcommand("agent", "Shows reminders when they are due, and takes their answers");
  const auto options = std::make_shared<AgentOptions>();
  addRunOptions(command, *options);
  command.footer(
      "Runs until it is interrupted; a user has one agent at a time. Reminders are shown by the\n"
      "desktop's notification server, with buttons that write the log.\n\n"
      "Examples:\n"
      "  velloro agent --print\n"
      "  velloro agent --once --print --json\n"
      "  velloro agent --exec 'mail -s Reminder me@example.org'\n"
      "  velloro agent --install --quiet 22:00-07:00\n"
      "  velloro agent pause --for 2h");
  const Command paused = command.subcommand("pause", "Shows no reminders");
  paused.option("--for", options->duration, "DURATION",
                "How long: 30m, 2h (default: until \"resume\")");
  paused.runs([options] { pause(*options); });
  command.subcommand("resume", "Shows reminders again, and what was missed").runs([options] {
    resume(*options);
  });
  command.runsAlone([options, &global] { agent(*options, global); });
}

}  // namespace velloro
