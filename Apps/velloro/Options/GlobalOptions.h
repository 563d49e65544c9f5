#pragma once

#include "Foundation/Process/ProcessEnvironment.h"
#include "OxKit/Platform.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace velloro {

/// The options that every command takes and that fix what it gets from outside, so that any answer
/// can be had again.
struct GlobalOptions {
  std::optional<std::string> store;
  std::optional<std::string> now;
  std::optional<std::string> zone;
  std::optional<std::string> locale;
  std::optional<std::string> process;

  void addTo(CLI::App& app);
  /// \param usualProcess In whose place the command stands where `--process` doesn't say it.
  /// \throws UsageError
  [[nodiscard]] ProcessEnvironment::Options environment(const std::string& usualProcess) const;
};

}  // namespace velloro
