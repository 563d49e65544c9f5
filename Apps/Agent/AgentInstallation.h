#pragma once

#include "OxKit/Platform.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velloro {

/// The files by which a desktop starts the agent and shows its name, in the user's own folders:
/// a unit of systemd and the bus's way to it, or an entry of the desktop's autostart where there is
/// no systemd; in both cases the desktop file that notifications refer to.
struct AgentInstallation {
  struct File {
    std::filesystem::path path;
    std::string content;
  };

  std::vector<File> files;
  bool usesSystemd = true;

  /// \param command The program and its arguments.
  [[nodiscard]] static AgentInstallation of(const std::vector<std::string>& command,
                                            bool usesSystemd);
  /// Whether systemd manages this machine.
  [[nodiscard]] static bool hasSystemd();

  /// Writes what differs. Returns what was done, a line each. \throws Error
  [[nodiscard]] std::vector<std::string> install() const;
  /// Removes what an installation of either kind has written, and nothing that is not its own.
  [[nodiscard]] static std::vector<std::string> uninstall();

  static constexpr const char* unit = "velloro-agent.service";
};

}  // namespace velloro
