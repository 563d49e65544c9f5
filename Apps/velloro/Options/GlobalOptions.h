#pragma once

#include "Foundation/Process/ProcessEnvironment.h"
#include "OxKit/Platform.h"

#include <optional>
#include <string>

namespace velloro {

class Command;

/// The options of every command. They replace what it gets from outside, so that every answer can
/// be reproduced.
struct GlobalOptions {
  std::optional<std::string> store;
  std::optional<std::string> now;
  std::optional<std::string> zone;
  std::optional<std::string> locale;
  std::optional<std::string> process;

  void addTo(const Command& app);
  /// \param usualProcess The process in whose place the command runs without `--process`.
  /// \throws UsageError
  [[nodiscard]] ProcessEnvironment::Options environment(const std::string& usualProcess) const;
};

}  // namespace velloro
