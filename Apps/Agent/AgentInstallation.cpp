#include "Agent/AgentInstallation.h"

#include "Agent/DesktopVoice.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"

namespace velloro {
namespace {

namespace fs = std::filesystem;

/// By it an uninstallation knows what is its own.
constexpr const char* mark = "# Written by \"velloro agent --install\".\n";

fs::path userFolder(const char* variable, const char* belowHome) {
  const auto& environment = Environment::current();
  const fs::path folder = environment.variable(variable);
  return folder.is_absolute() ? folder : fs::path(environment.variable("HOME")) / belowHome;
}

fs::path configuration() {
  return userFolder("XDG_CONFIG_HOME", ".config");
}
fs::path data() {
  return userFolder("XDG_DATA_HOME", ".local/share");
}

fs::path unitFile() {
  return configuration() / "systemd" / "user" / AgentInstallation::unit;
}
fs::path serviceFile() {
  return data() / "dbus-1" / "services" / (std::string(DesktopVoice::busName) + ".service");
}
fs::path desktopFile() {
  return data() / "applications" / (std::string(DesktopVoice::desktopEntry) + ".desktop");
}
fs::path autostartFile() {
  return configuration() / "autostart" / (std::string(DesktopVoice::desktopEntry) + ".desktop");
}

/// How a kind of file writes what would otherwise end an argument or stand for something else.
struct Quoting {
  std::string_view escaped;  ///< Signs with `escape` before them.
  std::string_view escape;
  std::string_view doubled;
};
constexpr Quoting ofUnit{.escaped = "\"\\", .escape = "\\", .doubled = "%$"};
constexpr Quoting ofService{.escaped = "\"\\$`", .escape = "\\", .doubled = ""};
// Its lines have escapes of their own, in which a backslash is written twice.
constexpr Quoting ofDesktopFile{.escaped = "\"\\$`", .escape = "\\\\", .doubled = "%\\"};

/// One argument after the other, in quotes.
std::string quoted(const std::vector<std::string>& command, const Quoting& quoting) {
  std::string line;
  for (const std::string& word : command) {
    line += line.empty() ? "\"" : " \"";
    for (const char c : word) {
      if (quoting.escaped.contains(c)) line += quoting.escape;
      if (quoting.doubled.contains(c)) line += c;
      line += c;
    }
    line += '"';
  }
  return line;
}

std::string unitText(const std::vector<std::string>& command) {
  return std::string(mark) +
         "[Unit]\n"
         "Description=Reminders of velloro\n"
         "PartOf=graphical-session.target\n"
         "After=graphical-session.target\n"
         "\n"
         "[Service]\n"
         "Type=notify\n"
         "ExecStart=" +
         quoted(command, ofUnit) +
         "\n"
         "WatchdogSec=180\n"
         "Restart=on-failure\n"
         "RestartSec=5\n"
         "\n"
         "[Install]\n"
         "WantedBy=graphical-session.target\n";
}

std::string serviceText(const std::vector<std::string>& command) {
  return std::string(mark) + "[D-BUS Service]\nName=" + DesktopVoice::busName +
         "\nExec=" + quoted(command, ofService) + "\nSystemdService=" + AgentInstallation::unit +
         "\n";
}

std::string desktopText(const std::vector<std::string>& command, bool isAutostart) {
  return std::string(mark) +
         "[Desktop Entry]\n"
         "Type=Application\n"
         "Name=velloro\n"
         "Comment=Reminders of habits\n"
         "Icon=appointment-soon\n"
         "NoDisplay=true\n"
         "Exec=" +
         quoted(command, ofDesktopFile) + "\n" +
         (isAutostart ? "X-GNOME-Autostart-enabled=true\n" : "");
}

}  // namespace

AgentInstallation AgentInstallation::of(const std::vector<std::string>& command, bool usesSystemd) {
  AgentInstallation installation{.files = {{desktopFile(), desktopText(command, false)}},
                                 .usesSystemd = usesSystemd};
  if (usesSystemd) {
    installation.files.push_back({unitFile(), unitText(command)});
    installation.files.push_back({serviceFile(), serviceText(command)});
  } else {
    installation.files.push_back({autostartFile(), desktopText(command, true)});
  }
  return installation;
}

bool AgentInstallation::hasSystemd() {
  return NSFileManager::exists("/run/systemd/system");
}

std::vector<std::string> AgentInstallation::install() const {
  std::vector<std::string> done;
  for (const auto& [path, content] : files) {
    const auto before = NSFileManager::contents(path);
    if (before && *before == content) {
      done.push_back("kept " + path.string());
      continue;
    }
    if (before && !before->starts_with(mark)) {
      throw Error("velloro.agent", 1,
                  path.string() + " is not from \"agent --install\"; it must be moved away first");
    }
    auto written = NSFileManager::createDirectory(path.parent_path(), NewItemAccess::byUmask);
    if (written) written = NSFileManager::write(content, path, NewItemAccess::byUmask);
    if (!written) throw Error(*written.error());
    done.push_back((before ? "changed " : "wrote ") + path.string());
  }
  return done;
}

std::vector<std::string> AgentInstallation::uninstall() {
  std::vector<std::string> done;
  for (const fs::path& path : {unitFile(), serviceFile(), desktopFile(), autostartFile()}) {
    const auto content = NSFileManager::contents(path);
    if (!content) continue;
    if (!content->starts_with(mark)) {
      done.push_back("left " + path.string() + ", which \"agent --install\" has not written");
      continue;
    }
    const auto removed = NSFileManager::removeItem(path);
    if (!removed) throw Error(*removed.error());
    done.push_back("removed " + path.string());
  }
  return done;
}

}  // namespace velloro
